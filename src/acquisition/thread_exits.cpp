// thread_exits.cpp
// Tells when the module's threads have left its code, so that a host may unload it once no device is left.
#include "acquisition/thread_exits.h"

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <utility>

namespace {

struct Gate {
  std::mutex lock;
  std::condition_variable somebody_left;
  std::atomic<int> expected{0};
};

// Left behind on purpose, once for each time that the module is loaded: the last thread to leave sets the lock free and
// then still notifies, when the module and all that it owns may be gone.
Gate& TheGate() {
  static Gate* const gate = new Gate;
  return *gate;
}

}  // namespace

void ThreadExits::ExpectOne() { ++TheGate().expected; }

// The lock stays with the thread to its end, past the destructors of whatever the module gave it.
void ThreadExits::AnnounceThisThreads() {
  std::unique_lock lock(TheGate().lock);
  --TheGate().expected;
  std::notify_all_at_thread_exit(TheGate().somebody_left, std::move(lock));
}

void ThreadExits::WaitForAll() {
  std::unique_lock lock(TheGate().lock);
  TheGate().somebody_left.wait(lock, [] { return TheGate().expected == 0; });
}
