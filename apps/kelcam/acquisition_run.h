// acquisition_run.h
// One run of the camera: start-snap, the snaps of its images, stop-snap.
#pragma once

#include <chrono>
#include <optional>

#include "bbaseaoi.h"
#include "bimagingdevice.h"
#include "failure.h"
#include "trigger_setting.h"

namespace Kelcam {

// One start-snap and, whatever comes between, its stop-snap. Neither throws: a fault ends in the results.
class AcquisitionRun {
 public:
  AcquisitionRun(BImagingDevice& device, bool one_shot, TriggerChoice choice);
  ~AcquisitionRun();
  AcquisitionRun(const AcquisitionRun&) = delete;
  AcquisitionRun& operator=(const AcquisitionRun&) = delete;

  // Why the start failed; nothing can be snapped then.
  const std::optional<Fault>& StartFault() const { return m_start_fault; }
  // A picture that the driver did not write is a fault, too.
  std::optional<Fault> Snap(BBaseAoi& area, std::chrono::milliseconds timeout);
  std::optional<Fault> Stop();

 private:
  BImagingDevice& m_device;
  bool m_fire;  // a continuous run leaves the software trigger to the host
  std::optional<Fault> m_start_fault;
  bool m_stopped = false;
};

}  // namespace Kelcam
