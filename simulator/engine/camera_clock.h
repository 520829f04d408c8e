// engine/camera_clock.h
// The camera's own time: ticks since its power-up or last reset.
#pragma once

#include <atomic>
#include <cstdint>

#include "engine/clock.h"

namespace Simulator {

class CameraClock {
 public:
  explicit CameraClock(std::int64_t ticks_per_second) : m_ticks_per_second(ticks_per_second) { Reset(); }

  void Reset() { m_start = Clock::now().time_since_epoch(); }
  std::int64_t TicksPerSecond() const { return m_ticks_per_second; }

  // A moment before the start is the start.
  std::uint64_t Ticks(Clock::time_point moment) const {
    // Whole seconds apart, so that nothing overflows at a gigahertz in centuries.
    constexpr std::int64_t kNanoseconds = 1'000'000'000;
    const std::int64_t elapsed = Elapsed(moment).count();
    const std::int64_t ticks =
        elapsed / kNanoseconds * m_ticks_per_second + elapsed % kNanoseconds * m_ticks_per_second / kNanoseconds;
    return static_cast<std::uint64_t>(ticks);
  }
  double Seconds(Clock::time_point moment) const { return std::chrono::duration<double>(Elapsed(moment)).count(); }

 private:
  std::chrono::nanoseconds Elapsed(Clock::time_point moment) const {
    const std::chrono::nanoseconds elapsed = moment.time_since_epoch() - m_start.load();
    return elapsed < elapsed.zero() ? elapsed.zero() : elapsed;
  }

  const std::int64_t m_ticks_per_second;
  std::atomic<Clock::duration> m_start;
};

}  // namespace Simulator
