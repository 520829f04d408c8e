// message_log.h
// Receives what the driver reports to its host, writes it down and remembers the last of it.
#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <fstream>
#include <ostream>
#include <string>
#include <vector>

#include "bmutex.h"
#include "driver_messages.h"
#include "imagingdevice.h"

namespace Kelcam {

// Installed as the host's sink for as long as it lives. Every message is a line "=== ShowInfo", "=== ShowInfo
// [CAPTION]" or "=== LogMessage", then the text as it came, then a line break.
class MessageLog : public ImagingDevice::BSink {
 public:
  // file: where to write, in UTF-8: a regular file, or /dev/stdout or /dev/stderr on every system (empty: nowhere).
  // Throws Failure when it cannot be opened. verbose: also on standard error.
  MessageLog(std::string file, bool verbose);
  ~MessageLog() override;

  void OnShowInfo(const wchar_t* text, const wchar_t* caption) override;
  void OnLogMessage(const WString& text, bool important) override;

  // The sentence, and under it what the driver reported last: its one-line notices, the oldest first, or where there
  // were none the lines of its last message.
  std::string WithLastNotices(std::string sentence) const;

  // How many messages there have been. What comes later can be asked for with this number. [any thread]
  std::uint64_t Count() const;
  // The messages after the first `count`, the newest kMessagesKept of them at most. [any thread]
  std::vector<DriverMessage> MessagesSince(std::uint64_t count) const;
  // The same, when one of them contains the text or the time has passed: a frame's message comes on another thread and
  // may be later than what the frame causes.
  std::vector<DriverMessage> AwaitMessage(std::uint64_t count, const std::string& text,
                                          std::chrono::milliseconds timeout) const;

  // Throws Failure when the file did not take everything.
  void CheckWritten() const;

 private:
  std::ostream* Open() KEL_REQUIRES(m_mutex);
  void Write(const std::string& heading, const std::string& text) KEL_REQUIRES(m_mutex);
  void Remember(const std::string& message) KEL_REQUIRES(m_mutex);
  void Keep(const std::string& message) KEL_REQUIRES(m_mutex);
  std::vector<DriverMessage> Since(std::uint64_t count) const KEL_REQUIRES(m_mutex);
  std::vector<std::string> LastNotices() const;

  const std::string m_file_name;
  const bool m_verbose;
  ImagingDevice::BSink* m_before;

  mutable BMutex m_mutex;
  std::ofstream m_file KEL_GUARDED_BY(m_mutex);
  std::ostream* m_out KEL_GUARDED_BY(m_mutex) = nullptr;  // the file or a standard stream; null: none
  std::deque<std::string> m_notices KEL_GUARDED_BY(m_mutex);
  std::string m_last_message KEL_GUARDED_BY(m_mutex);
  mutable BCondition m_arrived;
  std::deque<DriverMessage> m_messages KEL_GUARDED_BY(m_mutex);
  std::uint64_t m_count KEL_GUARDED_BY(m_mutex) = 0;  // also of those that are no longer kept
};

}  // namespace Kelcam
