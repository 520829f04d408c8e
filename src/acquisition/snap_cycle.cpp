// snap_cycle.cpp
// The host's three calls: start, snap, stop.
#include <utility>

#include "bbaseaoi.h"
#include "camera/vimba_imaging_device_impl.h"
#include "diagnostics/log_collector.h"
#include "vimba/feature_names.h"
#include "vimba/vimba_features.h"

namespace {

[[noreturn]] void Fail(const wchar_t* what) { throw BError(BError::eAcquisitionFailed, what); }

}  // namespace

void BVimbaImagingDeviceImpl::StartSnap(bool one_shot) {
  const std::lock_guard lock(m_snap_mutex);
  m_snap_stop_watch.Reset();
  const WString label = WString::Format(L"StartSnap( one_shot = %s )", one_shot ? L"True" : L"False");
  BLogCollector log(Prefix() + label, m_snap_stop_watch);
  SynchBandwidth(log);
  // Until the camera's time is known again every frame that still comes is one of the acquisition before.
  m_start_scan_timestamp = kNoTimestamp;
  m_frame_queue.Clear();
  m_last_snap_error = 0;
  m_received_frame_ids.clear();
  if (m_trigger) {
    log << L"Trigger is on: " << m_trigger->IsExternal() << L'\n';
    if (m_trigger->IsExternal()) m_trigger->SetSource(BVimbaTrigger::eLine);
  }
  SetAcquisitionMode(one_shot, log);
  const std::uint64_t now = LatchCameraTimestamp();
  m_start_scan_timestamp = now;
  log << L"Current camera timestamp = " << now << L'\n';
  m_frame_blocks->SetRunning(true);
  const VmbError_t code = Vimba::RunCommand(m_camera, Feature::kAcquisitionStart);
  log << L"Command AcquisitionStart -> " << code << L'\n';
  if (code == VmbErrorSuccess) return;
  m_frame_blocks->SetRunning(false);
  Fail(L"AcquisitionStart failed");
}

void BVimbaImagingDeviceImpl::SetAcquisitionMode(bool one_shot, BLogCollector& log) {
  m_continuous_mode = !one_shot;
  const char* mode = one_shot ? "SingleFrame" : "Continuous";
  const VmbError_t code = Vimba::SetEnum(m_camera, Feature::kAcquisitionMode, mode);
  log << L"Set feature AcquisitionMode = " << mode << L" -> " << code << L'\n';
  if (code != VmbErrorSuccess) Fail(L"AcquisitionMode failed");
}

std::uint64_t BVimbaImagingDeviceImpl::LatchCameraTimestamp() {
  std::int64_t timestamp = 0;
  const bool latched = Vimba::RunCommand(m_camera, Feature::kGevTimestampControlLatch) == VmbErrorSuccess &&
                       Vimba::GetInt(m_camera, Feature::kGevTimestampValue, timestamp) == VmbErrorSuccess;
  return latched ? static_cast<std::uint64_t>(timestamp) : kNoTimestamp;
}

BError BVimbaImagingDeviceImpl::Snap(BBaseAoi* aoi, std::uint32_t timeout_ms, std::int64_t /*unused*/) {
  const std::lock_guard lock(m_snap_mutex);
  BLogCollector log(Prefix() + L"Snap", m_snap_stop_watch);
  if (!m_continuous_mode && m_trigger && !m_trigger->IsExternal()) {
    log << L"Fire SW trigger\n";
    m_trigger->Fire();
  }
  BSmartRef<BFrameQueue::BFrame> frame;
  BError error = m_frame_queue.Pop(frame, timeout_ms);
  const std::uint64_t id = frame ? frame->Id() : kNoFrameId;
  m_received_frame_ids.push_back(id);
  log << L"Frame Id = " << id << L'\n';
  log << L"Frame error code = " << error.ErrorCode() << L'\n';
  if (!m_continuous_mode && TriggerIsExternal()) m_trigger->SetSource(BVimbaTrigger::eSoftware);
  if (error.IsError()) {
    m_last_snap_error.exchange(error.ErrorCode());
    return error;
  }
  if (aoi) {
    CopyToAoi(*frame, *aoi);
    log << L"Copy frame to aoi" << L'\n';
  }
  return BError();
}

bool BVimbaImagingDeviceImpl::TriggerIsExternal() const { return m_trigger && m_trigger->IsExternal(); }

void BVimbaImagingDeviceImpl::CopyToAoi(const BFrameQueue::BFrame& frame, BBaseAoi& aoi) const {
  const BAoiLockRW lock(aoi);
  const FrameLayout layout{m_image_size, m_payload_size, m_rotation,
                           m_is_color,   m_yuv_stretch,  m_color_converter.Get()};
  switch (aoi.ImageKind()) {
    case BBaseAoi::eMono8:
      CopyFrameToMonoAoi(frame, layout, aoi);
      break;
    case BBaseAoi::eRgb:
      CopyFrameToRgbAoi(frame, layout, aoi);
      break;
    default:
      break;
  }
}

void BVimbaImagingDeviceImpl::StopSnap() {
  const std::lock_guard lock(m_snap_mutex);
  BLogCollector log(Prefix() + (m_last_snap_error != 0 ? L"StopSnap!" : L"StopSnap"), m_snap_stop_watch);
  if (m_continuous_mode && TriggerIsExternal()) {
    m_trigger->SetSource(BVimbaTrigger::eSoftware);
    log << L"Trigger: ActivateMode( eTriggerSoftware" << L'\n';
  }
  const VmbError_t code = Vimba::RunCommand(m_camera, Feature::kAcquisitionStop);
  log << L"VmbFeatureCommandRun AcquisitionStop returns " << code << L'\n';
  m_frame_blocks->SetRunning(false);
  if (code != VmbErrorSuccess) Fail(L"AcquisitionStop failed");
  m_continuous_mode = false;
  LogReceivedFrames(log);
  AfterSnap(log);
}

void BVimbaImagingDeviceImpl::LogReceivedFrames(BLogCollector& log) const {
  log << L"Received " << std::uint64_t{m_received_frame_ids.size()} << L" Frames [";
  const wchar_t* separator = L"";
  for (const std::uint64_t id : m_received_frame_ids) log << std::exchange(separator, L", ") << id;
  log << L"]\n";
}
