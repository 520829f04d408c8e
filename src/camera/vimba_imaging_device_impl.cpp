// vimba_imaging_device_impl.cpp
// The life of a camera's implementation object: what Initialize does, step by step, and how the destructor undoes it.
#include "camera/vimba_imaging_device_impl.h"

#include <new>
#include <optional>
#include <tuple>
#include <utility>

#include "acquisition/frame_copy.h"
#include "bcamprofilekeys.h"
#include "camera/camera_opening.h"
#include "controls/control_types.h"
#include "controls/vimba_control.h"
#include "diagnostics/log_collector.h"
#include "imagingdevice.h"
#include "profile/profile_integer.h"
#include "profile/profile_keys.h"
#include "stream/packet_size.h"
#include "vimba/feature_names.h"
#include "vimba/vimba_features.h"
#include "vimba/vimba_version.h"

namespace {

constexpr wchar_t kApiName[] = L"Vimba";
// Profiles that name the library's predecessor serve as they are.
constexpr wchar_t kFormerApiName[] = L"PvAPI";

// Registered with every queueing. Nothing may leave it: the library could not catch it.
void FrameDoneCallback(VmbHandle_t /*camera*/, VmbFrame_t* frame) noexcept {
  const CallbackGate::Visit visit(frame);
  if (void* device = visit.Owner()) static_cast<BVimbaImagingDeviceImpl*>(device)->OnFrameExt(frame);
}

}  // namespace

BVimbaImagingDeviceImpl::BVimbaImagingDeviceImpl() : m_frame_ring(m_camera, this, FrameDoneCallback) {}

BVimbaImagingDeviceImpl::~BVimbaImagingDeviceImpl() {
  m_partners.Leave();
  // Frames that still come are handed back.
  m_receiver.SetScanStart(FrameReceiver::kNoTimestamp);
  // Also where no camera is open: the library answers for that.
  std::ignore = Vimba::RunCommand(m_camera.Handle(), Feature::kAcquisitionStop);
  SaveWhiteBalance();
  DeleteControls();
  m_snap_cycle.SetTrigger(nullptr);
  m_trigger.reset();
  const bool returned = CloseCamera();
  m_frame_ring.FreeFrames(returned);
}

const wchar_t* BVimbaImagingDeviceImpl::ApiName() const { return kApiName; }

const wchar_t* BVimbaImagingDeviceImpl::Identifier() const { return m_camera.Identifier().c_str(); }

BSize BVimbaImagingDeviceImpl::ImageSize(bool& rotated) const {
  rotated = m_rotation != 0;
  return m_image_format.ImageSize();
}

bool BVimbaImagingDeviceImpl::FramesPerSecond(double& frames_per_second) {
  return m_frame_rate.FramesPerSecond(Control(NBoard::eShutter), frames_per_second);
}

bool BVimbaImagingDeviceImpl::IsColor() const { return m_image_format.IsColor(); }

bool BVimbaImagingDeviceImpl::SetWhiteBalanceBlue(int value, bool color) {
  return m_controls.SetWhiteBalanceBlue(value, color);
}

bool BVimbaImagingDeviceImpl::SetWhiteBalanceRed(int value, bool color) {
  return m_controls.SetWhiteBalanceRed(value, color);
}

int BVimbaImagingDeviceImpl::ColorBlueBalance() const { return m_controls.ColorBlueBalance(); }

int BVimbaImagingDeviceImpl::ColorRedBalance() const { return m_controls.ColorRedBalance(); }

bool BVimbaImagingDeviceImpl::IsOpen() const { return m_camera.IsOpen(); }

BImagingDeviceTrigger* BVimbaImagingDeviceImpl::Trigger() const {
  return m_trigger && m_trigger->IsAvailable() ? m_trigger.get() : nullptr;
}

bool BVimbaImagingDeviceImpl::Initialize(BSmartRef<BCamProfile> profile) {
  if (!profile) return false;
  BLogCollector log(m_camera.Prefix() + L"Initialize by " + profile->Name());
  SetProfile(std::move(profile));
  if (!HasOurApi() || !OpenByProfile(log)) return false;
  m_image_format.ReadSensorType();
  if (!InitPixelFormatAndGeometry(log) || !m_frame_ring.AnnounceFrames()) return false;
  log << L"Camera initialized: " << m_camera.Identifier().c_str() << L'\n';
  if (!StartCapture(log)) return false;
  m_color_converter = m_image_format.MakeColorConverter();
  CreateControls();
  ApplyProfileLimits();
  ReadRotation();
  ReadCameraFrequency();
  ConfigureTrigger();
  return true;
}

bool BVimbaImagingDeviceImpl::HasOurApi() const {
  return Profile()->IsApi(kApiName) || Profile()->IsApi(kFormerApiName);
}

bool BVimbaImagingDeviceImpl::OpenByProfile(BLogCollector& log) {
  WString serial_number;
  if (!Profile()->ReadSerialNumber(serial_number)) serial_number = WString();
  log << L"API = " << kApiName << L'\n';
  log << L"Serial.Number: " << serial_number.c_str() << L'\n';
  log << VimbaVersionText().c_str() << L'\n';
  if (!OpenCamera(*Profile(), serial_number, m_camera)) return false;
  Profile()->WriteIdent(m_camera.Identifier());
  Profile()->Write(CamProfileKey::kCameraIdentifier, m_camera.UniqueId());
  Profile()->WriteMIIdent(m_camera.UniqueId());
  return true;
}

bool BVimbaImagingDeviceImpl::InitPixelFormatAndGeometry(BLogCollector& log) {
  const IProfile& profile = *Profile();
  if (!m_image_format.SetPixelFormats(profile, log) || !m_image_format.SetBinning(profile)) return false;
  m_stream_rate.InitializeBandwidthRange(profile, log);
  GVSPAdjustPacketSize(log, m_camera.Handle());
  return m_image_format.SetChipRectangle(profile);
}

bool BVimbaImagingDeviceImpl::StartCapture(BLogCollector& log) {
  if (!m_trigger) m_trigger = std::make_unique<BVimbaTrigger>(m_camera.Handle());
  m_snap_cycle.SetTrigger(m_trigger.get());
  std::ignore = Vimba::SetEnum(m_camera.Handle(), Feature::kExposureAuto, FeatureEntry::kOff);
  const VmbError_t code = VmbCaptureStart(m_camera.Handle());
  if (code != VmbErrorSuccess) {
    log << L"VmbCaptureStart failed. Return value = " << code << L'\n';
    return false;
  }
  if (Vimba::SetEnum(m_camera.Handle(), Feature::kAcquisitionMode, FeatureEntry::kContinuous) != VmbErrorSuccess) {
    ImagingDevice::ShowInfo(L"AcquisitionMode failed", L"!");
    return false;
  }
  log << L"Feature AcquisitionMode = Continuous" << L'\n';
  if (!m_trigger->SetSource(BVimbaTrigger::eSoftware)) {
    ImagingDevice::ShowInfo(L"SWTriggerMode failed", L"!");
    return false;
  }
  return m_frame_ring.FrameQueueFill(log);
}

void BVimbaImagingDeviceImpl::CreateControls() {
  for (const ControlType& type : CreatedControlTypes()) {
    if (IsColor() || !type.color_only) SetControl(std::make_unique<BVimbaControl>(type.type, m_camera.Handle()));
  }
}

void BVimbaImagingDeviceImpl::ApplyProfileLimits() {
  m_controls.ApplyProfileLimits(*Profile());
  m_frame_rate.SetMaxShutterForFast(m_controls.MaxShutterForFast(*Profile()));
}

// Three quarter turns to the left, -3, are one to the right; half turns are refused.
void BVimbaImagingDeviceImpl::ReadRotation() {
  const WString key(ProfileKey::kRotateBy90Degree);
  const std::optional<int> turns = ReadInteger(*Profile(), key);
  if (!turns) return;
  m_rotation = *turns < -1 ? *turns + 4 : *turns;
  if (m_rotation >= -1 && m_rotation <= 1) return;
  WString value;
  Profile()->ReadString(key, value);
  throw BError(BError::eBadRotation, Profile()->FileName(), key, value);
}

void BVimbaImagingDeviceImpl::ReadCameraFrequency() {
  double frames_per_second = 0.0;
  if (!Profile()->ReadDouble(ProfileKey::kCameraFrequency, frames_per_second, 0.0)) return;
  m_frame_rate.SetCameraFrequency(frames_per_second);
}

void BVimbaImagingDeviceImpl::ConfigureTrigger() {
  BImagingDeviceTrigger* trigger = Trigger();
  if (!trigger) return;
  trigger->SetOff();
  WString polarity;
  Profile()->ReadString(ProfileKey::kTriggerPolarity, polarity, L"HIGH");
  trigger->SetActivation(polarity.IEquals(L"LOW") ? BVimbaTrigger::eFalling : BVimbaTrigger::eRising);
}

// Without memory for it the profile keeps what it had; the camera is closed all the same.
void BVimbaImagingDeviceImpl::SaveWhiteBalance() {
  if (!Profile()) return;
  try {
    m_controls.SaveWhiteBalance(*Profile());
  } catch (const std::bad_alloc&) {  // NOLINT(bugprone-empty-catch)
  }
}

// Between the end of capture and the rest, callbacks and workers are let finish: they touch the camera, the frames and
// this object. A library that has refused to stop goes on calling back, and finds the gate closed, so no new worker can
// start. Workers that wait for a block get one of the frames that nobody will take any more.
bool BVimbaImagingDeviceImpl::CloseCamera() {
  if (!IsOpen()) return true;
  std::ignore = Vimba::RunCommand(m_camera.Handle(), Feature::kAcquisitionStop);
  std::ignore = VmbCaptureEnd(m_camera.Handle());
  m_gate.Close();
  m_frame_queue.Clear();
  m_receiver.WaitForWorkers();
  std::ignore = VmbCaptureQueueFlush(m_camera.Handle());
  const bool revoked = VmbFrameRevokeAll(m_camera.Handle()) == VmbErrorSuccess;
  const bool closed = m_camera.Close() == VmbErrorSuccess;
  return revoked || closed;
}

bool BVimbaImagingDeviceImpl::SetColorMode(bool on) {
  if (!IsColor() || m_snap_cycle.RunsContinuously()) return true;
  if (!m_image_format.SetColorMode(on)) return false;
  m_controls.RestoreWhiteBalance(on);
  return true;
}

BError BVimbaImagingDeviceImpl::Snap(BBaseAoi* aoi, std::uint32_t timeout_ms, std::int64_t /*unused*/) {
  const FrameLayout layout{.size = m_image_format.ImageSize(),
                           .payload_bytes = m_frame_ring.PayloadSize(),
                           .rotation = m_rotation,
                           .is_color = IsColor(),
                           .yuv_stretch = m_image_format.YuvStretch(),
                           .converter = m_color_converter.Get()};
  return m_snap_cycle.Snap(aoi, timeout_ms, layout);
}

bool BVimbaImagingDeviceImpl::AddBandwidthPartner(BVimbaImagingDeviceImpl* other) {
  return m_partners.AddBandwidthPartner(other ? &other->m_partners : nullptr);
}

bool BVimbaImagingDeviceImpl::RemoveBandwidthPartner(BVimbaImagingDeviceImpl* other) {
  return m_partners.RemoveBandwidthPartner(other ? &other->m_partners : nullptr);
}

// A frame that is lost here most likely cost the partners some of theirs: they stop waiting for them.
void BVimbaImagingDeviceImpl::OnLostFrame() { m_partners.AbortPartners(); }

void BVimbaImagingDeviceImpl::OnPartnerLostFrame() { m_frame_queue.PushAbort(); }

void BVimbaImagingDeviceImpl::BeforeAcquisition(BLogCollector& log) { m_partners.SynchBandwidth(log); }

void BVimbaImagingDeviceImpl::AfterAcquisition(std::int32_t snap_error, BLogCollector& log) {
  m_stream_rate.AfterSnap(snap_error, log);
}
