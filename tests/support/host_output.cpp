// host_output.cpp
// Keeps what drivers report, so that a test can compare it.
#include "support/host_output.h"

#include <chrono>
#include <regex>
#include <sstream>
#include <thread>

HostOutput::HostOutput() : m_before(ImagingDevice::InstallSink(this)) {}

HostOutput::~HostOutput() { ImagingDevice::InstallSink(m_before); }

void HostOutput::OnShowInfo(const wchar_t* text, const wchar_t* caption) {
  const std::lock_guard lock(m_lock);
  m_messages.push_back(
      {HostMessage::Call::kShowInfo, text ? text : L"", caption ? caption : L"", caption != nullptr, false});
}

void HostOutput::OnLogMessage(const WString& text, bool important) {
  const std::lock_guard lock(m_lock);
  m_messages.push_back({HostMessage::Call::kLogMessage, text.Str(), L"", false, important});
}

std::vector<HostMessage> HostOutput::Messages() const {
  const std::lock_guard lock(m_lock);
  return m_messages;
}

void HostOutput::Clear() {
  const std::lock_guard lock(m_lock);
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
    const std::wstring title = text.substr(0, text.find(L'\n'));
    if (title.size() >= title_end.size() && title.ends_with(title_end)) found.push_back(WithoutTimes(text));
  }
  return found;
}

bool HostOutput::WaitForDiagnostic(const std::wstring& title_end, std::size_t count, std::uint32_t deadline_ms) const {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(deadline_ms);
  while (Diagnostics(title_end).size() < count) {
    if (std::chrono::steady_clock::now() >= deadline) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return true;
}

std::wstring WithoutTimes(const std::wstring& message) {
  static const std::wregex thread_id(L"Thread ID = [0-9]+");
  static const std::wregex times(L"(^|\n)(  [ 0-9]+ : ) *[0-9]+\\.[0-9]{4} \\( *-?[0-9]+\\.[0-9]{4}\\) : ");
  return std::regex_replace(std::regex_replace(message, thread_id, L"Thread ID = #"), times, L"$1$2# (#) : ");
}

std::vector<std::wstring> LinesOf(const std::wstring& message) {
  static const std::wregex stamp(L"^  [ 0-9]+ : # \\(#\\) : ");
  std::vector<std::wstring> lines;
  std::wistringstream text(WithoutTimes(message));
  for (std::wstring line; std::getline(text, line);) lines.push_back(std::regex_replace(line, stamp, L""));
  return lines;
}
