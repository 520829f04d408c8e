// camera_session.h
// One camera, open from construction to destruction.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "base/failure.h"
#include "base/interrupt.h"
#include "device/camera_choice.h"
#include "device/camera_presence.h"
#include "device/camera_source.h"
#include "library/module.h"
#include "messages/call_watch.h"
#include "messages/camera_messages.h"
#include "messages/message_log.h"

namespace Kelcam {

class CameraSession {
 public:
  // Has the module open the camera of --profile or --camera. Throws Failure that says where to look.
  CameraSession(const Module& module, MessageLog& log, const CameraChoice& choice);
  // Of this profile; the title names the camera in the failure.
  CameraSession(const Module& module, MessageLog& log, BSmartRef<BCamProfile> profile, const std::string& title);
  // Whether the reason of a failure may be asked for: the camera system is started again for this.
  enum class Inquiry { kDriverOnly, kEverywhere };
  // Of this source: with that of an earlier session it is the same camera once more. Throws Failure.
  explicit CameraSession(std::shared_ptr<CameraSource> source, Inquiry inquiry = Inquiry::kDriverOnly);
  ~CameraSession();
  CameraSession(const CameraSession&) = delete;
  CameraSession& operator=(const CameraSession&) = delete;

  BImagingDevice& Device() const { return *m_device; }
  // What the driver reports of this camera, since it was about to be opened.
  const MessageMemory& Messages() const { return m_messages.Memory(); }
  // For every call of the device that may take long.
  CallWatch& Watch() const { return m_watch; }
  // Whether the camera does not answer any more. Asks it, so not for each image.
  bool LooksGone() const;
  // Whether the library had reported it missing when that was last asked.
  bool IsReportedMissing() const { return m_presence->IsReportedMissing(); }
  const BCamProfile& Profile() const { return *m_source->profile; }
  // For another session, after the end of this one.
  const std::shared_ptr<CameraSource>& Source() const { return m_source; }

  // The camera's identifier, as the driver has it.
  const std::string& Identifier() const { return m_identifier; }
  // With what a line about this camera begins: "IDENTIFIER: ", empty for one camera alone.
  const std::string& Label() const { return m_label; }
  // What messages about this camera have in their titles; empty for one camera alone: any.
  std::string IdentifierInMessages() const { return m_label.empty() ? std::string() : m_identifier; }

 private:
  BImagingDevice* Open();
  // One of several is named in what is printed about it, and hears what is about itself.
  void TakeName();
  // Says what the driver's messages and the profile show of the reason.
  Failure WhyNotOpened(Inquiry inquiry, std::uint64_t first_message) const;
  // Those that are new, as notices on standard error.
  void PrintComplaints();

  const std::shared_ptr<CameraSource> m_source;
  CameraMessages m_messages;
  std::string m_label;
  mutable CallWatch m_watch;
  BImagingDevice* m_device;
  std::optional<SomethingToClose> m_open;
  std::string m_identifier;
  std::unique_ptr<CameraPresence> m_presence;
};

}  // namespace Kelcam
