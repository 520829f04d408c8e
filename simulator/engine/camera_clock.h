// engine/camera_clock.h
// The camera's own time: ticks since its power-up or last reset.
#pragma once

#include <atomic>
#include <cstdint>

#include "engine/clock.h"

namespace Simulator {

// [any thread]
class CameraClock {
 public:
  explicit CameraClock(std::int64_t ticks_per_second) : m_ticks_per_second(ticks_per_second) { Reset(); }

  void Reset() { m_start = Clock::now().time_since_epoch(); }
  std::int64_t TicksPerSecond() const { return m_ticks_per_second; }

  // A moment before the start is the start.
  std::uint64_t TicksAt(Clock::time_point moment) const {
    // Whole seconds and the rest on their own: their product in one would overflow within seconds at a gigahertz.
    constexpr std::chrono::nanoseconds kSecond = std::chrono::seconds(1);
    const std::chrono::nanoseconds elapsed = Elapsed(moment);
    const std::int64_t ticks =
        elapsed / kSecond * m_ticks_per_second + (elapsed % kSecond).count() * m_ticks_per_second / kSecond.count();
    return static_cast<std::uint64_t>(ticks);
  }
  Seconds TimeAt(Clock::time_point moment) const { return Elapsed(moment); }

 private:
  std::chrono::nanoseconds Elapsed(Clock::time_point moment) const {
    const std::chrono::nanoseconds elapsed = moment.time_since_epoch() - m_start.load();
    return elapsed < elapsed.zero() ? elapsed.zero() : elapsed;
  }

  const std::int64_t m_ticks_per_second;
  std::atomic<Clock::duration> m_start;
};

}  // namespace Simulator
