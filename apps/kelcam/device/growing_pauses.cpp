// growing_pauses.cpp
// Pauses between tries, each longer than the one before.
#include "device/growing_pauses.h"

#include <algorithm>
#include <thread>
#include <utility>

namespace Kelcam {
namespace {

using Clock = std::chrono::steady_clock;

// How long the end may wait: the signal of an interrupt cannot wake a thread up.
constexpr std::chrono::milliseconds kPollInterval{50};

}  // namespace

bool GrowingPauses::Wait(const std::function<bool()>& is_over) {
  const Clock::time_point due = Clock::now() + std::exchange(m_next, std::min(m_limits.longest, 2 * m_next));
  for (Clock::time_point now = Clock::now(); now < due && !is_over(); now = Clock::now()) {
    std::this_thread::sleep_until(std::min<Clock::time_point>(due, now + kPollInterval));
  }
  return !is_over();
}

std::chrono::milliseconds GrowingPauses::FirstOf(Limits limits) { return std::min(limits.first, limits.longest); }

}  // namespace Kelcam
