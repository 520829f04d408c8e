// schedule.cpp
// When the images of a time-lapse are taken.
#include "snap/schedule.h"

#include <algorithm>
#include <thread>

namespace Kelcam {
namespace {

// How long the end of the run may wait: the signal of an interrupt cannot wake a thread up.
constexpr std::chrono::milliseconds kPollInterval{50};

}  // namespace

bool Schedule::WaitForNext(const std::function<bool()>& is_over) {
  if (!m_interval || !m_start) {
    m_start = Clock::now();
    return !is_over();
  }
  const std::int64_t next = Next(m_last, Clock::now() - *m_start, *m_interval);
  m_missed = next - m_last - 1;
  m_last = next;
  const auto due = *m_start + std::chrono::duration_cast<Clock::duration>(static_cast<double>(next) * *m_interval);
  for (Clock::time_point now = Clock::now(); now < due && !is_over(); now = Clock::now()) {
    std::this_thread::sleep_until(std::min<Clock::time_point>(due, now + kPollInterval));
  }
  return !is_over();
}

}  // namespace Kelcam
