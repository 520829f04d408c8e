// host_output.h
// Keeps what drivers report, so that a test can compare it.
#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <vector>

#include "bmutex.h"
#include "imagingdevice.h"

// One call of a driver into the host.
struct HostMessage {
  enum class Call { kShowInfo, kLogMessage };
  Call call;
  std::wstring text;
  std::wstring caption;      // of ShowInfo; empty when there was none
  bool has_caption = false;  // false: the caption was null
  bool important = false;    // of LogMessage
};

// Installed as the host's sink for as long as it lives.
class HostOutput final : public ImagingDevice::BSink {
 public:
  HostOutput();
  ~HostOutput() override;

  void OnShowInfo(const wchar_t* text, const wchar_t* caption) override;
  void OnLogMessage(const WString& text, bool important) override;

  std::vector<HostMessage> Messages() const;
  void Clear();

  // The texts that ShowInfo got with this caption (empty: a diagnostic message; null: a notice without caption).
  std::vector<std::wstring> WithCaption(const wchar_t* caption) const;
  // The diagnostic messages whose title line ends with `title_end`, whole except for times and thread ids, which read
  // as #.
  std::vector<std::wstring> Diagnostics(const std::wstring& title_end) const;
  // Waits until there are that many; false when that takes longer than the time-out.
  bool WaitForDiagnostic(const std::wstring& title_end, std::size_t count, std::chrono::milliseconds timeout) const;

 private:
  void Add(HostMessage message);

  mutable BMutex m_mutex;
  mutable BCondition m_changed;
  std::vector<HostMessage> m_messages KEL_GUARDED_BY(m_mutex);
  ImagingDevice::BSink* m_before;
};

// A diagnostic message with its times, steps and thread id replaced by #.
std::wstring WithoutTimes(const std::wstring& message);
// Its lines alone, without numbers and times; the title first.
std::vector<std::wstring> LinesOf(const std::wstring& message);
