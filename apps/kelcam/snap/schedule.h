// schedule.h
// When the images of a time-lapse are taken.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>

namespace Kelcam {

// Images begin at whole multiples of the interval after the first one, whatever each of them takes: the times do not
// drift. An image that is not ready in time takes the next multiple that is still to come.
class Schedule {
 public:
  using Clock = std::chrono::steady_clock;
  using Seconds = std::chrono::duration<double>;

  // No interval: images begin at once.
  explicit Schedule(std::optional<Seconds> interval) : m_interval(interval) {}

  // Waits for the time of the next image. False when the run is over before; it is asked again and again.
  bool WaitForNext(const std::function<bool()>& is_over);
  // How many multiples passed without an image before the last one.
  std::int64_t Missed() const { return m_missed; }

  // The number of the multiple for the next image, when `elapsed` has passed since the first one and the last image
  // had the number `last`.
  static constexpr std::int64_t Next(std::int64_t last, Seconds elapsed, Seconds interval) {
    const double now = elapsed / interval;
    const auto begun = static_cast<std::int64_t>(now);
    const std::int64_t to_come = static_cast<double>(begun) < now ? begun + 1 : begun;
    return to_come > last ? to_come : last + 1;
  }

 private:
  const std::optional<Seconds> m_interval;
  std::optional<Clock::time_point> m_start;
  std::int64_t m_last = 0;
  std::int64_t m_missed = 0;
};

}  // namespace Kelcam
