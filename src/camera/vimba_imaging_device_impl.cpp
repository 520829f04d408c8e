// vimba_imaging_device_impl.cpp
// The life of a camera's implementation object: what Initialize does, step by step, and how the destructor undoes it.
#include "camera/vimba_imaging_device_impl.h"

#include <new>

#include "camera/profile_keys.h"
#include "controls/vimba_control.h"
#include "diagnostics/camera_prefix.h"
#include "diagnostics/log_collector.h"
#include "imagingdevice.h"
#include "vimba/feature_names.h"
#include "vimba/pixel_formats.h"
#include "vimba/vimba_features.h"
#include "vimba/vimba_version.h"

namespace {

constexpr wchar_t kApiName[] = L"Vimba";
// Profiles that name the library's predecessor serve as they are.
constexpr wchar_t kFormerApiName[] = L"PvAPI";

}  // namespace

BVimbaImagingDeviceImpl::BVimbaImagingDeviceImpl() { JoinPartners(); }

BVimbaImagingDeviceImpl::~BVimbaImagingDeviceImpl() {
  LeavePartners();
  Vimba::RunCommand(m_camera, Feature::kAcquisitionStop);
  // Without memory for it the profile keeps what it had; the camera is closed all the same.
  try {
    SaveWhiteBalance();
  } catch (const std::bad_alloc&) {  // NOLINT(bugprone-empty-catch)
  }
  DeleteControls();
  m_trigger.reset();
  CloseCamera();
  FreeFrames();
}

const wchar_t* BVimbaImagingDeviceImpl::ApiName() const { return kApiName; }

const wchar_t* BVimbaImagingDeviceImpl::Identifier() const { return m_identifier.c_str(); }

BSize BVimbaImagingDeviceImpl::ImageSize(bool& rotated) const {
  rotated = m_rotation != 0;
  return m_image_size;
}

bool BVimbaImagingDeviceImpl::IsColor() const { return m_is_color; }

bool BVimbaImagingDeviceImpl::IsOpen() const { return m_camera != nullptr; }

BImagingDeviceTrigger* BVimbaImagingDeviceImpl::Trigger() const {
  return m_trigger && m_trigger->IsAvailable() ? m_trigger.get() : nullptr;
}

WString BVimbaImagingDeviceImpl::Prefix() const { return CameraPrefix(m_identifier); }

bool BVimbaImagingDeviceImpl::Initialize(BSmartRef<BCamProfile> profile) {
  if (!profile) return false;
  BLogCollector log(Prefix() + L"Initialize by " + profile->Name());
  SetProfile(std::move(profile));
  if (!HasOurApi() || !OpenByProfile(log)) return false;
  ReadSensorType();
  if (!InitPixelFormatAndGeometry(log) || !AnnounceFrames()) return false;
  log << L"Camera initialized: " << m_identifier.c_str() << L'\n';
  if (!StartCapture(log)) return false;
  CreateColorConverter();
  CreateControls();
  ApplyProfileLimits();
  ReadRotation();
  Profile()->ReadDouble(ProfileKey::kCameraFrequency, m_camera_frequency, m_camera_frequency);
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
  if (!OpenCamera(serial_number)) return false;
  Profile()->WriteIdent(m_identifier);
  Profile()->Write(ProfileKey::kCameraIdentifier, m_unique_id);
  Profile()->WriteMIIdent(m_unique_id);
  return true;
}

bool BVimbaImagingDeviceImpl::StartCapture(BLogCollector& log) {
  if (!m_trigger) m_trigger = std::make_unique<BVimbaTrigger>(m_camera);
  Vimba::SetEnum(m_camera, Feature::kExposureAuto, "Off");
  const VmbError_t code = VmbCaptureStart(m_camera);
  if (code != VmbErrorSuccess) {
    log << L"VmbCaptureStart failed. Return value = " << code << L'\n';
    return false;
  }
  if (Vimba::SetEnum(m_camera, Feature::kAcquisitionMode, "Continuous") != VmbErrorSuccess) {
    ImagingDevice::ShowInfo(L"AcquisitionMode failed", L"!");
    return false;
  }
  log << L"Feature AcquisitionMode = Continuous" << L'\n';
  if (!m_trigger->SetSource(BVimbaTrigger::eSoftware)) {
    ImagingDevice::ShowInfo(L"SWTriggerMode failed", L"!");
    return false;
  }
  return FrameQueueFill(log);
}

void BVimbaImagingDeviceImpl::CreateColorConverter() {
  if (m_is_color) m_color_converter = new BColorConverter(m_image_size, BayerOrder(), 0);
}

void BVimbaImagingDeviceImpl::CreateControls() {
  const auto create = [this](NBoard::CONTROLTYPE type) { SetControl(std::make_unique<BVimbaControl>(type, m_camera)); };
  create(NBoard::eGain);
  create(NBoard::eShutter);
  if (m_is_color) {
    create(NBoard::eWhiteBalanceRed);
    create(NBoard::eWhiteBalanceBlue);
  }
  create(NBoard::eTemperatureSensor);
  create(NBoard::eTemperatureMain);
}

// Three quarter turns to the left, -3, are one to the right; half turns are refused.
void BVimbaImagingDeviceImpl::ReadRotation() {
  const WString key(ProfileKey::kRotateBy90Degree);
  if (!ReadIntKey(key, m_rotation, 0)) return;
  if (m_rotation < -1) m_rotation += 4;
  if (m_rotation >= -1 && m_rotation <= 1) return;
  WString value;
  Profile()->ReadString(key, value);
  throw BError(BError::eBadRotation, Profile()->FileName(), key, value);
}

void BVimbaImagingDeviceImpl::ConfigureTrigger() {
  BImagingDeviceTrigger* trigger = Trigger();
  if (!trigger) return;
  trigger->SetOff();
  WString polarity;
  Profile()->ReadString(ProfileKey::kTriggerPolarity, polarity, L"HIGH");
  trigger->SetActivation(polarity.IEquals(L"LOW") ? BVimbaTrigger::eFalling : BVimbaTrigger::eRising);
}

void BVimbaImagingDeviceImpl::SaveWhiteBalance() {
  if (!Profile() || !HasWhiteBalance()) return;
  Profile()->GoToRoot();
  const auto save = [this](int value_index, int value) {
    const WString key = NBoard::WBValueString(value_index);
    int saved = 0;
    if (!ReadIntKey(key, saved, 0) || saved != value) Profile()->Write(key, WString::Format(L"%d", value));
  };
  save(NBoard::eColorBlue, m_color_balance.blue);
  save(NBoard::eColorRed, m_color_balance.red);
}

// Between the end of capture and the rest, the workers that still copy are let finish: no new one can start, and they
// touch the frames and this object. Those that wait for a block get one of the frames that nobody will take any more.
void BVimbaImagingDeviceImpl::CloseCamera() {
  if (!m_camera) return;
  Vimba::RunCommand(m_camera, Feature::kAcquisitionStop);
  VmbCaptureEnd(m_camera);
  m_frame_queue.Clear();
  m_workers.WaitUntilNone();
  VmbCaptureQueueFlush(m_camera);
  VmbFrameRevokeAll(m_camera);
  VmbCameraClose(m_camera);
  m_camera = nullptr;
}

bool BVimbaImagingDeviceImpl::ReadIntKey(const WString& key, int& value, int default_value) const {
  return Profile()->ReadInt(key, value, default_value, ProfileKey::kLowestInteger, ProfileKey::kHighestInteger);
}
