// bdetachedthreads.cpp
// Threads of a loaded module that nobody joins, and the wait until the last of them has left the module's code.
#include "bdetachedthreads.h"

#include <map>

// Never destroyed: a thread may end while the process already destroys what is static.
BDetachedThreads& BDetachedThreads::Of(const std::string& module) {
  static std::mutex lock;
  static auto* const modules = new std::map<std::string, BDetachedThreads>;
  const std::lock_guard guard(lock);
  return (*modules)[module];
}

// The lock stays with the thread to its end, past the destructors of whatever the module gave it.
void BDetachedThreads::AnnounceExit() {
  std::unique_lock lock(m_lock);
  --m_running;
  std::notify_all_at_thread_exit(m_somebody_left, std::move(lock));
}

void BDetachedThreads::WaitForAll() {
  std::unique_lock lock(m_lock);
  m_somebody_left.wait(lock, [this] { return m_running == 0; });
}
