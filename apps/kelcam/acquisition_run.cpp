// acquisition_run.cpp
// One run of the camera: start-snap, the snaps of its images, stop-snap.
#include "acquisition_run.h"

#include <cstdint>
#include <tuple>

#include "untouched_picture.h"

namespace Kelcam {
namespace {

// Runs one step of the device and turns what it throws into a fault.
template <class Step>
std::optional<Fault> FaultIn(const Step& step) {
  try {
    return step();
  } catch (...) {
    return FaultOfCurrentException();
  }
}

// Drivers turn grey pictures only.
BSize SizeOfPicture(const BImagingDevice& device, const BBaseAoi& area) {
  bool rotated = false;
  const BSize size = device.ImageSize(rotated);
  return rotated && area.ImageKind() == BBaseAoi::eMono8 ? BSize{size.height, size.width} : size;
}

}  // namespace

AcquisitionRun::AcquisitionRun(BImagingDevice& device, bool one_shot, TriggerChoice choice)
    : m_device(device), m_fire(!one_shot && choice == TriggerChoice::kSoftware) {
  m_start_fault = FaultIn([&]() -> std::optional<Fault> {
    device.StartSnap(one_shot);
    return std::nullopt;
  });
}

AcquisitionRun::~AcquisitionRun() { std::ignore = Stop(); }

std::optional<Fault> AcquisitionRun::Snap(BBaseAoi& area, std::chrono::milliseconds timeout) {
  return FaultIn([&]() -> std::optional<Fault> {
    UntouchedPicture untouched(area, SizeOfPicture(m_device, area));
    BImagingDeviceTrigger* trigger = m_fire ? m_device.Trigger() : nullptr;
    if (trigger) trigger->Fire();
    const BError error = m_device.Snap(&area, static_cast<std::uint32_t>(timeout.count()));
    return error.IsError() ? std::optional(FaultOf(error)) : untouched.FaultAfterSnap();
  });
}

std::optional<Fault> AcquisitionRun::Stop() {
  if (m_stopped) return std::nullopt;
  m_stopped = true;
  return FaultIn([&]() -> std::optional<Fault> {
    m_device.StopSnap();
    return std::nullopt;
  });
}

}  // namespace Kelcam
