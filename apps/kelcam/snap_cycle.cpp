// snap_cycle.cpp
// The steps by which a device takes images: trigger, start-snap, snap, stop-snap.
#include "snap_cycle.h"

#include "camera_session.h"

namespace kelcam {

TriggerSetting::TriggerSetting(BImagingDevice& device, TriggerChoice choice, bool by_name)
    : m_device(device), m_choice(choice) {
  BImagingDeviceTrigger* trigger = device.Trigger();
  if (choice == TriggerChoice::eSoftware) return;  // how a device is after opening
  if (!trigger) {
    if (by_name) throw Failure("this camera has no trigger");
    return;
  }
  if (choice == TriggerChoice::eLine) {
    trigger->SetExternal(true);
  } else if (!trigger->SetSource(BImagingDeviceTrigger::eFreeRun)) {
    throw Failure("the camera does not take the free-running trigger");
  }
}

TriggerSetting::~TriggerSetting() {
  BImagingDeviceTrigger* trigger = m_device.Trigger();
  if (!trigger || m_choice == TriggerChoice::eSoftware) return;
  trigger->SetOff();
  trigger->SetSource(BImagingDeviceTrigger::eSoftware);
}

// Runs one step of the device and turns what it throws into a fault.
template <class Step>
static std::optional<Fault> FaultIn(const Step& step) {
  try {
    return step();
  } catch (...) {
    return FaultOfCurrentException();
  }
}

SnapCycle::SnapCycle(BImagingDevice& device, bool one_shot, TriggerChoice choice)
    : m_device(device), m_fire(!one_shot && choice == TriggerChoice::eSoftware) {
  m_start_fault = FaultIn([&]() -> std::optional<Fault> {
    device.StartSnap(one_shot);
    return std::nullopt;
  });
}

SnapCycle::~SnapCycle() { Stop(); }

std::optional<Fault> SnapCycle::Snap(BBaseAoi& area, std::uint32_t timeout_ms) {
  return FaultIn([&]() -> std::optional<Fault> {
    BImagingDeviceTrigger* trigger = m_fire ? m_device.Trigger() : nullptr;
    if (trigger) trigger->Fire();
    const BError error = m_device.Snap(&area, timeout_ms);
    return error.IsError() ? std::optional(FaultOf(error)) : std::nullopt;
  });
}

std::optional<Fault> SnapCycle::Stop() {
  if (m_stopped) return std::nullopt;
  m_stopped = true;
  return FaultIn([&]() -> std::optional<Fault> {
    m_device.StopSnap();
    return std::nullopt;
  });
}

}  // namespace kelcam
