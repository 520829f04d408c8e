// engine/link.h
// The network link that all simulated cameras share.
#pragma once

#include <deque>

#include "bmutex.h"
#include "engine/clock.h"

namespace Simulator {

// While the rates of the transfers under way add up to more than the capacity, each loses its share of what is too
// much.
class Link {
 public:
  explicit Link(double capacity_bytes_per_s) : m_capacity(capacity_bytes_per_s) {}

  struct Transfer {
    Clock::time_point start;
    Clock::time_point end;
    double bytes_per_s;
  };
  // Makes a transfer known; to be called when it starts.
  void Begin(const Transfer& transfer);
  // The part of this transfer that the link lost, 0 to 1; to be called when it has ended.
  double LostShare(const Transfer& transfer) const;

 private:
  // As long as the slowest frame may take; what ended before cannot overlap what is still asked for.
  static constexpr std::chrono::seconds kRemembered{30};

  const double m_capacity;
  mutable BMutex m_mutex;
  std::deque<Transfer> m_transfers KEL_GUARDED_BY(m_mutex);
};

}  // namespace Simulator
