// driver_feed.h
// The driver's messages, for pages that come later.
#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <string>
#include <vector>

#include "bmutex.h"
#include "messages/message_log.h"

namespace Kelcam {

// Listens for as long as it lives and keeps the last messages. [any thread]
class DriverFeed final : public MessageListener {
 public:
  struct Entry {
    std::uint64_t number = 0;  // from 1
    std::chrono::system_clock::time_point time;
    std::string text;
  };

  explicit DriverFeed(MessageLog& log);
  ~DriverFeed();
  DriverFeed(const DriverFeed&) = delete;
  DriverFeed& operator=(const DriverFeed&) = delete;

  // Those after the first `count`, as far as they are kept.
  std::vector<Entry> Since(std::uint64_t count) const;
  std::uint64_t Count() const;

  void OnMessage(const std::string& message) override;

 private:
  MessageLog& m_log;
  mutable BMutex m_mutex;
  std::deque<Entry> m_entries KEL_GUARDED_BY(m_mutex);
  std::uint64_t m_count KEL_GUARDED_BY(m_mutex) = 0;
};

}  // namespace Kelcam
