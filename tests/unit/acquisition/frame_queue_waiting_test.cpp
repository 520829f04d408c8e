// frame_queue_waiting_test.cpp
// How a pop waits: in which steps, and that it leaves the queue to others meanwhile.
#include <gtest/gtest.h>

#include <chrono>
#include <future>

#include "acquisition/frame_queue.h"

namespace {

// Counts how often it is looked into.
class CountingQueue final : public BFrameQueue {
 public:
  void LockW() const override KEL_ACQUIRE() {
    ++looks;
    BFrameQueue::LockW();
  }
  mutable int looks = 0;
};

// However slow the machine is, no more steps of this length fit into the time.
TEST(FrameQueueWait, LooksForAnEntryInStepsOfTenMilliseconds) {
  constexpr int kStepMs = 10;
  constexpr int kSteps = 8;
  CountingQueue queue;
  BSmartRef<BFrameQueue::BFrame> frame;
  EXPECT_EQ(queue.Pop(frame, kSteps * kStepMs), BError(BError::eTimeout));
  EXPECT_LE(queue.looks, 1 + kSteps);
}

TEST(FrameQueueWait, LeavesTheLockToOthersNearlyAllTheTime) {
  constexpr std::uint32_t kWaitMs = 200;
  BFrameQueue queue;
  BSmartRef<BFrameQueue::BFrame> frame;
  std::future<BError> waiting = std::async(std::launch::async, [&] { return queue.Pop(frame, kWaitMs); });
  int taken = 0;
  int refused = 0;
  while (waiting.wait_for(std::chrono::seconds(0)) != std::future_status::ready) {
    if (queue.TryLockW()) {
      queue.UnlockW();
      ++taken;
    } else {
      ++refused;
    }
  }
  EXPECT_GE(taken, refused);
}

}  // namespace
