// system/discovery.h
// Looks for cameras again and again, while discovery is automatic.
#pragma once

#include <chrono>
#include <functional>
#include <thread>

#include "bmutex.h"

namespace Bridge {

// A search costs a broadcast and a second of Aravis' lock, so they are some time apart.
class Discovery {
 public:
  static constexpr std::chrono::seconds kPause{5};

  // `search` runs on the thread of this, each time after a pause.
  explicit Discovery(std::function<void()> search);
  // Waits for a search that runs.
  ~Discovery();
  Discovery(const Discovery&) = delete;
  Discovery& operator=(const Discovery&) = delete;

 private:
  void Run();

  const std::function<void()> m_search;
  BMutex m_mutex;
  BCondition m_changed;
  bool m_stopping KEL_GUARDED_BY(m_mutex) = false;
  std::thread m_thread;
};

}  // namespace Bridge
