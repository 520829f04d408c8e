// camera_presence.h
// Whether an open camera is still there.
#pragma once

#include <cstdint>
#include <string>

#include "base/failure.h"
#include "bimagingdevice.h"
#include "messages/message_memory.h"

namespace Kelcam {

// Knows it from the driver: Vimba reports cameras that come and go, and a camera that is gone answers nothing.
class CameraPresence {
 public:
  // An open camera and its id in the driver's messages.
  CameraPresence(BImagingDevice& device, const MessageMemory& messages, std::string id);

  // Asks the camera, so it must not be asked for each image.
  bool LooksGone();
  // Whether the library has reported it missing by the last time it was asked.
  bool IsReportedMissing() const { return m_reported_missing; }

 private:
  void ReadReports();

  BImagingDevice& m_device;
  const MessageMemory& m_messages;
  const std::string m_id;
  const bool m_has_rate;  // a camera without a stream rate cannot be asked for it
  std::uint64_t m_messages_read;
  bool m_reported_missing = false;
};

// Ends a command whose camera is gone: after so many failures in a row that look like it.
class LostCamera {
 public:
  explicit LostCamera(int failures_allowed) : m_failures_allowed(failures_allowed) {}

  // After each image: whether it failed, and then whether the camera looks gone. True: the camera is lost.
  bool IsLostAfter(bool failed_and_gone);
  Fault AsFault() const;
  // Another opening begins.
  void Reset() { m_failures = 0; }

 private:
  const int m_failures_allowed;
  int m_failures = 0;
};

}  // namespace Kelcam
