// system/discovery.cpp
// Looks for cameras again and again, while discovery is automatic.
#include "system/discovery.h"

#include <utility>

namespace Bridge {

Discovery::Discovery(std::function<void()> search) : m_search(std::move(search)), m_thread([this] { Run(); }) {}

Discovery::~Discovery() {
  {
    const BMutexLock lock(m_mutex);
    m_stopping = true;
    m_changed.NotifyAll();
  }
  m_thread.join();
}

void Discovery::Run() {
  BMutexLock lock(m_mutex);
  while (!m_stopping) {
    const auto end = std::chrono::steady_clock::now() + kPause;
    while (!m_stopping && std::chrono::steady_clock::now() < end) m_changed.WaitUntil(lock, end);
    if (m_stopping) return;
    const BMutexUnlock unlocked(m_mutex, lock);
    m_search();
  }
}

}  // namespace Bridge
