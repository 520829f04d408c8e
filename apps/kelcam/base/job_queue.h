// job_queue.h
// Work that is done one after the other on a thread of its own.
#pragma once

#include <deque>
#include <functional>
#include <thread>

#include "bmutex.h"

namespace Kelcam {

// Jobs run in the order in which they came, and must not throw.
class JobQueue {
 public:
  // most_waiting: jobs that wait in addition to the one that runs; at least 1.
  explicit JobQueue(std::size_t most_waiting);
  ~JobQueue();  // finishes
  JobQueue(const JobQueue&) = delete;
  JobQueue& operator=(const JobQueue&) = delete;

  // Waits while as many jobs wait as may.
  void Push(std::function<void()> job);
  // Returns when all jobs are done.
  void Finish();

 private:
  void Run();

  const std::size_t m_most_waiting;
  BMutex m_mutex;
  BCondition m_changed;
  std::deque<std::function<void()>> m_jobs KEL_GUARDED_BY(m_mutex);  // the first one runs
  bool m_is_over KEL_GUARDED_BY(m_mutex) = false;
  std::thread m_thread;  // last: it uses all of the above
};

}  // namespace Kelcam
