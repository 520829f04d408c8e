// thread_exits_test.cpp
// The wait that lets the module be unloaded.
#include "acquisition/thread_exits.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace {

// What a thread destroys on its way out, after its last act.
class LateDestruction {
 public:
  explicit LateDestruction(std::atomic<int>& destroyed) : m_destroyed(&destroyed) {}
  LateDestruction(LateDestruction&& other) noexcept : m_destroyed(other.m_destroyed) { other.m_destroyed = nullptr; }
  LateDestruction(const LateDestruction&) = delete;
  LateDestruction& operator=(const LateDestruction&) = delete;
  LateDestruction& operator=(LateDestruction&&) = delete;
  ~LateDestruction() {
    if (!m_destroyed) return;
    for (int pause = 0; pause < 200; ++pause) std::this_thread::yield();
    ++*m_destroyed;
  }

 private:
  std::atomic<int>* m_destroyed;
};

TEST(ThreadExits, NothingIsWaitedForWithoutAThread) { ThreadExits::WaitForAll(); }

TEST(ThreadExits, TheWaitLastsUntilTheDestructorsOfEveryThreadHaveRun) {
  constexpr int kThreads = 10;
  for (int round = 0; round < 20; ++round) {
    std::atomic<int> destroyed{0};
    for (int i = 0; i < kThreads; ++i) {
      ThreadExits::Start([late = LateDestruction(destroyed)] {});
    }

    ThreadExits::WaitForAll();

    EXPECT_EQ(kThreads, destroyed);
  }
}

}  // namespace
