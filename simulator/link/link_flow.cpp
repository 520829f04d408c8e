// link/link_flow.cpp
// A link under a constant load: what it loses, and how its queues change.
#include "link/link_flow.h"

#include <algorithm>

namespace Simulator {

LinkFlow::LinkFlow(const LinkSettings& link, const LinkBacklog& backlog, const LinkLoad& load)
    : m_network(link.network), m_receiver(link.receiver), m_backlog(backlog), m_dead(load.dead) {
  if (!m_dead) m_sent_bytes_per_s = load.cameras_bytes_per_s + load.background_bytes_per_s;
  const double kept = 1.0 - m_network.LostShare(m_backlog.network_bytes, m_sent_bytes_per_s);
  const double out_bytes_per_s = m_network.Outflow(m_backlog.network_bytes, m_sent_bytes_per_s);
  if (out_bytes_per_s > 0.0) m_stretching = m_sent_bytes_per_s * kept / out_bytes_per_s;
  if (m_sent_bytes_per_s > 0.0)
    m_received_bytes_per_s = out_bytes_per_s * (load.cameras_bytes_per_s / m_sent_bytes_per_s);
}

Seconds LinkFlow::UntilTurn() const {
  const Seconds network = m_network.UntilTurn(m_backlog.network_bytes, m_sent_bytes_per_s);
  if (m_stretching <= 0.0) return network;
  return std::min(network, m_receiver.UntilTurn(m_backlog.receiver_bytes, m_received_bytes_per_s) / m_stretching);
}

LinkBacklog LinkFlow::BacklogAfter(Seconds time) const {
  return {m_network.BacklogAfter(time, m_backlog.network_bytes, m_sent_bytes_per_s),
          m_receiver.BacklogAfter(time * m_stretching, m_backlog.receiver_bytes, m_received_bytes_per_s)};
}

double LinkFlow::LostShare() const {
  if (m_dead) return 1.0;
  const double network = m_network.LostShare(m_backlog.network_bytes, m_sent_bytes_per_s);
  const double receiver = m_receiver.LostShare(m_backlog.receiver_bytes, m_received_bytes_per_s);
  return 1.0 - (1.0 - network) * (1.0 - receiver);
}

double LinkFlow::FreeBytesPerSecond() const {
  if (m_dead) return 0.0;
  return std::min(m_network.Free(m_backlog.network_bytes, m_sent_bytes_per_s),
                  m_receiver.Free(m_backlog.receiver_bytes, m_received_bytes_per_s));
}

}  // namespace Simulator
