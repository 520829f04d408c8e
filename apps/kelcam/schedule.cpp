// schedule.cpp
// When the images of a time-lapse are taken.
#include "schedule.h"

#include <algorithm>
#include <thread>

#include "interrupt.h"

namespace Kelcam {
namespace {

// How long an interrupt may wait: a signal cannot wake a thread up.
constexpr std::chrono::milliseconds kInterruptPoll{50};

}  // namespace

bool Schedule::WaitForNext() {
  if (!m_interval || !m_start) {
    m_start = Clock::now();
    return !Interrupted();
  }
  const std::int64_t next = Next(m_last, Clock::now() - *m_start, *m_interval);
  m_missed = next - m_last - 1;
  m_last = next;
  const auto due = *m_start + std::chrono::duration_cast<Clock::duration>(static_cast<double>(next) * *m_interval);
  for (Clock::time_point now = Clock::now(); now < due && !Interrupted(); now = Clock::now()) {
    std::this_thread::sleep_until(std::min<Clock::time_point>(due, now + kInterruptPoll));
  }
  return !Interrupted();
}

}  // namespace Kelcam
