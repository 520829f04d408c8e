// link/link_flow.h
// A link under a constant load: what it loses, and how its queues change.
#pragma once

#include "link/bottleneck.h"
#include "link/link_settings.h"

namespace Simulator {

// What is sent.
struct LinkLoad {
  double cameras_bytes_per_s = 0.0;
  double background_bytes_per_s = 0.0;
  bool dead = false;
};

// What waits in the switch and in the computer.
struct LinkBacklog {
  double network_bytes = 0.0;
  double receiver_bytes = 0.0;
};

// The cameras' bytes pass the network and then the receiver, each with its queue. Both queues keep the order, so that a
// byte waits for those before it.
class LinkFlow {
 public:
  LinkFlow(const LinkSettings& link, const LinkBacklog& backlog, const LinkLoad& load);

  // How long all this holds; kNever: until the load changes.
  Seconds UntilTurn() const;
  LinkBacklog BacklogAfter(Seconds time) const;
  // The part of the cameras' bytes that gets lost, 0 to 1: the same part of each camera's.
  double LostShare() const;
  // The capacity that is left for resends.
  double FreeBytesPerSecond() const;

 private:
  const Bottleneck& m_network;
  const Bottleneck& m_receiver;
  const LinkBacklog m_backlog;
  const bool m_dead;
  // What comes to the switch.
  double m_sent_bytes_per_s = 0.0;
  // What comes to the receiver of that, in the time in which it comes there.
  double m_received_bytes_per_s = 0.0;
  // How much time passes at the end of the switch's queue while a second passes at its beginning. A queue that grows
  // stretches what the cameras send, and one that shrinks compresses it.
  double m_stretching = 1.0;
};

}  // namespace Simulator
