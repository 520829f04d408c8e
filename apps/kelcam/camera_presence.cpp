// camera_presence.cpp
// Whether an open camera is still there.
#include "camera_presence.h"

#include <string_view>
#include <utility>

namespace Kelcam {
namespace {

constexpr std::string_view kIdent = "Camera ident (DiscoveryCameraIdent): ";
constexpr std::string_view kMissing = "Reason (DiscoveryCameraEvent): Missing";

}  // namespace

CameraPresence::CameraPresence(BImagingDevice& device, const MessageLog& log, std::string id)
    : m_device(device),
      m_log(log),
      m_id(std::move(id)),
      m_has_rate(device.GetBandwidth() > 0),
      m_messages_read(log.Count()) {}

bool CameraPresence::LooksGone() {
  ReadReports();
  return m_reported_missing || (m_has_rate && m_device.GetBandwidth() == 0);
}

// A camera that has come back does not answer to the old opening either.
void CameraPresence::ReadReports() {
  const std::uint64_t read = m_messages_read;
  m_messages_read = m_log.Count();
  for (const DriverMessage& message : m_log.MessagesSince(read)) {
    if (Contains(message.text, kMissing) && Contains(message.text, std::string(kIdent) + m_id)) {
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
