// acquisition_run.h
// One run of the camera: start-snap, the snaps of its images, stop-snap.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

#include "base/failure.h"
#include "bbaseaoi.h"
#include "bimagingdevice.h"
#include "device/camera_session.h"
#include "device/trigger_setting.h"

namespace Kelcam {

// One start-snap and, whatever comes between, its stop-snap. Neither throws: a fault ends in the results.
class AcquisitionRun {
 public:
  AcquisitionRun(const CameraSession& camera, bool one_shot, TriggerChoice choice);
  ~AcquisitionRun();
  AcquisitionRun(const AcquisitionRun&) = delete;
  AcquisitionRun& operator=(const AcquisitionRun&) = delete;

  // Why the start failed; nothing can be snapped then.
  const std::optional<Fault>& StartFault() const { return m_start_fault; }
  // Whether a snap starts an image, where that is up to the host, or waits for one that an earlier snap has started.
  enum class Firing { kDue, kDone };
  // A picture that the driver did not write is a fault, too.
  std::optional<Fault> Snap(BBaseAoi& area, std::chrono::milliseconds timeout, Firing firing = Firing::kDue);
  std::optional<Fault> Stop();

 private:
  void Fire();
  // With the reason, as far as the driver's messages show it.
  Fault Explained(Fault fault, std::chrono::milliseconds timeout = {}) const;
  std::chrono::milliseconds TimeOfImage() const;

  const CameraSession& m_camera;
  BImagingDevice& m_device;
  const bool m_one_shot;
  const TriggerChoice m_choice;
  const bool m_fire;  // a continuous run leaves the software trigger to the host
  const std::uint64_t m_first_message;
  std::uint64_t m_messages_of_step;  // from this one on they are those of the step under way
  bool m_has_clock = true;
  std::optional<Fault> m_start_fault;
  bool m_stopped = false;
};

}  // namespace Kelcam
