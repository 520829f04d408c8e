// bstopwatch.h
// The host's stop watch.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>

#include "kel_portable_core_api.h"

// Measures in milliseconds on a clock that never goes back, whatever is done to the time of day. Its whole state is one
// atomic moment: any thread may read or copy a watch while another resets it. [any thread]
class KEL_PORTABLE_CORE_API BStopWatch {
 public:
  // Started, or at rest: then it reads 0 until Reset.
  explicit BStopWatch(bool start = true);
  // The copy runs from the same moment as the original.
  BStopWatch(const BStopWatch& other);
  BStopWatch& operator=(const BStopWatch& other);

  // Starts at 0 now.
  void Reset();
  // Elapsed milliseconds, with fractions.
  double PeriodD() const;
  // Elapsed whole milliseconds; starts again at 0 after 49 days.
  std::uint32_t Period() const;

 private:
  using Clock = std::chrono::steady_clock;

  Clock::duration Elapsed() const;

  std::atomic<Clock::time_point> m_start;
};
