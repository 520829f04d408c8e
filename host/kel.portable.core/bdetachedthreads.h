// bdetachedthreads.h
// Threads of a loaded module that nobody joins, and the wait until the last of them has left the module's code.
#pragma once

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <utility>

#include "kel_portable_core_api.h"

// A thread that is over as far as its module can tell still has to return through the module's code. What is waited for
// here is over only when the standard library, not the module, ends the thread; then the module may be unloaded. The
// last thread may still be telling so by then, which is why this object belongs to a library that stays.
class KEL_PORTABLE_CORE_API BDetachedThreads {
 public:
  // The one for the module of this name. Made with the first call and kept to the end of the process, so that a module
  // that is loaded again finds it again. [any thread]
  static BDetachedThreads& Of(const std::string& module);

  BDetachedThreads() = default;
  BDetachedThreads(const BDetachedThreads&) = delete;
  BDetachedThreads& operator=(const BDetachedThreads&) = delete;

  // Does the work on a thread of its own [any thread]. Throws what std::thread throws when there is none to be had. The
  // thread does not end before it is detached: with MinGW-w64's threads library one that ends meanwhile breaks the
  // process's memory. Nearly always it has been detached long before, so nothing is waited for.
  template <class Work>
  void Start(Work work);

  // Returns when every thread has ended, its destructors with it. No new one may be started meanwhile. [any thread but
  // those]
  void WaitForAll();

 private:
  void AnnounceExit();  // as a thread's last act but for what its destructors do

  std::mutex m_lock;
  std::condition_variable m_somebody_left;
  std::atomic<int> m_running{0};
};

template <class Work>
void BDetachedThreads::Start(Work work) {
  const auto detached = std::make_shared<std::atomic<bool>>(false);
  std::thread thread([this, work = std::move(work), detached]() mutable {
    work();
    while (!*detached) std::this_thread::yield();
    AnnounceExit();
  });
  ++m_running;
  thread.detach();
  *detached = true;
}
