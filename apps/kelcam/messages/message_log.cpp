// message_log.cpp
// Receives what the driver reports to its host, writes it down and passes it on.
#include "messages/message_log.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <iostream>
#include <iterator>
#include <utility>

#include "base/failure.h"
#include "base/interrupt.h"
#include "base/utf8.h"
#include "regularfile.h"

namespace Kelcam {
namespace {

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
  m_messages.Add(message);
  for (MessageListener* listener : m_listeners) listener->OnMessage(message);
  // The search holds the thread for seconds, and between two tries no camera is open.
  if (IsFailedTry(message)) EndIfInterrupted();
}

void MessageLog::OnLogMessage(const WString& text, bool) {
  const BMutexLock lock(m_mutex);
  Write("=== LogMessage", Utf8(text));
}

void MessageLog::Note(const std::string& line) {
  const BMutexLock lock(m_mutex);
  if (m_out) *m_out << "=== kelcam\n" + line + "\n" << std::flush;
}

void MessageLog::Write(const std::string& heading, const std::string& text) {
  const std::string entry = heading + "\n" + text + "\n";
  if (m_out) *m_out << entry << std::flush;
  if (m_verbose) std::cerr << entry << std::flush;
}

void MessageLog::Add(MessageListener& listener) {
  const BMutexLock lock(m_mutex);
  m_listeners.push_back(&listener);
}

void MessageLog::Remove(MessageListener& listener) {
  const BMutexLock lock(m_mutex);
  std::erase(m_listeners, &listener);
}

void MessageLog::CheckWritten() const {
  const BMutexLock lock(m_mutex);
  if (m_out && !*m_out) throw Failure("the log " + m_file_name + " could not be written completely");
}

}  // namespace Kelcam
