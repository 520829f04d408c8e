// message_log.h
// Receives what the driver reports to its host, writes it down and passes it on.
#pragma once

#include <fstream>
#include <ostream>
#include <string>
#include <vector>

#include "bmutex.h"
#include "imagingdevice.h"
#include "messages/message_memory.h"

namespace Kelcam {

// Hears each message of the driver, in UTF-8, whichever camera it is about. Called on the reporting thread, one message
// at a time; must call neither the driver nor the log.
class MessageListener {
 public:
  virtual void OnMessage(const std::string& message) = 0;

 protected:
  ~MessageListener() = default;
};

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

  // A line of the program's own for the file, under "=== kelcam". [any thread]
  void Note(const std::string& line);

  // Of all cameras.
  const MessageMemory& Messages() const { return m_messages; }
  // From the first to the second, the listener hears the messages. [any thread]
  void Add(MessageListener& listener);
  void Remove(MessageListener& listener);

  // Throws Failure when the file did not take everything.
  void CheckWritten() const;

 private:
  std::ostream* Open() KEL_REQUIRES(m_mutex);
  void Write(const std::string& heading, const std::string& text) KEL_REQUIRES(m_mutex);

  const std::string m_file_name;
  const bool m_verbose;
  ImagingDevice::BSink* m_before;
  MessageMemory m_messages;

  mutable BMutex m_mutex;
  std::ofstream m_file KEL_GUARDED_BY(m_mutex);
  std::ostream* m_out KEL_GUARDED_BY(m_mutex) = nullptr;  // the file or a standard stream; null: none
  std::vector<MessageListener*> m_listeners KEL_GUARDED_BY(m_mutex);
};

}  // namespace Kelcam
