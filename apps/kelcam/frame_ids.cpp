// frame_ids.cpp
// The camera's own count of its frames, as the driver's messages report it.
#include "frame_ids.h"

#include <algorithm>
#include <cwchar>
#include <limits>
#include <string_view>
#include <tuple>

namespace Kelcam {
namespace {

constexpr std::wstring_view kTitle = L"OnFrameExt()";
constexpr std::wstring_view kId = L" FrameID = ";
// A frame of the run before, and one whose id may be anything.
constexpr std::wstring_view kNotCounted[] = {L"Invalid timestamp ", L"Frame record is not as announced"};

bool Contains(std::wstring_view text, std::wstring_view part) { return text.find(part) != std::wstring_view::npos; }

// The id in the message of a frame that arrived.
std::optional<std::uint64_t> IdIn(std::wstring_view message) {
  if (!message.substr(0, message.find(L'\n')).ends_with(kTitle)) return std::nullopt;
  const std::size_t id = message.find(kId);
  if (id == std::wstring_view::npos) return std::nullopt;
  const bool is_counted = std::none_of(std::begin(kNotCounted), std::end(kNotCounted),
                                       [&](std::wstring_view part) { return Contains(message, part); });
  // The message ends with a zero.
  return is_counted ? std::optional<std::uint64_t>(std::wcstoull(message.data() + id + kId.size(), nullptr, 10))
                    : std::nullopt;
}

}  // namespace

FrameIds::FrameIds(ImagingDevice::BSink& receiver) : m_receiver(receiver) {
  std::ignore = ImagingDevice::InstallSink(this);
}

FrameIds::~FrameIds() { std::ignore = ImagingDevice::InstallSink(&m_receiver); }

void FrameIds::OnShowInfo(const wchar_t* text, const wchar_t* caption) {
  if (const std::optional<std::uint64_t> id = IdIn(text)) Note(*id);
  m_receiver.OnShowInfo(text, caption);
}

void FrameIds::OnLogMessage(const WString& text, bool important) { m_receiver.OnLogMessage(text, important); }

// Frames of a camera arrive in their order, so a lower id begins a new count.
void FrameIds::Note(std::uint64_t id) {
  const BMutexLock lock(m_mutex);
  const std::uint64_t missing = m_last && id > *m_last ? id - *m_last - 1 : 0;
  m_missing += std::min(missing, std::numeric_limits<std::uint64_t>::max() - m_missing);
  m_last = id;
}

std::optional<std::uint64_t> FrameIds::Missing() const {
  const BMutexLock lock(m_mutex);
  return m_last ? std::optional(m_missing) : std::nullopt;
}

}  // namespace Kelcam
