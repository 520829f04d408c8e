// engine/link.cpp
// The network link that all simulated cameras share.
#include "engine/link.h"

#include <algorithm>
#include <vector>

namespace Simulator {

void Link::Begin(const Transfer& transfer) {
  const BMutexLock lock(m_mutex);
  while (!m_transfers.empty() && m_transfers.front().end + kRemembered < transfer.start) m_transfers.pop_front();
  m_transfers.push_back(transfer);
}

double Link::LostShare(const Transfer& transfer) const {
  const BMutexLock lock(m_mutex);
  // Between two of these moments the load does not change.
  std::vector<Clock::time_point> moments{transfer.start, transfer.end};
  for (const Transfer& other : m_transfers) {
    for (const Clock::time_point moment : {other.start, other.end}) {
      if (moment > transfer.start && moment < transfer.end) moments.push_back(moment);
    }
  }
  std::sort(moments.begin(), moments.end());
  Seconds lost{};
  for (std::size_t i = 0; i + 1 < moments.size(); ++i) {
    double load_bytes_per_s = 0.0;
    for (const Transfer& other : m_transfers) {
      if (other.start <= moments[i] && other.end >= moments[i + 1]) load_bytes_per_s += other.bytes_per_s;
    }
    const Seconds duration = moments[i + 1] - moments[i];
    if (load_bytes_per_s > m_capacity_bytes_per_s)
      lost += duration * (load_bytes_per_s - m_capacity_bytes_per_s) / load_bytes_per_s;
  }
  const Seconds whole = transfer.end - transfer.start;
  return whole > Seconds::zero() ? lost / whole : 0.0;
}

}  // namespace Simulator
