// bsyncablesmartobj_test.cpp
// The read/write lock of an object, from several threads.
#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <thread>
#include <vector>

#include "../table_place.h"
#include "bsyncablesmartobj.h"

namespace {

// Another thread's view of the lock, which it leaves as it was.
bool OtherThreadMayRead(const BSyncableSmartObj& object) {
  return std::async(std::launch::async,
                    [&object] {
                      if (!object.TryLockR()) return false;
                      object.UnlockR();
                      return true;
                    })
      .get();
}

bool OtherThreadMayWrite(const BSyncableSmartObj& object) {
  return std::async(std::launch::async,
                    [&object] {
                      if (!object.TryLockW()) return false;
                      object.UnlockW();
                      return true;
                    })
      .get();
}

TEST(SyncableSmartObj, IsFreeAtFirst) {
  const BSyncableSmartObj object;

  EXPECT_TRUE(OtherThreadMayRead(object));
  EXPECT_TRUE(OtherThreadMayWrite(object));
}

TEST(SyncableSmartObj, LetsReadersShareWithAReader) {
  const BSyncableSmartObj object;
  {
    const BAutoLockR lock(object);
    EXPECT_TRUE(OtherThreadMayRead(object));
    EXPECT_FALSE(OtherThreadMayWrite(object));
  }
  EXPECT_TRUE(OtherThreadMayWrite(object));
}

TEST(SyncableSmartObj, LetsNobodyShareWithAWriter) {
  const BSyncableSmartObj object;
  {
    const BAutoLockW lock(object);
    EXPECT_FALSE(OtherThreadMayRead(object));
    EXPECT_FALSE(OtherThreadMayWrite(object));
  }
  EXPECT_TRUE(OtherThreadMayRead(object));
}

TEST(SyncableSmartObj, LocksAndUnlocksByHand) {
  const BSyncableSmartObj object;

  object.LockR();
  EXPECT_FALSE(OtherThreadMayWrite(object));
  object.UnlockR();
  object.LockW();
  EXPECT_FALSE(OtherThreadMayRead(object));
  object.UnlockW();

  EXPECT_TRUE(OtherThreadMayWrite(object));
}

TEST(SyncableSmartObj, KeepsItsLockWhenCopiedOrAssigned) {
  BSyncableSmartObj original;
  const BAutoLockW lock(original);
  BSyncableSmartObj copy(original);
  EXPECT_TRUE(OtherThreadMayWrite(copy));

  copy = original;

  EXPECT_TRUE(OtherThreadMayWrite(copy));
  EXPECT_EQ(copy.References(), 0);
}

TEST(SyncableSmartObj, WakesAWriterWhenTheReaderIsDone) {
  const BSyncableSmartObj object;
  std::promise<void> reading;
  std::future<void> writer;
  {
    const BAutoLockR lock(object);
    writer = std::async(std::launch::async, [&] {
      reading.set_value();
      const BAutoLockW write_lock(object);
    });
    reading.get_future().wait();
  }
  EXPECT_EQ(writer.wait_for(std::chrono::seconds(30)), std::future_status::ready);
}

// Two plain numbers that are equal whenever no writer is at work.
class Pair : public BSyncableSmartObj {
 public:
  void Increment() {
    const BAutoLockW lock(*this);
    ++m_first;
    ++m_second;
  }
  bool IsWhole() const {
    const BAutoLockR lock(*this);
    return m_first == m_second;
  }
  int First() const {
    const BAutoLockR lock(*this);
    return m_first;
  }

 private:
  int m_first KEL_GUARDED_BY(this) = 0;
  int m_second KEL_GUARDED_BY(this) = 0;
};

TEST(SyncableSmartObj, KeepsReadersFromSeeingHalfAChange) {
  constexpr int kRounds = 2000;
  Pair pair;
  std::atomic<int> halves{0};
  std::vector<std::thread> threads;
  threads.reserve(4);
  for (int i = 0; i < 2; ++i) {
    threads.emplace_back([&] {
      for (int round = 0; round < kRounds; ++round) pair.Increment();
    });
    threads.emplace_back([&] {
      for (int round = 0; round < kRounds; ++round) halves += pair.IsWhole() ? 0 : 1;
    });
  }
  for (std::thread& thread : threads) thread.join();

  EXPECT_EQ(halves, 0);
  EXPECT_EQ(pair.First(), 2 * kRounds);
}

TEST(SyncableSmartObj, KeepsItsOperationsInTableOrder) {
  const std::vector<std::size_t> places = {
      TablePlace(&BSyncableSmartObj::LockR),    TablePlace(&BSyncableSmartObj::LockW),
      TablePlace(&BSyncableSmartObj::UnlockR),  TablePlace(&BSyncableSmartObj::UnlockW),
      TablePlace(&BSyncableSmartObj::TryLockR), TablePlace(&BSyncableSmartObj::TryLockW)};

  EXPECT_EQ(places, (std::vector<std::size_t>{0, 1, 2, 3, 4, 5}));
}

}  // namespace
