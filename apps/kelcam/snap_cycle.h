// snap_cycle.h
// The steps by which a device takes images: trigger, start-snap, snap, stop-snap.
#pragma once

#include <cstdint>
#include <optional>

#include "bbaseaoi.h"
#include "bimagingdevice.h"
#include "failure.h"

namespace kelcam {

enum class TriggerChoice { eSoftware, eLine, eFree };

// Gives the device a trigger source for as long as it lives, then the software trigger again.
class TriggerSetting {
 public:
  // Throws Failure when the camera refuses. A camera without a trigger takes the software choice (it changes nothing),
  // and free running unless it was asked for by name.
  TriggerSetting(BImagingDevice& device, TriggerChoice choice, bool by_name);
  ~TriggerSetting();
  TriggerSetting(const TriggerSetting&) = delete;
  TriggerSetting& operator=(const TriggerSetting&) = delete;

 private:
  BImagingDevice& m_device;
  TriggerChoice m_choice;
};

// One start-snap and, whatever comes between, its stop-snap. Neither throws: a fault ends in the results.
class SnapCycle {
 public:
  SnapCycle(BImagingDevice& device, bool one_shot, TriggerChoice choice);
  ~SnapCycle();
  SnapCycle(const SnapCycle&) = delete;
  SnapCycle& operator=(const SnapCycle&) = delete;

  // Why the start failed; nothing can be snapped then.
  const std::optional<Fault>& StartFault() const { return m_start_fault; }
  std::optional<Fault> Snap(BBaseAoi& area, std::uint32_t timeout_ms);
  std::optional<Fault> Stop();

 private:
  BImagingDevice& m_device;
  bool m_fire;  // a continuous run leaves the software trigger to the host
  std::optional<Fault> m_start_fault;
  bool m_stopped = false;
};

}  // namespace kelcam
