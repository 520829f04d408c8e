// host_output.cpp
// Keeps what drivers report, so that a test can compare it.
#include "support/host_output.h"

#include <algorithm>
#include <regex>
#include <sstream>
#include <utility>

namespace {

bool IsDiagnostic(const HostMessage& message) {
  return message.call == HostMessage::Call::kShowInfo && message.has_caption && message.caption.empty();
}

bool HasTitle(const std::wstring& text, const std::wstring& title_end) {
  return std::wstring_view(text).substr(0, text.find(L'\n')).ends_with(title_end);
}

}  // namespace

HostOutput::HostOutput() : m_before(ImagingDevice::InstallSink(this)) {}

HostOutput::~HostOutput() { ImagingDevice::InstallSink(m_before); }

void HostOutput::OnShowInfo(const wchar_t* text, const wchar_t* caption) {
  Add({HostMessage::Call::kShowInfo, text ? text : L"", caption ? caption : L"", caption != nullptr, false});
}

void HostOutput::OnLogMessage(const WString& text, bool important) {
  Add({HostMessage::Call::kLogMessage, text.Str(), L"", false, important});
}

void HostOutput::Add(HostMessage message) {
  const BMutexLock lock(m_mutex);
  m_messages.push_back(std::move(message));
  m_changed.NotifyAll();
}

std::vector<HostMessage> HostOutput::Messages() const {
  const BMutexLock lock(m_mutex);
  return m_messages;
}

void HostOutput::Clear() {
  const BMutexLock lock(m_mutex);
  m_messages.clear();
}

std::vector<std::wstring> HostOutput::WithCaption(const wchar_t* caption) const {
  std::vector<std::wstring> texts;
  for (const HostMessage& message : Messages()) {
    const bool same = caption ? message.has_caption && message.caption == caption : !message.has_caption;
    if (message.call == HostMessage::Call::kShowInfo && same) texts.push_back(message.text);
  }
  return texts;
}

std::vector<std::wstring> HostOutput::Diagnostics(const std::wstring& title_end) const {
  std::vector<std::wstring> found;
  for (const std::wstring& text : WithCaption(L"")) {
    if (HasTitle(text, title_end)) found.push_back(WithoutTimes(text));
  }
  return found;
}

bool HostOutput::WaitForDiagnostic(const std::wstring& title_end, std::size_t count,
                                   std::chrono::milliseconds timeout) const {
  const auto deadline = std::chrono::steady_clock::now() + timeout;
  const auto is_wanted = [&](const HostMessage& message) {
    return IsDiagnostic(message) && HasTitle(message.text, title_end);
  };
  BMutexLock lock(m_mutex);
  while (std::count_if(m_messages.begin(), m_messages.end(), is_wanted) < static_cast<std::ptrdiff_t>(count)) {
    if (std::chrono::steady_clock::now() >= deadline) return false;
    m_changed.WaitUntil(lock, deadline);
  }
  return true;
}

std::wstring WithoutTimes(const std::wstring& message) {
  static const std::wregex kThreadId(L"Thread ID = [0-9]+");
  static const std::wregex kTimes(L"(^|\n)(  [ 0-9]+ : ) *[0-9]+\\.[0-9]{4} \\( *-?[0-9]+\\.[0-9]{4}\\) : ");
  return std::regex_replace(std::regex_replace(message, kThreadId, L"Thread ID = #"), kTimes, L"$1$2# (#) : ");
}

std::vector<std::wstring> LinesOf(const std::wstring& message) {
  static const std::wregex kStamp(L"^  [ 0-9]+ : # \\(#\\) : ");
  std::vector<std::wstring> lines;
  std::wistringstream text(WithoutTimes(message));
  for (std::wstring line; std::getline(text, line);) lines.push_back(std::regex_replace(line, kStamp, L""));
  return lines;
}
