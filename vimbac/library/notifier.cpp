// library/notifier.cpp
// The thread on which feature invalidations call back.
#include "library/notifier.h"

#include <algorithm>
#include <utility>

namespace VimbaLibrary {

Notifier::Notifier() : m_thread([this] { Run(); }) {}

Notifier::~Notifier() { Stop(); }

void Notifier::Post(Notification notification) {
  const BMutexLock lock(m_mutex);
  ++m_activity;
  m_posted.push_back(std::move(notification));
  m_changed.NotifyAll();
}

void Notifier::Drop(VmbHandle_t handle) {
  BMutexLock lock(m_mutex);
  m_posted.erase(std::remove_if(m_posted.begin(), m_posted.end(),
                                [&](const Notification& posted) { return posted.handle == handle; }),
                 m_posted.end());
  while (m_calling == handle && !OnThread()) m_changed.Wait(lock);
}

bool Notifier::Idle() const {
  const BMutexLock lock(m_mutex);
  return !m_calling && m_posted.empty();
}

void Notifier::Stop() {
  {
    const BMutexLock lock(m_mutex);
    m_stopping = true;
    m_changed.NotifyAll();
  }
  if (m_thread.joinable()) m_thread.join();
}

void Notifier::Run() {
  m_thread_id = std::this_thread::get_id();
  BMutexLock lock(m_mutex);
  while (!m_stopping) {
    if (m_posted.empty()) {
      m_changed.Wait(lock);
      continue;
    }
    const Notification next = std::move(m_posted.front());
    m_posted.pop_front();
    m_calling = next.handle;
    {
      const BMutexUnlock unlocked(m_mutex, lock);
      if (next.before) next.before();
      if (next.callback) next.callback(next.handle, next.feature.c_str(), next.context);
    }
    m_calling = nullptr;
    ++m_activity;
    m_changed.NotifyAll();
  }
}

}  // namespace VimbaLibrary
