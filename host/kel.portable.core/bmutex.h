// bmutex.h
// Mutexes, their scoped locks and a condition, as clang's thread-safety analysis knows them.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

#include "bthreadannotations.h"

// What the standard library has, with the annotations that it leaves out. Everything is in this header, so that a
// library may use it without linking to kel.portable.core. A mutex is taken by its scoped lock alone. [any thread]

class KEL_CAPABILITY("mutex") BMutex {
 public:
  BMutex() = default;
  BMutex(const BMutex&) = delete;
  BMutex& operator=(const BMutex&) = delete;

 private:
  friend class BMutexLock;
  std::mutex m_mutex;
};

// Holds a mutex for its scope.
class KEL_SCOPED_CAPABILITY BMutexLock {
 public:
  explicit BMutexLock(BMutex& mutex) KEL_ACQUIRE(mutex) : m_lock(mutex.m_mutex) {}
  // Not defaulted: only a destructor with a body of its own can carry the annotation.
  ~BMutexLock() KEL_RELEASE() {}  // NOLINT(modernize-use-equals-default)
  BMutexLock(const BMutexLock&) = delete;
  BMutexLock& operator=(const BMutexLock&) = delete;

 private:
  friend class BCondition;
  friend class BMutexUnlock;
  std::unique_lock<std::mutex> m_lock;
};

// Gives a mutex that a lock holds free for its scope.
class KEL_SCOPED_CAPABILITY BMutexUnlock {
 public:
  BMutexUnlock(BMutex& mutex, BMutexLock& lock) KEL_RELEASE(mutex) : m_lock(lock.m_lock) {
    static_cast<void>(mutex);
    m_lock.unlock();
  }
  // The analysis calls it a release: of the release.
  ~BMutexUnlock() KEL_RELEASE() { m_lock.lock(); }
  BMutexUnlock(const BMutexUnlock&) = delete;
  BMutexUnlock& operator=(const BMutexUnlock&) = delete;

 private:
  std::unique_lock<std::mutex>& m_lock;
};

// What threads wait for under a mutex. A wait belongs in a loop over the guarded state, so that the analysis sees what
// is read under the lock, and so that a wake-up without a reason does no harm.
class BCondition {
 public:
  BCondition() = default;
  BCondition(const BCondition&) = delete;
  BCondition& operator=(const BCondition&) = delete;

  void Wait(BMutexLock& lock) { m_condition.wait(lock.m_lock); }
  void WaitUntil(BMutexLock& lock, std::chrono::steady_clock::time_point deadline) {
    m_condition.wait_until(lock.m_lock, deadline);
  }
  void NotifyOne() noexcept { m_condition.notify_one(); }
  void NotifyAll() noexcept { m_condition.notify_all(); }

 private:
  std::condition_variable m_condition;
};

// May be taken again by the thread that holds it.
class KEL_CAPABILITY("mutex") BRecursiveMutex {
 public:
  BRecursiveMutex() = default;
  BRecursiveMutex(const BRecursiveMutex&) = delete;
  BRecursiveMutex& operator=(const BRecursiveMutex&) = delete;

 private:
  friend class BRecursiveMutexLock;
  std::recursive_mutex m_mutex;
};

// Holds a recursive mutex for its scope.
class KEL_SCOPED_CAPABILITY BRecursiveMutexLock {
 public:
  explicit BRecursiveMutexLock(BRecursiveMutex& mutex) KEL_ACQUIRE(mutex) : m_mutex(mutex.m_mutex) { m_mutex.lock(); }
  ~BRecursiveMutexLock() KEL_RELEASE() { m_mutex.unlock(); }
  BRecursiveMutexLock(const BRecursiveMutexLock&) = delete;
  BRecursiveMutexLock& operator=(const BRecursiveMutexLock&) = delete;

 private:
  std::recursive_mutex& m_mutex;
};
