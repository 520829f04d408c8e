// frame_queue_test.cpp
// The frame queue alone: order, waiting, errors, references, and which acquisition an entry belongs to.
#include "acquisition/frame_queue.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <future>
#include <map>
#include <thread>
#include <vector>

#include "VimbaC.h"
#include "bmutex.h"
#include "bstopwatch.h"

namespace {

using BFrame = BFrameQueue::BFrame;

// Much longer than any machine needs: a test that runs into it has failed.
constexpr std::uint32_t kDeadlineMs = 30'000;

BSmartRef<BFrame> MakeFrame(std::uint64_t id) { return new BFrame(16, VmbPixelFormatMono8, id, L"DEV_1"); }

// Tells when it is deleted.
class WatchedFrame final : public BFrame {
 public:
  explicit WatchedFrame(int& deleted) : BFrame(16, VmbPixelFormatMono8, 0, L"DEV_1"), m_deleted(deleted) {}
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

  EXPECT_EQ(ids, (std::vector<std::uint64_t>{7, 3, 5}));
}

TEST(FrameQueue, AnEmptyQueueTimesOutOnlyAfterTheWholeTime) {
  for (const std::uint32_t timeout_ms : {0U, 1U, 25U, 40U}) {
    BFrameQueue queue;
    BSmartRef<BFrame> frame;
    const BStopWatch watch;

    const BError error = queue.Pop(frame, timeout_ms);

    EXPECT_GE(watch.Period(), timeout_ms);
    EXPECT_LT(watch.Period(), kDeadlineMs);
    EXPECT_EQ(error, BError(BError::eTimeout)) << error.ErrorCode();
    EXPECT_FALSE(frame);
  }
}

TEST(FrameQueue, ATimeOutOfZeroStillTakesAWaitingEntry) {
  BFrameQueue queue;
  queue.Push(MakeFrame(1), BError());

  BSmartRef<BFrame> frame;
  EXPECT_EQ(queue.Pop(frame, 0).ErrorCode(), BError::eSuccess);

  ASSERT_TRUE(frame);
  EXPECT_EQ(frame->Id(), 1U);
}

TEST(FrameQueue, AnEntryWithoutAFrameGivesItsErrorWithItsText) {
  BFrameQueue queue;
  queue.Push(nullptr, BError(BError::eAcquisitionFailed, L" ReQueueFrame failed"));

  BSmartRef<BFrame> frame = MakeFrame(1);
  const BError error = queue.Pop(frame, 0);

  EXPECT_FALSE(frame);
  EXPECT_EQ(error.ErrorCode(), BError::eAcquisitionFailed);
  EXPECT_EQ(error.Text(0).Str(), L" ReQueueFrame failed");
}

TEST(FrameQueue, EveryErrorCodeComesOutAsItWentIn) {
  BFrameQueue queue;
  const std::vector<int> pushed{BError::eAcquisitionFailed, BError::eFrameTooSmall, BError::eFrameInvalid, 8, 0};
  for (const int code : pushed) queue.Push(nullptr, BError(code));
  queue.PushAbort();

  std::vector<int> popped;
  BSmartRef<BFrame> frame;
  for (std::size_t i = 0; i <= pushed.size(); ++i) popped.push_back(queue.Pop(frame, 0).ErrorCode());

  EXPECT_EQ(popped, (std::vector<int>{BError::eAcquisitionFailed, BError::eFrameTooSmall, BError::eFrameInvalid, 8, 0,
                                      BError::eAborted}));
}

TEST(FrameQueue, AFrameMayCarryAnErrorToo) {
  BFrameQueue queue;
  queue.Push(MakeFrame(4), BError(BError::eFrameInvalid));

  BSmartRef<BFrame> frame;
  EXPECT_EQ(queue.Pop(frame, 0).ErrorCode(), BError::eFrameInvalid);

  ASSERT_TRUE(frame);
  EXPECT_EQ(frame->Id(), 4U);
}

TEST(FrameQueue, TheCallersFrameIsReleasedEvenWhenPopTimesOut) {
  BFrameQueue queue;
  int deleted = 0;
  BSmartRef<BFrame> frame = MakeWatchedFrame(deleted);

  EXPECT_EQ(queue.Pop(frame, 0).ErrorCode(), BError::eTimeout);

  EXPECT_EQ(deleted, 1);
}

TEST(FrameQueue, AQueuedFrameHasOneReferenceWhichPopHandsOver) {
  BFrameQueue queue;
  BSmartRef<BFrame> frame = MakeFrame(1);
  const BFrame* const pushed = frame.Get();
  queue.Push(frame, BError());
  EXPECT_EQ(pushed->References(), 2);

  frame = nullptr;
  EXPECT_EQ(pushed->References(), 1);
  queue.Pop(frame, 0);

  EXPECT_EQ(frame.Get(), pushed);
  EXPECT_EQ(pushed->References(), 1);
}

TEST(FrameQueue, ClearReleasesEveryFrame) {
  BFrameQueue queue;
  int deleted = 0;
  for (int i = 0; i < 3; ++i) queue.Push(MakeWatchedFrame(deleted), BError());
  queue.PushAbort();

  queue.Clear();

  EXPECT_EQ(deleted, 3);
  BSmartRef<BFrame> frame;
  EXPECT_EQ(queue.Pop(frame, 0).ErrorCode(), BError::eTimeout);
}

TEST(FrameQueue, AClearedQueueTakesEntriesAgain) {
  BFrameQueue queue;
  queue.Push(MakeFrame(1), BError());
  queue.Clear();
  queue.Push(MakeFrame(2), BError());

  BSmartRef<BFrame> frame;
  EXPECT_EQ(queue.Pop(frame, 0).ErrorCode(), BError::eSuccess);

  ASSERT_TRUE(frame);
  EXPECT_EQ(frame->Id(), 2U);
}

TEST(FrameQueue, TheQueueReleasesItsFramesWhenItGoes) {
  int deleted = 0;
  {
    BFrameQueue queue;
    queue.Push(MakeWatchedFrame(deleted), BError());
  }
  EXPECT_EQ(deleted, 1);
}

TEST(FrameQueue, AFrameOfTheRunningAcquisitionIsTaken) {
  BFrameQueue queue;
  queue.Clear();

  EXPECT_TRUE(queue.PushUnlessOver(queue.CurrentAcquisition(), MakeFrame(9)));

  BSmartRef<BFrame> frame;
  EXPECT_EQ(queue.Pop(frame, 0).ErrorCode(), BError::eSuccess);
  ASSERT_TRUE(frame);
  EXPECT_EQ(frame->Id(), 9U);
}

TEST(FrameQueue, ALateFrameOfAnEarlierAcquisitionIsDropped) {
  BFrameQueue queue;
  const BFrameQueue::AcquisitionNumber earlier = queue.CurrentAcquisition();
  queue.Clear();
  int deleted = 0;

  EXPECT_FALSE(queue.PushUnlessOver(earlier, MakeWatchedFrame(deleted)));

  EXPECT_EQ(deleted, 1);
  BSmartRef<BFrame> frame;
  EXPECT_EQ(queue.Pop(frame, 0).ErrorCode(), BError::eTimeout);
}

TEST(FrameQueue, AFailureIsTakenOrDroppedLikeAFrame) {
  BFrameQueue queue;
  const BFrameQueue::AcquisitionNumber earlier = queue.CurrentAcquisition();
  queue.Clear();

  EXPECT_FALSE(queue.PushUnlessOver(earlier, nullptr, BError(BError::eAcquisitionFailed, L"late")));
  EXPECT_TRUE(
      queue.PushUnlessOver(queue.CurrentAcquisition(), nullptr, BError(BError::eAcquisitionFailed, L"in time")));

  BSmartRef<BFrame> frame;
  EXPECT_EQ(queue.Pop(frame, 0), BError(BError::eAcquisitionFailed, L"in time"));
  EXPECT_EQ(queue.Pop(frame, 0).ErrorCode(), BError::eTimeout);
}

TEST(FrameQueue, OnlyClearingBeginsAnotherAcquisition) {
  BFrameQueue queue;
  const BFrameQueue::AcquisitionNumber first = queue.CurrentAcquisition();
  queue.Push(MakeFrame(1), BError());
  BSmartRef<BFrame> frame;
  queue.Pop(frame, 0);
  EXPECT_EQ(queue.CurrentAcquisition(), first);

  queue.Clear();
  const BFrameQueue::AcquisitionNumber second = queue.CurrentAcquisition();
  queue.Clear();

  EXPECT_NE(second, first);
  EXPECT_NE(queue.CurrentAcquisition(), first);
  EXPECT_NE(queue.CurrentAcquisition(), second);
}

// Starts a Pop with a long time-out in another thread and returns once it has looked into the queue at least once.
std::future<BError> StartWaiting(CountingQueue& queue, BSmartRef<BFrame>& frame) {
  std::future<BError> result = std::async(std::launch::async, [&] { return queue.Pop(frame, kDeadlineMs); });
  const BStopWatch watch;
  while (queue.writes == 0 && watch.Period() < kDeadlineMs) std::this_thread::yield();
  return result;
}

TEST(FrameQueue, AnAbortWakesAWaitingPop) {
  CountingQueue queue;
  BSmartRef<BFrame> frame;
  std::future<BError> waiting = StartWaiting(queue, frame);
  const BStopWatch watch;

  queue.PushAbort();

  EXPECT_EQ(waiting.get().ErrorCode(), BError::eAborted);
  EXPECT_LT(watch.Period(), kDeadlineMs / 2);
  EXPECT_FALSE(frame);
}

TEST(FrameQueue, AFrameOfAnotherThreadWakesAWaitingPop) {
  CountingQueue queue;
  BSmartRef<BFrame> frame;
  std::future<BError> waiting = StartWaiting(queue, frame);

  queue.Push(MakeFrame(11), BError());

  EXPECT_EQ(waiting.get().ErrorCode(), BError::eSuccess);
  ASSERT_TRUE(frame);
  EXPECT_EQ(frame->Id(), 11U);
}

TEST(FrameQueue, NoLockIsHeldWhileWaiting) {
  CountingQueue queue;
  BSmartRef<BFrame> frame;
  std::future<BError> waiting = StartWaiting(queue, frame);

  const BStopWatch watch;
  bool locked = false;
  while (!locked && watch.Period() < kDeadlineMs) {
    if (!queue.TryLockW()) continue;
    locked = true;
    queue.UnlockW();
  }
  queue.PushAbort();

  EXPECT_TRUE(locked);
  EXPECT_EQ(waiting.get().ErrorCode(), BError::eAborted);
}

TEST(FrameQueue, EveryOperationTakesTheWriteLockAndNoneTheReadLock) {
  CountingQueue queue;
  const auto locks_of = [&queue](const auto& operation) {
    const int before = queue.writes;
    operation();
    return queue.writes - before;
  };
  BSmartRef<BFrame> frame;

  EXPECT_EQ(locks_of([&] { queue.Push(nullptr, BError()); }), 1);
  EXPECT_EQ(locks_of([&] { queue.PushAbort(); }), 1);
  EXPECT_EQ(locks_of([&] { queue.PushUnlessOver(0, nullptr); }), 1);
  EXPECT_EQ(locks_of([&] { queue.Pop(frame, 0); }), 1);
  EXPECT_EQ(locks_of([&] { queue.Clear(); }), 1);
  EXPECT_EQ(locks_of([&] { queue.Pop(frame, 0); }), 1) << "of an empty queue";
  EXPECT_EQ(queue.reads, 0);
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

  std::map<std::uint64_t, std::uint64_t> next_of_producer;
  BSmartRef<BFrame> frame;
  for (std::uint64_t i = 0; i < kProducers * kFramesEach; ++i) {
    ASSERT_EQ(queue.Pop(frame, kDeadlineMs).ErrorCode(), BError::eSuccess);
    EXPECT_EQ(frame->Id() % kFramesEach, next_of_producer[frame->Id() / kFramesEach]++);
  }
  for (std::thread& producer : producers) producer.join();

  EXPECT_EQ(queue.Pop(frame, 0).ErrorCode(), BError::eTimeout);
}

// Threads that go on together. std::barrier loses wake-ups in MinGW-w64's g++ 12.
class Meeting {
 public:
  explicit Meeting(int threads) : m_threads(threads) {}

  void Attend() {
    BMutexLock lock(m_mutex);
    const int meeting = m_meeting;
    if (++m_present == m_threads) {
      m_present = 0;
      ++m_meeting;
      m_all_present.NotifyAll();
    }
    while (m_meeting == meeting) m_all_present.Wait(lock);
  }

 private:
  BMutex m_mutex;
  BCondition m_all_present;
  const int m_threads;
  int m_present KEL_GUARDED_BY(m_mutex) = 0;
  int m_meeting KEL_GUARDED_BY(m_mutex) = 0;
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
        const BFrameQueue::AcquisitionNumber acquisition = queue.CurrentAcquisition();
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

  EXPECT_EQ(late, 0);
}

}  // namespace
