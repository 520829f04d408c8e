// frame_journal.cpp
// What the messages say of every frame of a device: which arrived, which a snap got, which a stop listed.
#include "storms/frame_journal.h"

#include <cwchar>
#include <optional>

#include "support/message_form.h"

namespace {

constexpr std::uint64_t kNoFrame = ~std::uint64_t{0};

std::optional<std::uint64_t> NumberAfter(const std::wstring& message, const wchar_t* text) {
  const std::size_t at = message.find(text);
  if (at == std::wstring::npos) return std::nullopt;
  return std::wcstoull(message.c_str() + at + std::wcslen(text), nullptr, 10);
}

std::wstring ListOf(const std::vector<std::uint64_t>& ids) {
  std::wstring list = L"Received " + std::to_wstring(ids.size()) + L" Frames [";
  const wchar_t* separator = L"";
  for (const std::uint64_t id : ids) {
    list += separator + std::to_wstring(id);
    separator = L", ";
  }
  return list + L"]\n";
}

}  // namespace

FrameJournal::FrameJournal(Findings& findings, std::size_t most_frames)
    : m_findings(findings), m_most_frames(most_frames), m_before(ImagingDevice::InstallSink(this)) {}

FrameJournal::~FrameJournal() { ImagingDevice::InstallSink(m_before); }

void FrameJournal::OnShowInfo(const wchar_t* text, const wchar_t* caption) {
  if (!caption || *caption) return;
  const std::wstring message = text;
  const std::string defect = DefectOf(message);
  if (!defect.empty()) return Defect(message, "a message is not whole: " + defect);
  const MessageTitle title = TitleOf(message);
  const BMutexLock lock(m_mutex);
  ++m_messages;
  if (title.camera.empty()) return;
  Device& device = m_devices[title.camera];
  if (device.arrived.empty()) {
    device.arrived.resize(m_most_frames);
    device.reported.resize(m_most_frames);
  }
  if (title.label == L"OnFrameExt()") OnArrival(device, message);
  if (title.label == L"Snap") OnSnap(device, message);
  if (title.label.starts_with(L"StartSnap")) device.since_start.clear();
  if (title.label.starts_with(L"StopSnap")) OnStop(device, message);
}

void FrameJournal::OnLogMessage(const WString& /*text*/, bool /*important*/) {}

void FrameJournal::OnArrival(Device& device, const std::wstring& message) {
  if (message.find(L"process_frame_lambda started") == std::wstring::npos) return;
  const std::optional<std::uint64_t> id = NumberAfter(message, L"Frame context id = ");
  if (!id || *id >= m_most_frames || device.arrived[*id]) return Defect(message, "a frame arrives twice or has no id");
  device.arrived[*id] = true;
}

void FrameJournal::OnSnap(Device& device, const std::wstring& message) {
  const std::optional<std::uint64_t> id = NumberAfter(message, L"Frame Id = ");
  if (!id) return Defect(message, "a snap reports no frame id");
  device.since_start.push_back(*id);
  if (*id == kNoFrame) return;
  if (*id >= m_most_frames || device.reported[*id]) return Defect(message, "a frame is reported twice or has no id");
  device.reported[*id] = true;
  const bool overtaken = device.counts.reported != 0 && *id < device.last_reported;
  if (overtaken && !m_overtaking_allowed) Defect(message, "a frame is reported out of order");
  if (overtaken) ++device.counts.overtaken;
  device.last_reported = *id;
  ++device.counts.reported;
}

void FrameJournal::OnStop(const Device& device, const std::wstring& message) {
  const bool stopped = message.find(L"AcquisitionStop returns 0\n") != std::wstring::npos;
  if (!stopped || message.find(L"Received ") == std::wstring::npos) return;
  if (message.find(ListOf(device.since_start)) == std::wstring::npos) {
    Defect(message, "a stop lists other frames than the snaps reported");
  }
}

void FrameJournal::CheckArrivals() const {
  const BMutexLock lock(m_mutex);
  for (const auto& [name, device] : m_devices) {
    for (std::size_t id = 0; id < device.reported.size(); ++id) {
      if (device.reported[id] && !device.arrived[id]) {
        Defect(name, "frame " + std::to_string(id) + " is reported and has not arrived");
      }
    }
  }
}

void FrameJournal::Defect(const std::wstring& message, const std::string& what) const {
  m_findings.Report(what + ":\n" + std::string(message.begin(), message.end()));
}

std::uint64_t FrameJournal::Messages() const {
  const BMutexLock lock(m_mutex);
  return m_messages;
}

FrameJournal::Counts FrameJournal::CountsOf(const std::wstring& camera) const {
  const BMutexLock lock(m_mutex);
  const auto found = m_devices.find(camera);
  return found == m_devices.end() ? Counts{} : found->second.counts;
}

void FrameJournal::AllowOvertaking() {
  const BMutexLock lock(m_mutex);
  m_overtaking_allowed = true;
}
