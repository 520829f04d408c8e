// sweep_windows.cpp
// Runs many cases in this process, beside a thread that ends it when one hangs.
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <thread>

#include "bmutex.h"
#include "sweep.h"

namespace {

// Many times what a life takes, its fixed waits included.
constexpr std::chrono::seconds kDeadline{120};

// While it lives, a case that takes longer ends the process. [host thread]
class Watchdog {
 public:
  explicit Watchdog(const std::string& command) : m_command(command), m_thread([this] { Watch(); }) {}
  ~Watchdog() {
    {
      const BMutexLock lock(m_mutex);
      m_over = true;
      m_changed.NotifyAll();
    }
    m_thread.join();
  }
  Watchdog(const Watchdog&) = delete;
  Watchdog& operator=(const Watchdog&) = delete;

  void Begin(const std::string& test) {
    const BMutexLock lock(m_mutex);
    m_case = test;
    m_deadline = std::chrono::steady_clock::now() + kDeadline;
  }

 private:
  void Watch() {
    BMutexLock lock(m_mutex);
    while (!m_over) {
      m_changed.WaitUntil(lock, m_deadline);
      if (m_over || std::chrono::steady_clock::now() < m_deadline) continue;
      std::printf("finding: hangs for %d s\n  %s '%s'\n", static_cast<int>(kDeadline.count()), m_command.c_str(),
                  m_case.c_str());
      std::fflush(stdout);
      std::abort();
    }
  }

  const std::string& m_command;
  BMutex m_mutex;
  BCondition m_changed;
  bool m_over KEL_GUARDED_BY(m_mutex) = false;
  std::string m_case KEL_GUARDED_BY(m_mutex) = "before the first case";
  std::chrono::steady_clock::time_point m_deadline KEL_GUARDED_BY(m_mutex) =
      std::chrono::steady_clock::now() + kDeadline;
  std::thread m_thread;
};

}  // namespace

SweepOutcome Sweep(const MakeCases& make, std::size_t /*processes*/, const std::string& command) {
  Watchdog watchdog(command);
  const std::unique_ptr<CaseSource> source = make();
  SweepOutcome outcome;
  for (const std::string& test : source->Cases()) {
    watchdog.Begin(test);
    for (const std::string& finding : source->Run(test)) {
      ++outcome.findings;
      std::cout << "finding: " << finding << "\n  " << command << " '" << test << "'\n";
    }
    ++outcome.runs;
  }
  return outcome;
}
