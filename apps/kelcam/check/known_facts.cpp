// known_facts.cpp
// What a check knows so far, while it measures.
#include "check/known_facts.h"

namespace Kelcam {

CheckFacts KnownFacts::Snapshot() const {
  const BMutexLock lock(m_mutex);
  return m_facts;
}

void KnownFacts::Begin(Operation operation, std::uint64_t first_message, std::chrono::milliseconds may_wait) {
  const BMutexLock lock(m_mutex);
  m_step = Step{{operation, may_wait, std::chrono::steady_clock::now()}, first_message};
}

std::optional<KnownFacts::Step> KnownFacts::LastStep() const {
  const BMutexLock lock(m_mutex);
  return m_step;
}

void KnownFacts::Finish() {
  const BMutexLock lock(m_mutex);
  m_is_finished = true;
  m_finished.NotifyAll();
}

bool KnownFacts::WaitUntilFinished(std::chrono::milliseconds timeout) const {
  const auto deadline = std::chrono::steady_clock::now() + timeout;
  BMutexLock lock(m_mutex);
  while (!m_is_finished && std::chrono::steady_clock::now() < deadline) m_finished.WaitUntil(lock, deadline);
  return m_is_finished;
}

}  // namespace Kelcam
