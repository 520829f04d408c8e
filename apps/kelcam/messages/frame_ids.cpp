// frame_ids.cpp
// The camera's own count of its frames, as the driver's messages report it.
#include "messages/frame_ids.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <string_view>
#include <utility>

namespace Kelcam {
namespace {

constexpr std::string_view kTitle = "OnFrameExt()";
constexpr std::string_view kId = " FrameID = ";
// A frame of the run before, and one whose id may be anything.
constexpr std::string_view kNotCounted[] = {"Invalid timestamp ", "Frame record is not as announced"};

// The id in the message of a frame that arrived.
std::optional<std::uint64_t> IdIn(const std::string& message) {
  const std::string_view text = message;
  if (!text.substr(0, text.find('\n')).ends_with(kTitle)) return std::nullopt;
  const std::size_t id = text.find(kId);
  if (id == std::string_view::npos) return std::nullopt;
  const bool is_counted = std::none_of(std::begin(kNotCounted), std::end(kNotCounted),
                                       [&](std::string_view part) { return Contains(text, part); });
  return is_counted ? std::optional<std::uint64_t>(std::strtoull(message.c_str() + id + kId.size(), nullptr, 10))
                    : std::nullopt;
}

}  // namespace

FrameIds::FrameIds(MessageLog& log, std::string identifier) : m_log(log), m_identifier(std::move(identifier)) {
  m_log.Add(*this);
}

FrameIds::~FrameIds() { m_log.Remove(*this); }

void FrameIds::SetIdentifier(const std::string& identifier) {
  const BMutexLock lock(m_mutex);
  m_identifier = identifier;
}

void FrameIds::OnMessage(const std::string& message) {
  const BMutexLock lock(m_mutex);
  if (!IsAbout(message, m_identifier)) return;
  if (const std::optional<std::uint64_t> id = IdIn(message)) Note(*id);
}

// Frames of a camera arrive in their order, so a lower id begins a new count.
void FrameIds::Note(std::uint64_t id) {
  const std::uint64_t missing = m_last && id > *m_last ? id - *m_last - 1 : 0;
  m_missing += std::min(missing, std::numeric_limits<std::uint64_t>::max() - m_missing);
  m_last = id;
}

std::optional<std::uint64_t> FrameIds::Missing() const {
  const BMutexLock lock(m_mutex);
  return m_last ? std::optional(m_missing) : std::nullopt;
}

}  // namespace Kelcam
