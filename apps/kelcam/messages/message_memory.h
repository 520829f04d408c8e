// message_memory.h
// The last of the driver's messages.
#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <string>
#include <vector>

#include "bmutex.h"
#include "messages/driver_messages.h"

namespace Kelcam {

// [any thread]
class MessageMemory {
 public:
  void Add(const std::string& message);

  // How many messages there have been. What comes later can be asked for with this number.
  std::uint64_t Count() const;
  // The messages after the first `count`, the newest kMessagesKept of them at most.
  std::vector<DriverMessage> MessagesSince(std::uint64_t count) const;
  // The same, when one of them contains the text or the time has passed: a frame's message comes on another thread and
  // may be later than what the frame causes.
  std::vector<DriverMessage> AwaitMessage(std::uint64_t count, const std::string& text,
                                          std::chrono::milliseconds timeout) const;

  // The sentence, and under it what the driver reported last: its one-line notices, the oldest first, or where there
  // were none the lines of its last message.
  std::string WithLastNotices(std::string sentence) const;

 private:
  std::vector<DriverMessage> Since(std::uint64_t count) const KEL_REQUIRES(m_mutex);
  std::vector<std::string> LastNotices() const;

  mutable BMutex m_mutex;
  mutable BCondition m_arrived;
  std::deque<DriverMessage> m_messages KEL_GUARDED_BY(m_mutex);
  std::uint64_t m_count KEL_GUARDED_BY(m_mutex) = 0;  // also of those that are no longer kept
  std::deque<std::string> m_notices KEL_GUARDED_BY(m_mutex);
  std::string m_last_message KEL_GUARDED_BY(m_mutex);
};

}  // namespace Kelcam
