// camera_session.h
// One camera, open from construction to destruction.
#pragma once

#include <string>

#include "message_log.h"
#include "module.h"

namespace Kelcam {

class CameraSession {
 public:
  // Reads the profile and has the module open its camera. Throws Failure that says where to look.
  CameraSession(const Module& module, const MessageLog& log, const std::string& profile_file);
  ~CameraSession();
  CameraSession(const CameraSession&) = delete;
  CameraSession& operator=(const CameraSession&) = delete;

  BImagingDevice& Device() const { return *m_device; }
  const BCamProfile& Profile() const { return *m_profile; }

 private:
  // Those that are new, as notices on standard error.
  void PrintComplaints();

  const Module& m_module;
  BSmartRef<BCamProfile> m_profile;
  std::size_t m_complaints_printed = 0;
  BImagingDevice* m_device;
};

}  // namespace Kelcam
