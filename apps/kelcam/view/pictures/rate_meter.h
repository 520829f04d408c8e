// rate_meter.h
// How many times a second something happens.
#pragma once

#include <chrono>
#include <deque>

namespace Kelcam {

// Over the last two seconds. Not for several threads.
class RateMeter {
 public:
  using Clock = std::chrono::steady_clock;

  void Add(Clock::time_point now) {
    Forget(now);
    m_times.push_back(now);
  }

  double PerSecond(Clock::time_point now) {
    Forget(now);
    return static_cast<double>(m_times.size()) / std::chrono::duration<double>(kWindow).count();
  }

 private:
  static constexpr std::chrono::seconds kWindow{2};

  void Forget(Clock::time_point now) {
    while (!m_times.empty() && now - m_times.front() > kWindow) m_times.pop_front();
  }

  std::deque<Clock::time_point> m_times;
};

}  // namespace Kelcam
