// run_together.cpp
// Work that begins at the same time on several threads.
#include "base/run_together.h"

#include <thread>

#include "bmutex.h"

namespace Kelcam {
namespace {

// Holds threads until it opens, or until it is known that it will not.
class Gate {
 public:
  void Open() { Set(State::kOpen); }
  void GiveUp() { Set(State::kGivenUp); }

  // Whether it has opened.
  bool Wait() {
    BMutexLock lock(m_mutex);
    while (m_state == State::kClosed) m_changed.Wait(lock);
    return m_state == State::kOpen;
  }

 private:
  enum class State { kClosed, kOpen, kGivenUp };

  void Set(State state) {
    const BMutexLock lock(m_mutex);
    m_state = state;
    m_changed.NotifyAll();
  }

  BMutex m_mutex;
  BCondition m_changed;
  State m_state KEL_GUARDED_BY(m_mutex) = State::kClosed;
};

void Join(std::vector<std::thread>& threads) {
  for (std::thread& thread : threads) thread.join();
}

}  // namespace

void RunTogether(const std::vector<std::function<void()>>& tasks) {
  Gate gate;
  std::vector<std::thread> threads;
  threads.reserve(tasks.size());
  try {
    for (const auto& task : tasks) {
      threads.emplace_back([&gate, &task] {
        if (gate.Wait()) task();
      });
    }
  } catch (...) {
    // The system has no further thread.
    gate.GiveUp();
    Join(threads);
    throw;
  }
  gate.Open();
  Join(threads);
}

}  // namespace Kelcam
