// threads/mutex.h
// Mutex, scoped lock and condition of the simulator, as clang's thread-safety analysis knows them.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

#if defined(__clang__)
#define SIM_ANNOTATION(annotation) __attribute__((annotation))
#else
#define SIM_ANNOTATION(annotation)
#endif
#define SIM_GUARDED_BY(mutex) SIM_ANNOTATION(guarded_by(mutex))
#define SIM_REQUIRES(mutex) SIM_ANNOTATION(requires_capability(mutex))
#define SIM_EXCLUDES(mutex) SIM_ANNOTATION(locks_excluded(mutex))

namespace Simulator {

using Clock = std::chrono::steady_clock;

// Locks are taken in this order: lifecycle, sessions, camera features, acquisition, capture queue; link, faults and
// record are leaves. None is held while a callback of the caller runs.
class SIM_ANNOTATION(capability("mutex")) Mutex {
 public:
  void lock() SIM_ANNOTATION(acquire_capability()) { m_mutex.lock(); }
  void unlock() SIM_ANNOTATION(release_capability()) { m_mutex.unlock(); }

 private:
  friend class Lock;
  std::mutex m_mutex;
};

class SIM_ANNOTATION(scoped_lockable) Lock {
 public:
  explicit Lock(Mutex& mutex) SIM_ANNOTATION(acquire_capability(mutex)) : m_lock(mutex.m_mutex) {}
  // Not defaulted: only a destructor of its own can carry the annotation.
  ~Lock() SIM_ANNOTATION(release_capability()) {}  // NOLINT(modernize-use-equals-default)
  Lock(const Lock&) = delete;
  Lock& operator=(const Lock&) = delete;

 private:
  friend class Condition;
  friend class Unlocked;
  std::unique_lock<std::mutex> m_lock;
};

// Sets a lock that is held free for its scope.
class SIM_ANNOTATION(scoped_lockable) Unlocked {
 public:
  Unlocked(Mutex& mutex, Lock& lock) SIM_ANNOTATION(release_capability(mutex)) : m_lock(lock.m_lock) {
    static_cast<void>(mutex);
    m_lock.unlock();
  }
  // The analysis calls it a release: of the release.
  ~Unlocked() SIM_ANNOTATION(release_capability()) { m_lock.lock(); }
  Unlocked(const Unlocked&) = delete;
  Unlocked& operator=(const Unlocked&) = delete;

 private:
  std::unique_lock<std::mutex>& m_lock;
};

// Waits are written as loops over the guarded state, so that the analysis sees what is read under the lock.
class Condition {
 public:
  void Wait(Lock& lock) { m_condition.wait(lock.m_lock); }
  void WaitUntil(Lock& lock, Clock::time_point deadline) { m_condition.wait_until(lock.m_lock, deadline); }
  void NotifyAll() { m_condition.notify_all(); }

 private:
  std::condition_variable m_condition;
};

}  // namespace Simulator
