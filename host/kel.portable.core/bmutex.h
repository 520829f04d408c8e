// bmutex.h
// The plain mutex and its scoped lock, as clang's thread-safety check knows them.
#pragma once

#include <mutex>

#include "bthreadannotations.h"

// std::mutex, which the standard library leaves without annotations. Not recursive. Works with std::unique_lock and
// std::condition_variable_any too. [any thread]
class KEL_CAPABILITY("mutex") BMutex {
 public:
  BMutex() = default;
  BMutex(const BMutex&) = delete;
  BMutex& operator=(const BMutex&) = delete;

  void lock() KEL_ACQUIRE() { m_mutex.lock(); }
  void unlock() KEL_RELEASE() { m_mutex.unlock(); }
  bool try_lock() KEL_TRY_ACQUIRE(true) { return m_mutex.try_lock(); }

 private:
  std::mutex m_mutex;
};

// Holds a BMutex for its scope.
class KEL_SCOPED_CAPABILITY BMutexLock {
 public:
  explicit BMutexLock(BMutex& mutex) KEL_ACQUIRE(mutex) : m_mutex(mutex) { m_mutex.lock(); }
  ~BMutexLock() KEL_RELEASE() { m_mutex.unlock(); }
  BMutexLock(const BMutexLock&) = delete;
  BMutexLock& operator=(const BMutexLock&) = delete;

 private:
  BMutex& m_mutex;
};
