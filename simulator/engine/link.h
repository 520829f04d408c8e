// engine/link.h
// The network link that all simulated cameras share.
#pragma once

#include <deque>

#include "bmutex.h"
#include "engine/clock.h"

namespace Simulator {

// While the transfers under way together are faster than the link, each loses its share of the excess. [any thread]
class Link {
 public:
  explicit Link(double capacity_bytes_per_s) : m_capacity_bytes_per_s(capacity_bytes_per_s) {}

  struct Transfer {
    Clock::time_point start;
    Clock::time_point end;
    double bytes_per_s;
  };
  // To be called when the transfer starts.
  void Begin(const Transfer& transfer);
  // The part of the transfer that the link lost, 0 to 1. To be called when it has ended.
  double LostShare(const Transfer& transfer) const;

 private:
  // A transfer that ended longer ago than this is forgotten. Only a frame that takes as long to send could still
  // overlap it.
  static constexpr std::chrono::seconds kRemembered{30};

  const double m_capacity_bytes_per_s;
  mutable BMutex m_mutex;
  std::deque<Transfer> m_transfers KEL_GUARDED_BY(m_mutex);
};

}  // namespace Simulator
