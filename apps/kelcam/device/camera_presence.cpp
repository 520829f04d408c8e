// camera_presence.cpp
// Whether an open camera is still there.
#include "device/camera_presence.h"

#include <string_view>
#include <utility>

namespace Kelcam {
namespace {

constexpr std::string_view kIdent = "Camera ident (DiscoveryCameraIdent): ";
constexpr std::string_view kMissing = "Reason (DiscoveryCameraEvent): Missing";

// To its end: an id may be the beginning of another one.
std::string IdentLine(const std::string& id) { return std::string(kIdent) + id + "\n"; }

}  // namespace

CameraPresence::CameraPresence(BImagingDevice& device, const MessageMemory& messages, std::string id)
    : m_device(device),
      m_messages(messages),
      m_id(std::move(id)),
      m_has_rate(device.GetBandwidth() > 0),
      m_messages_read(messages.Count()) {}

bool CameraPresence::LooksGone() {
  ReadReports();
  return m_reported_missing || (m_has_rate && m_device.GetBandwidth() == 0);
}

// A camera that has come back does not answer to the old opening either.
void CameraPresence::ReadReports() {
  const std::uint64_t read = m_messages_read;
  m_messages_read = m_messages.Count();
  for (const DriverMessage& message : m_messages.MessagesSince(read)) {
    if (Contains(message.text, kMissing) && Contains(message.text, IdentLine(m_id))) {
      m_reported_missing = true;
    }
  }
}

bool LostCamera::IsLostAfter(bool failed_and_gone) {
  m_failures = failed_and_gone ? m_failures + 1 : 0;
  return m_failures >= m_failures_allowed;
}

Fault LostCamera::AsFault() const {
  return {Fault::kNoCode, "camera lost: it does not answer, and " + std::to_string(m_failures) +
                              (m_failures == 1 ? " image has" : " images in a row have") + " failed"};
}

}  // namespace Kelcam
