// watchdog.cpp
// Ends a program that hangs, and says where it was.
#include "storms/watchdog.h"

#include <cstdlib>
#include <utility>

Watchdog::Watchdog(std::chrono::seconds patience, std::function<void()> on_hang)
    : m_patience(patience), m_on_hang(std::move(on_hang)), m_thread([this] { Watch(); }) {}

Watchdog::~Watchdog() {
  {
    const BMutexLock lock(m_mutex);
    m_over = true;
    m_over_changed.NotifyAll();
  }
  m_thread.join();
}

void Watchdog::Feed() {
  const BMutexLock lock(m_mutex);
  m_last_sign = Clock::now();
}

void Watchdog::Watch() {
  BMutexLock lock(m_mutex);
  while (!m_over) {
    const Clock::time_point due = m_last_sign + m_patience;
    if (Clock::now() >= due) {
      m_on_hang();
      std::_Exit(kExitCode);
    }
    m_over_changed.WaitUntil(lock, due);
  }
}
