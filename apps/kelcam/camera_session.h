// camera_session.h
// One camera, open from construction to destruction.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "call_watch.h"
#include "camera_presence.h"
#include "command_line.h"
#include "failure.h"
#include "message_log.h"
#include "module.h"

namespace Kelcam {

class CameraSession {
 public:
  // Has the module open the camera of --profile or --camera. Throws Failure that says where to look.
  CameraSession(const Module& module, const MessageLog& log, const Options& options);
  // Of this profile; the title names the camera in the failure.
  CameraSession(const Module& module, const MessageLog& log, BSmartRef<BCamProfile> profile, const std::string& title);
  ~CameraSession();
  CameraSession(const CameraSession&) = delete;
  CameraSession& operator=(const CameraSession&) = delete;

  BImagingDevice& Device() const { return *m_device; }
  const MessageLog& Log() const { return m_log; }
  // For every call of the device that may take long.
  CallWatch& Watch() const { return m_watch; }
  // Whether the camera does not answer any more. Asks it, so not for each image.
  bool LooksGone() const;
  const BCamProfile& Profile() const { return *m_profile; }

 private:
  BImagingDevice* Open();
  // Says what the driver's messages and the profile show of the reason.
  Failure WhyNotOpened(const std::string& title, std::uint64_t first_message) const;
  // Those that are new, as notices on standard error.
  void PrintComplaints();

  const Module& m_module;
  const MessageLog& m_log;
  BSmartRef<BCamProfile> m_profile;
  std::size_t m_complaints_printed = 0;
  mutable CallWatch m_watch;
  BImagingDevice* m_device;
  std::unique_ptr<CameraPresence> m_presence;
};

}  // namespace Kelcam
