// snap_cycle.cpp
// The host's three calls: start, snap, stop.
#include "acquisition/snap_cycle.h"

#include <utility>

#include "acquisition/frame_copy.h"
#include "acquisition/frame_queue.h"
#include "acquisition/frame_receiver.h"
#include "bimagingdevicetrigger.h"
#include "bstopwatch.h"
#include "diagnostics/log_collector.h"
#include "vimba/feature_names.h"
#include "vimba/vimba_camera.h"
#include "vimba/vimba_features.h"

namespace {

// The entry of a snap that got no frame in the list of received ones.
constexpr std::uint64_t kNoFrameId = ~std::uint64_t{0};

[[noreturn]] void Fail(const wchar_t* what) { throw BError(BError::eAcquisitionFailed, what); }

}  // namespace

SnapCycle::SnapCycle(const VimbaCamera& camera, BStopWatch& snap_watch, BFrameQueue& queue, FrameReceiver& receiver,
                     Stream& stream)
    : m_camera(camera), m_snap_watch(snap_watch), m_queue(queue), m_receiver(receiver), m_stream(stream) {}

void SnapCycle::StartSnap(bool one_shot) {
  const BRecursiveMutexLock lock(m_snap_mutex);
  m_snap_watch.Reset();
  const WString label = WString::Format(L"StartSnap( one_shot = %s )", one_shot ? L"True" : L"False");
  BLogCollector log(m_camera.Prefix() + label, m_snap_watch);
  m_stream.BeforeAcquisition(log);
  // Until the camera's time is known again every frame that still comes is one of the acquisition before.
  FrameReceiver::Refusal refusal(m_receiver);
  m_queue.Clear();
  m_last_snap_error = 0;
  m_received_frame_ids.clear();
  if (m_trigger) {
    log << L"Trigger is on: " << m_trigger->IsExternal() << L'\n';
    if (m_trigger->IsExternal()) m_trigger->SetSource(BImagingDeviceTrigger::eLine);
  }
  SetAcquisitionMode(one_shot, log);
  const std::uint64_t now = LatchCameraTimestamp();
  refusal.EndWith(now);
  log << L"Current camera timestamp = " << now << L'\n';
  StartAcquisition(log);
  m_runs_continuously = !one_shot;
}

void SnapCycle::SetAcquisitionMode(bool one_shot, BLogCollector& log) {
  m_continuous_mode = !one_shot;
  const char* mode = one_shot ? FeatureEntry::kSingleFrame : FeatureEntry::kContinuous;
  const VmbError_t code = Vimba::SetEnum(m_camera.Handle(), Feature::kAcquisitionMode, mode);
  log << L"Set feature AcquisitionMode = " << mode << L" -> " << code << L'\n';
  if (code != VmbErrorSuccess) Fail(L"AcquisitionMode failed");
}

void SnapCycle::StartAcquisition(BLogCollector& log) {
  m_receiver.SetRunning(true);
  const VmbError_t code = Vimba::RunCommand(m_camera.Handle(), Feature::kAcquisitionStart);
  log << L"Command AcquisitionStart -> " << code << L'\n';
  if (code == VmbErrorSuccess) return;
  m_receiver.SetRunning(false);
  Fail(L"AcquisitionStart failed");
}

std::uint64_t SnapCycle::LatchCameraTimestamp() {
  std::int64_t timestamp = 0;
  const bool latched = Vimba::RunCommand(m_camera.Handle(), Feature::kGevTimestampControlLatch) == VmbErrorSuccess &&
                       Vimba::GetInt(m_camera.Handle(), Feature::kGevTimestampValue, timestamp) == VmbErrorSuccess;
  return latched ? static_cast<std::uint64_t>(timestamp) : FrameReceiver::kNoTimestamp;
}

BError SnapCycle::Snap(BBaseAoi* aoi, std::uint32_t timeout_ms, const FrameLayout& layout) {
  const BRecursiveMutexLock lock(m_snap_mutex);
  BLogCollector log(m_camera.Prefix() + L"Snap", m_snap_watch);
  if (!m_continuous_mode && m_trigger && !m_trigger->IsExternal()) {
    log << L"Fire SW trigger\n";
    m_trigger->Fire();
  }
  BSmartRef<BFrameQueue::BFrame> frame;
  BError error = m_queue.Pop(frame, timeout_ms);
  const std::uint64_t id = frame ? frame->Id() : kNoFrameId;
  m_received_frame_ids.push_back(id);
  log << L"Frame Id = " << id << L'\n';
  log << L"Frame error code = " << error.ErrorCode() << L'\n';
  if (!m_continuous_mode && TriggerIsExternal()) m_trigger->SetSource(BImagingDeviceTrigger::eSoftware);
  if (error.IsError()) {
    m_last_snap_error.exchange(error.ErrorCode());
    return error;
  }
  if (aoi) {
    CopyFrameToAoi(*frame, layout, *aoi);
    log << L"Copy frame to aoi" << L'\n';
  }
  return BError();
}

bool SnapCycle::TriggerIsExternal() const { return m_trigger && m_trigger->IsExternal(); }

void SnapCycle::StopSnap() {
  const BRecursiveMutexLock lock(m_snap_mutex);
  BLogCollector log(m_camera.Prefix() + (m_last_snap_error != 0 ? L"StopSnap!" : L"StopSnap"), m_snap_watch);
  if (m_continuous_mode && TriggerIsExternal()) {
    m_trigger->SetSource(BImagingDeviceTrigger::eSoftware);
    log << L"Trigger: ActivateMode( eTriggerSoftware" << L'\n';
  }
  const VmbError_t code = Vimba::RunCommand(m_camera.Handle(), Feature::kAcquisitionStop);
  log << L"VmbFeatureCommandRun AcquisitionStop returns " << code << L'\n';
  m_receiver.SetRunning(false);
  if (code != VmbErrorSuccess) Fail(L"AcquisitionStop failed");
  m_continuous_mode = false;
  m_runs_continuously = false;
  LogReceivedFrames(log);
  m_stream.AfterAcquisition(m_last_snap_error, log);
  m_last_snap_error.exchange(0);
}

void SnapCycle::LogReceivedFrames(BLogCollector& log) const {
  log << L"Received " << std::uint64_t{m_received_frame_ids.size()} << L" Frames [";
  const wchar_t* separator = L"";
  for (const std::uint64_t id : m_received_frame_ids) log << std::exchange(separator, L", ") << id;
  log << L"]\n";
}
