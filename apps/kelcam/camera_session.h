// camera_session.h
// One camera, open from construction to destruction.
#pragma once

#include <cstddef>
#include <string>

#include "command_line.h"
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

 private:
  // Those that are new, as notices on standard error.
  void PrintComplaints();

  const Module& m_module;
  BSmartRef<BCamProfile> m_profile;
  std::size_t m_complaints_printed = 0;
  BImagingDevice* m_device;
};

}  // namespace Kelcam
