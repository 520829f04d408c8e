// bmutex_test.cpp
// Mutexes, their locks and the condition.
#include "bmutex.h"

#include <gtest/gtest.h>

#include <future>
#include <thread>
#include <vector>

namespace {

constexpr std::chrono::seconds kDeadline{30};

// One value under a lock, counted up by many threads.
template <class Mutex, class Lock>
class Counter {
 public:
  void Add() {
    const Lock lock(m_mutex);
    const int before = m_value;
    std::this_thread::yield();
    m_value = before + 1;
  }
  int Value() {
    const Lock lock(m_mutex);
    return m_value;
  }

 private:
  Mutex m_mutex;
  int m_value KEL_GUARDED_BY(m_mutex) = 0;
};

constexpr int kThreads = 4;
constexpr int kRounds = 1000;

template <class Tested>
int CountedByManyThreads() {
  Tested counter;
  std::vector<std::thread> threads;
  threads.reserve(kThreads);
  for (int i = 0; i < kThreads; ++i) {
    threads.emplace_back([&] {
      for (int round = 0; round < kRounds; ++round) counter.Add();
    });
  }
  for (std::thread& thread : threads) thread.join();
  return counter.Value();
}

TEST(BMutex, ServesOneThreadAtATime) {
  EXPECT_EQ((CountedByManyThreads<Counter<BMutex, BMutexLock>>()), kThreads * kRounds);
}

TEST(BRecursiveMutex, ServesOneThreadAtATime) {
  EXPECT_EQ((CountedByManyThreads<Counter<BRecursiveMutex, BRecursiveMutexLock>>()), kThreads * kRounds);
}

// A function that takes what its caller holds.
class Nested {
 public:
  int Outer() {
    const BRecursiveMutexLock lock(m_mutex);
    return Inner() + 1;
  }
  int Inner() {
    const BRecursiveMutexLock lock(m_mutex);
    return ++m_calls;
  }

 private:
  BRecursiveMutex m_mutex;
  int m_calls KEL_GUARDED_BY(m_mutex) = 0;
};

TEST(BRecursiveMutex, MayBeTakenAgainByItsHolder) {
  Nested nested;

  EXPECT_EQ(nested.Outer(), 2);
  EXPECT_EQ(std::async(std::launch::async, [&] { return nested.Inner(); }).get(), 2) << "it was given back";
}

// What one thread waits for and another one brings.
class Message {
 public:
  void Bring() {
    const BMutexLock lock(m_mutex);
    m_is_there = true;
    m_changed.NotifyAll();
  }
  void Await() {
    BMutexLock lock(m_mutex);
    ++m_waiting;
    while (!m_is_there) m_changed.Wait(lock);
  }
  bool IsThereBy(std::chrono::steady_clock::time_point deadline) {
    BMutexLock lock(m_mutex);
    while (!m_is_there && std::chrono::steady_clock::now() < deadline) m_changed.WaitUntil(lock, deadline);
    return m_is_there;
  }
  // Waits for it without ever letting a second thread see the mutex taken.
  void AwaitWithTheMutexFree() {
    BMutexLock lock(m_mutex);
    ++m_waiting;
    while (!m_is_there) {
      const BMutexUnlock unlocked(m_mutex, lock);
      std::this_thread::yield();
    }
  }
  // Returns once that many threads wait for it: they hold the mutex until they do.
  void AwaitWaiting(int threads) {
    while (Waiting() < threads) std::this_thread::yield();
  }

 private:
  int Waiting() {
    const BMutexLock lock(m_mutex);
    return m_waiting;
  }

  BMutex m_mutex;
  BCondition m_changed;
  bool m_is_there KEL_GUARDED_BY(m_mutex) = false;
  int m_waiting KEL_GUARDED_BY(m_mutex) = 0;
};

TEST(BCondition, WakesWhoeverWaits) {
  Message message;
  std::future<void> first = std::async(std::launch::async, [&] { message.Await(); });
  std::future<void> second = std::async(std::launch::async, [&] { message.Await(); });
  message.AwaitWaiting(2);

  message.Bring();

  EXPECT_EQ(first.wait_for(kDeadline), std::future_status::ready);
  EXPECT_EQ(second.wait_for(kDeadline), std::future_status::ready);
}

TEST(BCondition, WaitsNoLongerThanItsDeadline) {
  Message message;
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(20);

  EXPECT_FALSE(message.IsThereBy(deadline));
  EXPECT_GE(std::chrono::steady_clock::now(), deadline);

  message.Bring();
  EXPECT_TRUE(message.IsThereBy(deadline));
}

TEST(BMutexUnlock, LeavesTheMutexToOthersForItsScope) {
  Message message;
  std::future<void> waiting = std::async(std::launch::async, [&] { message.AwaitWithTheMutexFree(); });
  message.AwaitWaiting(1);

  message.Bring();

  EXPECT_EQ(waiting.wait_for(kDeadline), std::future_status::ready);
}

}  // namespace
