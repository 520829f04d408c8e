// camera_session.cpp
// One camera, open from construction to destruction.
#include "camera_session.h"

#include <iostream>
#include <utility>

#include "camera_profile.h"
#include "failure.h"
#include "utf8.h"

namespace Kelcam {

CameraSession::CameraSession(const Module& module, const MessageLog& log, const Options& options)
    : CameraSession(module, log, ProfileOf(options, module), CameraTitle(options)) {}

CameraSession::CameraSession(const Module& module, const MessageLog& log, BSmartRef<BCamProfile> profile,
                             const std::string& title)
    : m_module(module), m_profile(std::move(profile)) {
  m_device = m_module.Create(m_profile);
  PrintComplaints();
  if (!m_device) throw Failure(log.WithLastNotices(title + " cannot be opened"));
}

CameraSession::~CameraSession() {
  m_module.Release(m_device);
  PrintComplaints();
}

void CameraSession::PrintComplaints() {
  const std::vector<WString>& complaints = m_profile->Complaints();
  for (; m_complaints_printed < complaints.size(); ++m_complaints_printed) {
    std::cerr << "notice: " << Utf8(complaints[m_complaints_printed]) << "\n";
  }
}

}  // namespace Kelcam
