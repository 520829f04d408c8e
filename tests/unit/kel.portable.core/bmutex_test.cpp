// bmutex_test.cpp
// The plain mutex.
#include <gtest/gtest.h>

#include <future>
#include <thread>
#include <vector>

#include "bmutex.h"

namespace {

bool OtherThreadMayLock(BMutex& mutex) {
  return std::async(std::launch::async,
                    [&mutex] {
                      if (!mutex.try_lock()) return false;
                      mutex.unlock();
                      return true;
                    })
      .get();
}

TEST(Mutex, IsHeldForTheScopeOfALock) {
  BMutex mutex;
  {
    const BMutexLock lock(mutex);
    EXPECT_FALSE(OtherThreadMayLock(mutex));
  }
  EXPECT_TRUE(OtherThreadMayLock(mutex));
}

struct Counter {
  BMutex mutex;
  int value KEL_GUARDED_BY(mutex) = 0;
};

TEST(Mutex, ServesOneThreadAtATime) {
  Counter counter;
  std::vector<std::thread> threads;
  threads.reserve(4);
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&] {
      for (int round = 0; round < 5000; ++round) {
        const BMutexLock lock(counter.mutex);
        ++counter.value;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();

  const BMutexLock lock(counter.mutex);
  EXPECT_EQ(20000, counter.value);
}

}  // namespace
