// camera_session.cpp
// One camera, open from construction to destruction.
#include "device/camera_session.h"

#include <iostream>
#include <utility>

#include "base/failure.h"
#include "base/interrupt.h"
#include "base/report.h"
#include "base/utf8.h"
#include "bcamprofilekeys.h"
#include "device/attached_cameras.h"
#include "device/camera_profile.h"
#include "device/opening_explained.h"

namespace Kelcam {

CameraSession::CameraSession(const Module& module, MessageLog& log, const CameraChoice& choice)
    : CameraSession(std::make_shared<CameraSource>(SourceOf(module, log, choice)), Inquiry::kEverywhere) {}

CameraSession::CameraSession(const Module& module, MessageLog& log, BSmartRef<BCamProfile> profile,
                             const std::string& title)
    : CameraSession(std::make_shared<CameraSource>(CameraSource{module, log, std::move(profile), title, {}}),
                    Inquiry::kEverywhere) {}

CameraSession::CameraSession(std::shared_ptr<CameraSource> source, Inquiry inquiry)
    : m_source(std::move(source)), m_messages(m_source->log), m_label(m_source->label), m_watch(m_messages.Memory()) {
  m_watch.SetLabel(m_label);
  const std::uint64_t first_message = Messages().Count();
  m_device = Open();
  PrintComplaints();
  if (!m_device) throw WhyNotOpened(inquiry, first_message);
  m_open.emplace();
  m_identifier = Utf8(WString(m_device->Name()));
  if (!m_label.empty()) TakeName();
  const CallWatch::Call call(m_watch, Operation::kControls);
  WString id;
  m_source->profile->ReadString(CamProfileKey::kCameraIdentifier, id);
  m_presence = std::make_unique<CameraPresence>(*m_device, Messages(), Utf8(id));
}

void CameraSession::TakeName() {
  m_label = Printable(m_identifier) + ": ";
  m_watch.SetLabel(m_label);
  m_messages.SetIdentifier(m_identifier);
}

BImagingDevice* CameraSession::Open() {
  const CallWatch::Call call(m_watch, Operation::kOpening);
  try {
    return m_source->module.Create(m_source->profile);
  } catch (const BError& error) {
    Fault fault = FaultOf(error);
    fault.reason = ExplainOpeningError(fault.code);
    throw Failure(fault);
  }
}

Failure CameraSession::WhyNotOpened(Inquiry inquiry, std::uint64_t first_message) const {
  OpeningEvidence evidence{.lines = LinesOf(Messages().MessagesSince(first_message)),
                           .profile = FactsOf(*m_source->profile)};
  // The camera system went with the opening, and is started again for this.
  if (inquiry == Inquiry::kEverywhere && evidence.IsWithoutCamera() && !Interrupted()) {
    evidence.attached = AttachedCameras(m_source->module, m_watch);
    const auto& vimba = m_source->module.Vimba();
    // The driver tries the address after the id.
    if (vimba && evidence.HasTriedAddress()) {
      evidence.at_address = AskForCamera(evidence.profile.address, *vimba);
    } else if (vimba && evidence.HasTriedId()) {
      evidence.with_id = AskForCamera(evidence.profile.camera_id, *vimba);
    }
  }
  return Failure(OpeningFault(m_source->title + " cannot be opened", evidence, Messages()));
}

CameraSession::~CameraSession() {
  {
    const CallWatch::Call call(m_watch, Operation::kClosing);
    m_source->module.Release(m_device);
  }
  PrintComplaints();
}

bool CameraSession::LooksGone() const {
  const CallWatch::Call call(m_watch, Operation::kControls);
  return m_presence->LooksGone();
}

void CameraSession::PrintComplaints() {
  const std::vector<WString>& complaints = m_source->profile->Complaints();
  for (; m_source->complaints_printed < complaints.size(); ++m_source->complaints_printed) {
    std::cerr << "notice: " + m_label + Utf8(complaints[m_source->complaints_printed]) + "\n";
  }
}

}  // namespace Kelcam
