// message_log.h
// Receives what the driver tells its host, writes it down and remembers the last of it.
#pragma once

#include <deque>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <string>
#include <vector>

#include "imagingdevice.h"

namespace kelcam {

// Installed as the host's sink for as long as it lives. Every message is a line "=== ShowInfo", "=== ShowInfo
// [CAPTION]" or "=== LogMessage", then the text as it came, then a line break.
class MessageLog : public ImagingDevice::BSink {
 public:
  // file: where to write (empty: nowhere); throws Failure when it cannot be opened. verbose: also on standard error.
  MessageLog(const std::filesystem::path& file, bool verbose);
  ~MessageLog() override;

  void OnShowInfo(const wchar_t* text, const wchar_t* caption) override;
  void OnLogMessage(const WString& text, bool important) override;

  // The last one-line notices, the oldest first; where there were none, the lines of the last message.
  std::vector<std::string> LastNotices() const;

  void CheckWritten();  // throws Failure when the file did not take everything

 private:
  void Write(const std::string& heading, const std::string& text);

  const std::filesystem::path m_file_name;
  const bool m_verbose;
  std::ofstream m_file;
  ImagingDevice::BSink* m_before;
  mutable std::mutex m_mutex;
  std::deque<std::string> m_notices;  // guarded by m_mutex
  std::string m_last_message;         // guarded by m_mutex
};

}  // namespace kelcam
