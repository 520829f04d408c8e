// bdetachedthreads_test.cpp
// The wait that lets a module be unloaded.
#include "bdetachedthreads.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <future>
#include <thread>

namespace {

constexpr std::chrono::seconds kDeadline{30};

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

std::future<void> WaitingFor(BDetachedThreads& threads) {
  return std::async(std::launch::async, [&threads] { threads.WaitForAll(); });
}

TEST(BDetachedThreads, NothingIsWaitedForWithoutAThread) {
  BDetachedThreads threads;

  const std::future<void> wait = WaitingFor(threads);

  EXPECT_EQ(wait.wait_for(kDeadline), std::future_status::ready);
}

TEST(BDetachedThreads, TheWaitLastsUntilTheDestructorsOfEveryThreadHaveRun) {
  constexpr int kThreads = 10;
  BDetachedThreads& threads = BDetachedThreads::Of("a module");
  for (int round = 0; round < 20; ++round) {
    std::atomic<int> destroyed{0};
    for (int i = 0; i < kThreads; ++i) {
      threads.Start([late = LateDestruction(destroyed)] {});
    }

    threads.WaitForAll();

    EXPECT_EQ(destroyed, kThreads);
  }
}

TEST(BDetachedThreads, OneModulesThreadsAreNotWaitedForWithAnothers) {
  std::promise<void> end;
  BDetachedThreads& busy = BDetachedThreads::Of("a busy module");
  busy.Start([ended = end.get_future()] { ended.wait(); });

  const std::future<void> wait = WaitingFor(BDetachedThreads::Of("another module"));

  EXPECT_EQ(wait.wait_for(kDeadline), std::future_status::ready);
  end.set_value();
  busy.WaitForAll();
}

TEST(BDetachedThreads, AModuleThatIsLoadedAgainFindsItsOwnAgain) {
  EXPECT_EQ(&BDetachedThreads::Of("a module"), &BDetachedThreads::Of("a module"));
  EXPECT_NE(&BDetachedThreads::Of("another module"), &BDetachedThreads::Of("a module"));
}

}  // namespace
