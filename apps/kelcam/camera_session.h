// camera_session.h
// One camera, open from construction to destruction.
#pragma once

#include <string>

#include "failure.h"
#include "message_log.h"
#include "module.h"

namespace kelcam {

class CameraSession {
 public:
  // Reads the profile and has the module open its camera. Throws Failure that says where to look.
  CameraSession(const Module& module, const MessageLog& log, const std::string& profile_file);
  ~CameraSession();
  CameraSession(const CameraSession&) = delete;
  CameraSession& operator=(const CameraSession&) = delete;

  BImagingDevice& Device() const { return *m_device; }

 private:
  void TellComplaints();  // those that are new, as notices on standard error

  const Module& m_module;
  BSmartRef<BCamProfile> m_profile;
  std::size_t m_complaints_told = 0;
  BImagingDevice* m_device;
};

// The fault that an error of the host stands for.
Fault FaultOf(const BError& error);

// The same for the exception being handled: errors of the host and of the driver, which come across the module boundary
// as they are, failures of this program and of the standard library.
Fault FaultOfCurrentException();

// The reasons a driver gave last, to be put under a sentence that says what failed.
std::string WithLastNotices(std::string sentence, const MessageLog& log);

}  // namespace kelcam
