// job_queue.cpp
// Work that is done one after the other on a thread of its own.
#include "base/job_queue.h"

#include <utility>

namespace Kelcam {

JobQueue::JobQueue(std::size_t most_waiting) : m_most_waiting(most_waiting), m_thread([this] { Run(); }) {}

JobQueue::~JobQueue() {
  {
    const BMutexLock lock(m_mutex);
    m_is_over = true;
  }
  m_changed.NotifyAll();
  m_thread.join();
}

void JobQueue::Push(std::function<void()> job) {
  BMutexLock lock(m_mutex);
  while (m_jobs.size() > m_most_waiting) m_changed.Wait(lock);
  m_jobs.push_back(std::move(job));
  m_changed.NotifyAll();
}

void JobQueue::Finish() {
  BMutexLock lock(m_mutex);
  while (!m_jobs.empty()) m_changed.Wait(lock);
}

void JobQueue::Run() {
  BMutexLock lock(m_mutex);
  for (;;) {
    while (m_jobs.empty() && !m_is_over) m_changed.Wait(lock);
    if (m_jobs.empty()) return;
    // Its place is free when it is done; nobody else takes from the front.
    std::function<void()> job = std::move(m_jobs.front());
    {
      const BMutexUnlock unlock(m_mutex, lock);
      job();
      job = nullptr;
    }
    m_jobs.pop_front();
    m_changed.NotifyAll();
  }
}

}  // namespace Kelcam
