// library/notifier.h
// The thread on which feature invalidations call back.
#pragma once

#include <atomic>
#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <thread>

#include "VimbaC.h"
#include "bmutex.h"

namespace VimbaLibrary {

struct Notification {
  VmbHandle_t handle;
  std::string feature;
  VmbInvalidationCallback callback;
  void* context;
  // Runs before the callback, on the same thread, without a lock. May be empty, as may be the callback.
  std::function<void()> before;
};

// Calls back one after another, in the order of posting. [any thread] but where a function says otherwise.
class Notifier {
 public:
  Notifier();
  // As Stop.
  ~Notifier();
  Notifier(const Notifier&) = delete;
  Notifier& operator=(const Notifier&) = delete;

  void Post(Notification notification);
  // Forgets what is posted for the handle and waits for its running callback, unless called from it.
  void Drop(VmbHandle_t handle);
  bool Idle() const;
  // Grows with every posting and callback.
  std::uint64_t Activity() const { return m_activity; }
  // Whether the caller runs on the notifier's thread.
  bool OnThread() const { return std::this_thread::get_id() == m_thread_id; }
  // Forgets all and waits for the running callback. Not from a callback.
  void Stop();

 private:
  void Run();

  mutable BMutex m_mutex;
  BCondition m_changed;
  std::deque<Notification> m_posted KEL_GUARDED_BY(m_mutex);
  // The handle of the running callback; null when none runs.
  VmbHandle_t m_calling KEL_GUARDED_BY(m_mutex) = nullptr;
  bool m_stopping KEL_GUARDED_BY(m_mutex) = false;
  std::atomic<std::uint64_t> m_activity{0};
  std::atomic<std::thread::id> m_thread_id;
  std::thread m_thread;
};

}  // namespace VimbaLibrary
