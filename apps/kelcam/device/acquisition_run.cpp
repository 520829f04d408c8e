// acquisition_run.cpp
// One run of the camera: start-snap, the snaps of its images, stop-snap.
#include "device/acquisition_run.h"

#include <cstdint>
#include <tuple>

#include "device/control_setting.h"
#include "device/snap_explained.h"
#include "device/untouched_picture.h"

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

// How long a frame's message may come after what the frame caused.
constexpr std::chrono::milliseconds kLatestMessageOfFrame{500};
constexpr double kMillisecondsPerSecond = 1000.0;
constexpr const char* kExposureUnit = "ms";

// Without a text 12103 is the error of an incomplete frame.
bool IsOfAFrame(const Fault& fault) {
  return fault.code == BError::eFrameTooSmall || fault.code == BError::eFrameInvalid ||
         (fault.code == BError::eAcquisitionFailed && !Contains(fault.text, ":"));
}

// Drivers turn grey pictures only.
BSize SizeOfPicture(const BImagingDevice& device, const BBaseAoi& area) {
  bool rotated = false;
  const BSize size = device.ImageSize(rotated);
  return rotated && area.ImageKind() == BBaseAoi::eMono8 ? BSize{size.height, size.width} : size;
}

}  // namespace

AcquisitionRun::AcquisitionRun(const CameraSession& camera, bool one_shot, TriggerChoice choice)
    : m_camera(camera),
      m_device(camera.Device()),
      m_one_shot(one_shot),
      m_choice(choice),
      m_fire(!one_shot && choice == TriggerChoice::kSoftware),
      m_first_message(camera.Messages().Count()),
      m_messages_of_step(m_first_message) {
  m_start_fault = FaultIn([&]() -> std::optional<Fault> {
    const CallWatch::Call call(m_camera.Watch(), Operation::kStart);
    m_device.StartSnap(one_shot);
    return std::nullopt;
  });
  m_has_clock = HasClock(LinesOf(m_camera.Messages().MessagesSince(m_first_message)));
  if (m_start_fault) m_start_fault = Explained(*m_start_fault);
}

AcquisitionRun::~AcquisitionRun() { std::ignore = Stop(); }

std::optional<Fault> AcquisitionRun::Snap(BBaseAoi& area, std::chrono::milliseconds timeout, Firing firing) {
  std::optional<Fault> fault = FaultIn([&]() -> std::optional<Fault> {
    UntouchedPicture untouched(area, SizeOfPicture(m_device, area));
    if (firing == Firing::kDue) Fire();
    const CallWatch::Call call(m_camera.Watch(), m_one_shot ? Operation::kSingleSnap : Operation::kSnap, timeout);
    const BError error = m_device.Snap(&area, static_cast<std::uint32_t>(timeout.count()));
    return error.IsError() ? std::optional(FaultOf(error)) : untouched.FaultAfterSnap();
  });
  if (fault) fault = Explained(*fault, timeout);
  m_messages_of_step = m_camera.Messages().Count();
  return fault;
}

void AcquisitionRun::Fire() {
  BImagingDeviceTrigger* trigger = m_fire ? m_device.Trigger() : nullptr;
  if (!trigger) return;
  const CallWatch::Call call(m_camera.Watch(), Operation::kFire);
  trigger->Fire();
}

std::optional<Fault> AcquisitionRun::Stop() {
  if (m_stopped) return std::nullopt;
  m_stopped = true;
  m_messages_of_step = m_camera.Messages().Count();
  std::optional<Fault> fault = FaultIn([&]() -> std::optional<Fault> {
    const CallWatch::Call call(m_camera.Watch(), Operation::kStop);
    m_device.StopSnap();
    return std::nullopt;
  });
  if (fault) fault = Explained(*fault);
  return fault;
}

Fault AcquisitionRun::Explained(Fault fault, std::chrono::milliseconds timeout) const {
  if (fault.code == Fault::kNoCode) return fault;
  SnapEvidence evidence{
      .code = fault.code, .text = fault.text, .lines = LinesOf(m_camera.Messages().MessagesSince(m_messages_of_step))};
  if (evidence.lines.empty()) return fault;
  // In a continuous run the frame may have come during the snap before.
  if (IsOfAFrame(fault)) {
    evidence.lines = LinesOf(m_camera.Messages().AwaitMessage(m_first_message, kFailedFrame, kLatestMessageOfFrame));
  }
  evidence.trigger = m_choice;
  evidence.has_trigger = m_device.Trigger() != nullptr;
  evidence.camera_is_gone = m_camera.LooksGone();
  evidence.has_clock = m_has_clock;
  evidence.timeout = timeout;
  const CallWatch::Call call(m_camera.Watch(), Operation::kControls);
  evidence.rate_bytes_per_s = m_device.GetBandwidth();
  evidence.needed = TimeOfImage();
  fault.reason = ExplainSnap(evidence);
  return fault;
}

// The exposure, and the transfer of one byte for each pixel, which no format goes below.
std::chrono::milliseconds AcquisitionRun::TimeOfImage() const {
  bool rotated = false;
  const BSize size = m_device.ImageSize(rotated);
  const double bytes = static_cast<double>(size.width) * static_cast<double>(size.height);
  const auto rate_bytes_per_s = static_cast<double>(m_device.GetBandwidth());
  double time_ms = rate_bytes_per_s > 0.0 ? bytes / rate_bytes_per_s * kMillisecondsPerSecond : 0.0;
  BImagingDeviceControl* exposure = m_device.ShutterControl();
  if (exposure && UnitOf(*exposure) == kExposureUnit) time_ms += exposure->ToRealValue(exposure->Value());
  return std::chrono::milliseconds(static_cast<std::int64_t>(time_ms));
}

}  // namespace Kelcam
