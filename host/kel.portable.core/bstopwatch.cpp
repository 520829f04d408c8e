// bstopwatch.cpp
// Time since a moment, kept as one number.
#include "bstopwatch.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr Clock::time_point kAtRest = Clock::time_point::min();

}  // namespace

static_assert(std::atomic<Clock::time_point>::is_always_lock_free,
              "no reader waits for a thread that resets the watch");

BStopWatch::BStopWatch(bool start) : m_start(start ? Clock::now() : kAtRest) {}
BStopWatch::BStopWatch(const BStopWatch& other) : m_start(other.m_start.load()) {}

BStopWatch& BStopWatch::operator=(const BStopWatch& other) {
  m_start = other.m_start.load();
  return *this;
}

void BStopWatch::Reset() { m_start = Clock::now(); }

double BStopWatch::PeriodD() const { return std::chrono::duration<double, std::milli>(Elapsed()).count(); }

std::uint32_t BStopWatch::Period() const {
  return static_cast<std::uint32_t>(std::chrono::duration_cast<std::chrono::milliseconds>(Elapsed()).count());
}

Clock::duration BStopWatch::Elapsed() const {
  const Clock::time_point start = m_start;
  return start == kAtRest ? Clock::duration::zero() : Clock::now() - start;
}
