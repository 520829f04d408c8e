// bdetachedthreads.cpp
// Threads of a loaded module that nobody joins, and the wait until the last of them has left the module's code.
#include "bdetachedthreads.h"

#include <atomic>
#include <map>
#include <thread>

namespace {

// A thread does not end before it is detached: with MinGW-w64's threads library one that ends meanwhile breaks the
// process's memory. Nearly always it has been detached long before, so nothing is waited for.
class DetachedFlag {
 public:
  void Set() { *m_detached = true; }
  void Wait() const {
    while (!*m_detached) std::this_thread::yield();
  }

 private:
  std::shared_ptr<std::atomic<bool>> m_detached = std::make_shared<std::atomic<bool>>(false);
};

}  // namespace

BDetachedThreads::Work::~Work() = default;

// Never destroyed: a thread may end while the process already destroys what is static.
BDetachedThreads& BDetachedThreads::Of(const std::string& module) {
  static BMutex mutex;
  static auto& modules = *new std::map<std::string, BDetachedThreads>;
  const BMutexLock lock(mutex);
  return modules[module];
}

void BDetachedThreads::StartWork(std::unique_ptr<Work> work) {
  DetachedFlag detached;
  std::thread thread([this, detached, work = std::move(work)]() mutable {
    work->Do();
    work.reset();
    detached.Wait();
    CountEnd();
  });
  CountStart();
  thread.detach();
  detached.Set();
}

void BDetachedThreads::CountStart() {
  const BMutexLock lock(m_lock);
  ++m_running;
}

void BDetachedThreads::CountEnd() {
  const BMutexLock lock(m_lock);
  if (--m_running == 0) m_none_left.NotifyAll();
}

void BDetachedThreads::WaitForAll() {
  BMutexLock lock(m_lock);
  while (m_running != 0) m_none_left.Wait(lock);
}
