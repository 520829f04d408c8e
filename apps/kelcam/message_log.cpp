// message_log.cpp
// Receives what the driver reports to its host, writes it down and remembers the last of it.
#include "message_log.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <iostream>
#include <iterator>
#include <sstream>
#include <utility>

#include "failure.h"
#include "interrupt.h"
#include "regularfile.h"
#include "utf8.h"

namespace Kelcam {
namespace {

constexpr std::size_t kNoticesKept = 5;
constexpr std::size_t kMessagesKept = 200;
// A long run's last message lists all of its frames.
constexpr std::size_t kLongestKeptBytes = 20'000;

// Whether the driver reports that it could not open a camera, in whichever way it tried, and may try again.
bool IsFailedTry(const std::string& message) {
  constexpr std::string_view kTries[] = {" - InitBySerial failed", " - InitByUid failed", " - InitByAddr failed"};
  return std::any_of(std::begin(kTries), std::end(kTries),
                     [&](std::string_view text) { return message.find(text) != std::string::npos; });
}

}  // namespace

MessageLog::MessageLog(std::string file, bool verbose) : m_file_name(std::move(file)), m_verbose(verbose) {
  {
    const BMutexLock lock(m_mutex);
    m_out = Open();
  }
  m_before = ImagingDevice::InstallSink(this);
}

std::ostream* MessageLog::Open() {
  if (m_file_name.empty()) return nullptr;
  // Opened anew they would overwrite what is written to the streams.
  if (m_file_name == "/dev/stdout") return &std::cout;
  if (m_file_name == "/dev/stderr") return &std::cerr;
  const std::string sentence = "the log " + m_file_name + " cannot be written: ";
  // A pipe or a device would wait for whoever is at its other end.
  if (const std::error_code error = ErrorIfNotRegular(Wide(m_file_name))) throw Failure(sentence + error.message());
  m_file.open(Path(m_file_name), std::ios::binary | std::ios::trunc);
  if (!m_file) throw Failure(sentence + std::strerror(errno));
  return &m_file;
}

MessageLog::~MessageLog() { ImagingDevice::InstallSink(m_before); }

void MessageLog::OnShowInfo(const wchar_t* text, const wchar_t* caption) {
  const std::string caption_text = Utf8(WString(caption));
  const std::string message = Utf8(WString(text));
  const BMutexLock lock(m_mutex);
  Write(caption_text.empty() ? "=== ShowInfo" : "=== ShowInfo [" + caption_text + "]", message);
  Remember(message);
  // The search holds the thread for seconds, and between two tries no camera is open.
  if (IsFailedTry(message)) EndIfInterrupted();
}

void MessageLog::OnLogMessage(const WString& text, bool) {
  const BMutexLock lock(m_mutex);
  Write("=== LogMessage", Utf8(text));
}

void MessageLog::Write(const std::string& heading, const std::string& text) {
  const std::string entry = heading + "\n" + text + "\n";
  if (m_out) *m_out << entry << std::flush;
  if (m_verbose) std::cerr << entry << std::flush;
}

void MessageLog::Keep(const std::string& message) {
  m_messages.push_back({message.substr(0, kLongestKeptBytes), std::chrono::steady_clock::now()});
  if (m_messages.size() > kMessagesKept) m_messages.pop_front();
  ++m_count;
  m_arrived.NotifyAll();
}

std::uint64_t MessageLog::Count() const {
  const BMutexLock lock(m_mutex);
  return m_count;
}

std::vector<DriverMessage> MessageLog::MessagesSince(std::uint64_t count) const {
  const BMutexLock lock(m_mutex);
  return Since(count);
}

std::vector<DriverMessage> MessageLog::Since(std::uint64_t count) const {
  const std::uint64_t wanted = std::min<std::uint64_t>(m_count - count, m_messages.size());
  return {m_messages.end() - static_cast<std::ptrdiff_t>(wanted), m_messages.end()};
}

std::vector<DriverMessage> MessageLog::AwaitMessage(std::uint64_t count, const std::string& text,
                                                    std::chrono::milliseconds timeout) const {
  const auto deadline = std::chrono::steady_clock::now() + timeout;
  BMutexLock lock(m_mutex);
  while (true) {
    std::vector<DriverMessage> messages = Since(count);
    const bool has_come = std::any_of(messages.begin(), messages.end(),
                                      [&](const DriverMessage& message) { return Contains(message.text, text); });
    if (has_come || std::chrono::steady_clock::now() >= deadline) return messages;
    m_arrived.WaitUntil(lock, deadline);
  }
}

void MessageLog::Remember(const std::string& message) {
  Keep(message);
  m_last_message = message;
  // The same notice comes for each of the driver's tries to open a camera; it is kept once.
  const bool one_line = message.find('\n') == std::string::npos;
  if (!one_line || (!m_notices.empty() && m_notices.back() == message)) return;
  m_notices.push_back(message);
  if (m_notices.size() > kNoticesKept) m_notices.pop_front();
}

std::vector<std::string> MessageLog::LastNotices() const {
  const BMutexLock lock(m_mutex);
  if (!m_notices.empty()) return {m_notices.begin(), m_notices.end()};
  std::vector<std::string> lines;
  std::istringstream message(m_last_message);
  for (std::string line; std::getline(message, line);) lines.push_back(line);
  return lines;
}

std::string MessageLog::WithLastNotices(std::string sentence) const {
  const std::vector<std::string> notices = LastNotices();
  sentence += notices.empty() ? "; the driver gave no reason" : "; the driver's last messages were:";
  for (const std::string& notice : notices) sentence += "\n  " + notice;
  return sentence + "\n" + kMoreMessages;
}

void MessageLog::CheckWritten() const {
  const BMutexLock lock(m_mutex);
  if (m_out && !*m_out) throw Failure("the log " + m_file_name + " could not be written completely");
}

}  // namespace Kelcam
