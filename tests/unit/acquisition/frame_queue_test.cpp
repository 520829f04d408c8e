// frame_queue_test.cpp
// The frame queue alone: order, waiting, errors, references, and which acquisition an entry belongs to.
#include "acquisition/frame_queue.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <future>
#include <map>
#include <mutex>
#include <thread>
#include <vector>

#include "bstopwatch.h"

namespace {

using BFrame = BFrameQueue::BFrame;

constexpr std::uint32_t kMono8 = 0x01080001;
// Milliseconds. Much longer than any machine needs: a test that runs into it has failed.
constexpr std::uint32_t kDeadline = 30'000;

BSmartRef<BFrame> MakeFrame(std::uint64_t id) { return new BFrame(16, kMono8, id, L"DEV_1"); }

// Tells when it is deleted.
class WatchedFrame final : public BFrame {
 public:
  explicit WatchedFrame(int& deleted) : BFrame(16, kMono8, 0, L"DEV_1"), m_deleted(deleted) {}
  ~WatchedFrame() override { ++m_deleted; }

 private:
  int& m_deleted;
};

BSmartRef<BFrame> MakeWatchedFrame(int& deleted) { return new WatchedFrame(deleted); }

// Counts how its lock is used.
class CountingQueue final : public BFrameQueue {
 public:
  void LockW() const override KEL_ACQUIRE() {
    ++writes;
    BFrameQueue::LockW();
  }
  void LockR() const override KEL_ACQUIRE_SHARED() {
    ++reads;
    BFrameQueue::LockR();
  }
  mutable std::atomic<int> writes{0};
  mutable std::atomic<int> reads{0};
};

TEST(FrameQueue, EntriesLeaveFirstInFirstOut) {
  BFrameQueue queue;
  for (const std::uint64_t id : {7U, 3U, 5U}) queue.Push(MakeFrame(id), BError());

  std::vector<std::uint64_t> ids;
  BSmartRef<BFrame> frame;
  while (!queue.Pop(frame, 0).IsError()) ids.push_back(frame->Id());

  EXPECT_EQ((std::vector<std::uint64_t>{7, 3, 5}), ids);
}

TEST(FrameQueue, AnEmptyQueueTimesOutOnlyAfterTheWholeTime) {
  for (const std::uint32_t timeout_ms : {0U, 1U, 25U, 40U}) {
    BFrameQueue queue;
    BSmartRef<BFrame> frame;
    const BStopWatch watch;

    const BError error = queue.Pop(frame, timeout_ms);

    EXPECT_GE(watch.Period(), timeout_ms);
    EXPECT_LT(watch.Period(), kDeadline);
    EXPECT_EQ(BError(12106), error) << error.ErrorCode();
    EXPECT_FALSE(frame);
  }
}

TEST(FrameQueue, ATimeOutOfZeroStillTakesAWaitingEntry) {
  BFrameQueue queue;
  queue.Push(MakeFrame(1), BError());

  BSmartRef<BFrame> frame;
  EXPECT_EQ(0, queue.Pop(frame, 0).ErrorCode());

  ASSERT_TRUE(frame);
  EXPECT_EQ(1U, frame->Id());
}

TEST(FrameQueue, AnEntryWithoutAFrameGivesItsErrorWithItsText) {
  BFrameQueue queue;
  queue.Push(nullptr, BError(12103, L" ReQueueFrame failed"));

  BSmartRef<BFrame> frame = MakeFrame(1);
  const BError error = queue.Pop(frame, 0);

  EXPECT_FALSE(frame);
  EXPECT_EQ(12103, error.ErrorCode());
  EXPECT_EQ(L" ReQueueFrame failed", error.Text(0).Str());
}

TEST(FrameQueue, EveryErrorCodeComesOutAsItWentIn) {
  BFrameQueue queue;
  const std::vector<int> pushed{12103, 12108, 12110, 8, 0};
  for (const int code : pushed) queue.Push(nullptr, BError(code));
  queue.PushAbort();

  std::vector<int> popped;
  BSmartRef<BFrame> frame;
  for (std::size_t i = 0; i <= pushed.size(); ++i) popped.push_back(queue.Pop(frame, 0).ErrorCode());

  EXPECT_EQ((std::vector<int>{12103, 12108, 12110, 8, 0, 12109}), popped);
}

TEST(FrameQueue, AFrameMayCarryAnErrorToo) {
  BFrameQueue queue;
  queue.Push(MakeFrame(4), BError(12110));

  BSmartRef<BFrame> frame;
  EXPECT_EQ(12110, queue.Pop(frame, 0).ErrorCode());

  ASSERT_TRUE(frame);
  EXPECT_EQ(4U, frame->Id());
}

TEST(FrameQueue, TheCallersFrameIsReleasedEvenWhenPopTimesOut) {
  BFrameQueue queue;
  int deleted = 0;
  BSmartRef<BFrame> frame = MakeWatchedFrame(deleted);

  EXPECT_EQ(12106, queue.Pop(frame, 0).ErrorCode());

  EXPECT_EQ(1, deleted);
}

TEST(FrameQueue, AQueuedFrameHasOneReferenceWhichPopHandsOver) {
  BFrameQueue queue;
  BSmartRef<BFrame> frame = MakeFrame(1);
  const BFrame* const pushed = frame.Get();
  queue.Push(frame, BError());
  EXPECT_EQ(2, pushed->References());

  frame = nullptr;
  EXPECT_EQ(1, pushed->References());
  queue.Pop(frame, 0);

  EXPECT_EQ(pushed, frame.Get());
  EXPECT_EQ(1, pushed->References());
}

TEST(FrameQueue, ClearReleasesEveryFrame) {
  BFrameQueue queue;
  int deleted = 0;
  for (int i = 0; i < 3; ++i) queue.Push(MakeWatchedFrame(deleted), BError());
  queue.PushAbort();

  queue.Clear();

  EXPECT_EQ(3, deleted);
  BSmartRef<BFrame> frame;
  EXPECT_EQ(12106, queue.Pop(frame, 0).ErrorCode());
}

TEST(FrameQueue, AClearedQueueTakesEntriesAgain) {
  BFrameQueue queue;
  queue.Push(MakeFrame(1), BError());
  queue.Clear();
  queue.Push(MakeFrame(2), BError());

  BSmartRef<BFrame> frame;
  EXPECT_EQ(0, queue.Pop(frame, 0).ErrorCode());

  ASSERT_TRUE(frame);
  EXPECT_EQ(2U, frame->Id());
}

TEST(FrameQueue, TheQueueReleasesItsFramesWhenItGoes) {
  int deleted = 0;
  {
    BFrameQueue queue;
    queue.Push(MakeWatchedFrame(deleted), BError());
  }
  EXPECT_EQ(1, deleted);
}

TEST(FrameQueue, AFrameOfTheRunningAcquisitionIsTaken) {
  BFrameQueue queue;
  queue.Clear();

  EXPECT_TRUE(queue.PushUnlessOver(queue.CurrentAcquisition(), MakeFrame(9)));

  BSmartRef<BFrame> frame;
  EXPECT_EQ(0, queue.Pop(frame, 0).ErrorCode());
  ASSERT_TRUE(frame);
  EXPECT_EQ(9U, frame->Id());
}

TEST(FrameQueue, ALateFrameOfAnEarlierAcquisitionIsDropped) {
  BFrameQueue queue;
  const BFrameQueue::Acquisition earlier = queue.CurrentAcquisition();
  queue.Clear();
  int deleted = 0;

  EXPECT_FALSE(queue.PushUnlessOver(earlier, MakeWatchedFrame(deleted)));

  EXPECT_EQ(1, deleted);
  BSmartRef<BFrame> frame;
  EXPECT_EQ(12106, queue.Pop(frame, 0).ErrorCode());
}

TEST(FrameQueue, AFailureIsTakenOrDroppedLikeAFrame) {
  BFrameQueue queue;
  const BFrameQueue::Acquisition earlier = queue.CurrentAcquisition();
  queue.Clear();

  EXPECT_FALSE(queue.PushUnlessOver(earlier, nullptr, BError(12103, L"late")));
  EXPECT_TRUE(queue.PushUnlessOver(queue.CurrentAcquisition(), nullptr, BError(12103, L"in time")));

  BSmartRef<BFrame> frame;
  EXPECT_EQ(BError(12103, L"in time"), queue.Pop(frame, 0));
  EXPECT_EQ(12106, queue.Pop(frame, 0).ErrorCode());
}

TEST(FrameQueue, OnlyClearingBeginsAnotherAcquisition) {
  BFrameQueue queue;
  const BFrameQueue::Acquisition first = queue.CurrentAcquisition();
  queue.Push(MakeFrame(1), BError());
  BSmartRef<BFrame> frame;
  queue.Pop(frame, 0);
  EXPECT_EQ(first, queue.CurrentAcquisition());

  queue.Clear();
  const BFrameQueue::Acquisition second = queue.CurrentAcquisition();
  queue.Clear();

  EXPECT_NE(first, second);
  EXPECT_NE(second, queue.CurrentAcquisition());
  EXPECT_NE(first, queue.CurrentAcquisition());
}

// Starts a Pop with a long time-out in another thread and returns once it has looked into the queue at least once.
std::future<BError> StartWaiting(CountingQueue& queue, BSmartRef<BFrame>& frame) {
  std::future<BError> result = std::async(std::launch::async, [&] { return queue.Pop(frame, kDeadline); });
  const BStopWatch watch;
  while (queue.writes == 0 && watch.Period() < kDeadline) std::this_thread::yield();
  return result;
}

TEST(FrameQueue, AnAbortWakesAWaitingPop) {
  CountingQueue queue;
  BSmartRef<BFrame> frame;
  std::future<BError> waiting = StartWaiting(queue, frame);
  const BStopWatch watch;

  queue.PushAbort();

  EXPECT_EQ(12109, waiting.get().ErrorCode());
  EXPECT_LT(watch.Period(), kDeadline / 2);
  EXPECT_FALSE(frame);
}

TEST(FrameQueue, AFrameOfAnotherThreadWakesAWaitingPop) {
  CountingQueue queue;
  BSmartRef<BFrame> frame;
  std::future<BError> waiting = StartWaiting(queue, frame);

  queue.Push(MakeFrame(11), BError());

  EXPECT_EQ(0, waiting.get().ErrorCode());
  ASSERT_TRUE(frame);
  EXPECT_EQ(11U, frame->Id());
}

TEST(FrameQueue, NoLockIsHeldWhileWaiting) {
  CountingQueue queue;
  BSmartRef<BFrame> frame;
  std::future<BError> waiting = StartWaiting(queue, frame);

  const BStopWatch watch;
  bool locked = false;
  while (!locked && watch.Period() < kDeadline) {
    if (!queue.TryLockW()) continue;
    locked = true;
    queue.UnlockW();
  }
  queue.PushAbort();

  EXPECT_TRUE(locked);
  EXPECT_EQ(12109, waiting.get().ErrorCode());
}

TEST(FrameQueue, EveryOperationTakesTheWriteLockAndNoneTheReadLock) {
  CountingQueue queue;
  const auto locks_of = [&queue](const auto& operation) {
    const int before = queue.writes;
    operation();
    return queue.writes - before;
  };
  BSmartRef<BFrame> frame;

  EXPECT_EQ(1, locks_of([&] { queue.Push(nullptr, BError()); }));
  EXPECT_EQ(1, locks_of([&] { queue.PushAbort(); }));
  EXPECT_EQ(1, locks_of([&] { queue.PushUnlessOver(0, nullptr); }));
  EXPECT_EQ(1, locks_of([&] { queue.Pop(frame, 0); }));
  EXPECT_EQ(1, locks_of([&] { queue.Clear(); }));
  EXPECT_EQ(1, locks_of([&] { queue.Pop(frame, 0); }));  // empty
  EXPECT_EQ(0, queue.reads);
}

TEST(FrameQueue, ManyProducersLoseNothingAndEachKeepsItsOrder) {
  constexpr std::uint64_t kProducers = 8;
  constexpr std::uint64_t kFramesEach = 200;
  BFrameQueue queue;
  std::vector<std::thread> producers;
  for (std::uint64_t producer = 0; producer < kProducers; ++producer) {
    producers.emplace_back([&queue, producer] {
      for (std::uint64_t i = 0; i < kFramesEach; ++i) queue.Push(MakeFrame(producer * kFramesEach + i), BError());
    });
  }

  std::map<std::uint64_t, std::uint64_t> next;  // by producer
  BSmartRef<BFrame> frame;
  for (std::uint64_t i = 0; i < kProducers * kFramesEach; ++i) {
    ASSERT_EQ(0, queue.Pop(frame, kDeadline).ErrorCode());
    EXPECT_EQ(next[frame->Id() / kFramesEach]++, frame->Id() % kFramesEach);
  }
  for (std::thread& producer : producers) producer.join();

  EXPECT_EQ(12106, queue.Pop(frame, 0).ErrorCode());
}

// Threads that go on together. std::barrier loses wake-ups in MinGW-w64's g++ 12.
class Meeting {
 public:
  explicit Meeting(int threads) : m_threads(threads) {}

  void Attend() {
    std::unique_lock lock(m_lock);
    const int meeting = m_meeting;
    if (++m_present == m_threads) {
      m_present = 0;
      ++m_meeting;
      m_all_present.notify_all();
    }
    m_all_present.wait(lock, [&] { return m_meeting != meeting; });
  }

 private:
  std::mutex m_lock;
  std::condition_variable m_all_present;
  const int m_threads;
  int m_present = 0;
  int m_meeting = 0;
};

TEST(FrameQueue, WhateverTheMomentOfAClearNoLateFramePassesIt) {
  constexpr int kRounds = 100;
  constexpr int kWorkers = 4;
  BFrameQueue queue;
  Meeting in_step(kWorkers + 1);
  std::vector<std::thread> workers(kWorkers);
  for (std::thread& worker : workers) {
    worker = std::thread([&] {
      for (int round = 0; round < kRounds; ++round) {
        const BFrameQueue::Acquisition acquisition = queue.CurrentAcquisition();
        in_step.Attend();
        for (int frame = 0; frame < 20; ++frame) queue.PushUnlessOver(acquisition, MakeFrame(0));
        in_step.Attend();
      }
    });
  }
  BSmartRef<BFrame> frame;
  int late = 0;
  for (int round = 0; round < kRounds; ++round) {
    in_step.Attend();
    queue.Clear();
    in_step.Attend();
    if (!queue.Pop(frame, 0).IsError()) ++late;
  }
  for (std::thread& worker : workers) worker.join();

  EXPECT_EQ(0, late);
}

}  // namespace
