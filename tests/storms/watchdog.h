// watchdog.h
// Ends a program that hangs, and says where it was.
#pragma once

#include <chrono>
#include <functional>
#include <thread>

#include "bmutex.h"

// A thread that waits for the next sign of life. Without one in time it calls `on_hang` and ends the process, without
// destroying anything, with kExitCode.
class Watchdog {
 public:
  static constexpr int kExitCode = 3;

  Watchdog(std::chrono::seconds patience, std::function<void()> on_hang);
  ~Watchdog();
  Watchdog(const Watchdog&) = delete;
  Watchdog& operator=(const Watchdog&) = delete;

  // A sign of life: the time counts anew. [any thread]
  void Feed();

 private:
  using Clock = std::chrono::steady_clock;

  void Watch();

  const std::chrono::seconds m_patience;
  const std::function<void()> m_on_hang;
  BMutex m_mutex;
  BCondition m_over_changed;
  Clock::time_point m_last_sign KEL_GUARDED_BY(m_mutex) = Clock::now();
  bool m_over KEL_GUARDED_BY(m_mutex) = false;
  std::thread m_thread;
};
