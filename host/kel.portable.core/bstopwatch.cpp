// bstopwatch.cpp
// Time since a moment, kept as one number.
#include "bstopwatch.h"

#include <chrono>
#include <limits>

namespace {

constexpr std::int64_t kAtRest = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kNanosecondsPerMillisecond = 1'000'000;

std::int64_t NowNanoseconds() {
  using std::chrono::nanoseconds;
  return std::chrono::duration_cast<nanoseconds>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

}  // namespace

BStopWatch::BStopWatch(bool start) : m_start_ns(start ? NowNanoseconds() : kAtRest) {}
BStopWatch::BStopWatch(const BStopWatch& other) : m_start_ns(other.m_start_ns.load()) {}

BStopWatch& BStopWatch::operator=(const BStopWatch& other) {
  m_start_ns = other.m_start_ns.load();
  return *this;
}

void BStopWatch::Reset() { m_start_ns = NowNanoseconds(); }

double BStopWatch::PeriodD() const {
  return static_cast<double>(ElapsedNanoseconds()) / static_cast<double>(kNanosecondsPerMillisecond);
}

std::uint32_t BStopWatch::Period() const {
  return static_cast<std::uint32_t>(ElapsedNanoseconds() / kNanosecondsPerMillisecond);
}

std::int64_t BStopWatch::ElapsedNanoseconds() const {
  const std::int64_t start_ns = m_start_ns;
  return start_ns == kAtRest ? 0 : NowNanoseconds() - start_ns;
}
