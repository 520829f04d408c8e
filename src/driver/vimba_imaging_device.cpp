// vimba_imaging_device.cpp
// The device that the host holds: a thin face of one camera's implementation object.
#include "driver/vimba_imaging_device.h"

#include <new>
#include <utility>

#include "bstopwatch.h"
#include "camera/vimba_imaging_device_impl.h"

namespace {

// Null for a device of another driver, whose stream this driver cannot share.
BVimbaImagingDevice* AsOurs(BImagingDevice* device) { return dynamic_cast<BVimbaImagingDevice*>(device); }

}  // namespace

BVimbaImagingDevice::BVimbaImagingDevice() : m_implementation(new (std::nothrow) BVimbaImagingDeviceImpl) {}

BVimbaImagingDevice::~BVimbaImagingDevice() = default;

bool BVimbaImagingDevice::Initialize(BSmartRef<BCamProfile> profile) {
  return m_implementation && m_implementation->Initialize(std::move(profile));
}

bool BVimbaImagingDevice::IsOpen() const { return m_implementation->IsOpen(); }

const wchar_t* BVimbaImagingDevice::TypeName() const { return m_implementation->ApiName(); }

const wchar_t* BVimbaImagingDevice::Name() const { return m_implementation->Identifier(); }

BSize BVimbaImagingDevice::ImageSize(bool& rotated) const { return m_implementation->ImageSize(rotated); }

int BVimbaImagingDevice::MaxShutterForFast() const { return m_implementation->MaxShutterForFast(); }

bool BVimbaImagingDevice::FramesPerSecond(double& frames_per_second) {
  return m_implementation->FramesPerSecond(frames_per_second);
}

bool BVimbaImagingDevice::SetColorMode(bool on) { return m_implementation->SetColorMode(on); }

bool BVimbaImagingDevice::HasWhiteBalance() const { return m_implementation->HasWhiteBalance(); }

bool BVimbaImagingDevice::SetWhiteBalanceBlue(int value, bool color) {
  return m_implementation->SetWhiteBalanceBlue(value, color);
}

bool BVimbaImagingDevice::SetWhiteBalanceRed(int value, bool color) {
  return m_implementation->SetWhiteBalanceRed(value, color);
}

int BVimbaImagingDevice::ColorBlueBalance() const { return m_implementation->ColorBlueBalance(); }

int BVimbaImagingDevice::ColorRedBalance() const { return m_implementation->ColorRedBalance(); }

bool BVimbaImagingDevice::WhiteBalanceRange(int& min, int& max) {
  return HasWhiteBalance() && m_implementation->Control(NBoard::eWhiteBalanceRed)->GetRange(min, max);
}

bool BVimbaImagingDevice::WhiteBalanceOnce() { return false; }

void BVimbaImagingDevice::StartSnap(bool one_shot) { m_implementation->StartSnap(one_shot); }

BError BVimbaImagingDevice::Snap(BBaseAoi* aoi, std::uint32_t timeout_ms) {
  const BStopWatch watch;
  BError error = m_implementation->Snap(aoi, timeout_ms, 0);
  SetLastSnapTime(watch.PeriodD());
  return error;
}

void BVimbaImagingDevice::StopSnap() { m_implementation->StopSnap(); }

void BVimbaImagingDevice::Refresh() { m_implementation->Refresh(); }

BImagingDeviceControl* BVimbaImagingDevice::GainControl() { return m_implementation->Control(NBoard::eGain); }

BImagingDeviceControl* BVimbaImagingDevice::OffsetControl() { return nullptr; }

BImagingDeviceControl* BVimbaImagingDevice::GammaControl() { return nullptr; }

BImagingDeviceControl* BVimbaImagingDevice::SharpnessControl() { return nullptr; }

BImagingDeviceControl* BVimbaImagingDevice::ShutterControl() { return m_implementation->Control(NBoard::eShutter); }

BImagingDeviceControl* BVimbaImagingDevice::BrightnessControl() {
  return m_implementation->Control(NBoard::eBrightness);
}

BImagingDeviceControl* BVimbaImagingDevice::HueControl() { return nullptr; }

BImagingDeviceControl* BVimbaImagingDevice::SaturationControl() { return nullptr; }

BImagingDeviceControl* BVimbaImagingDevice::TemperatureControl(bool sensor) {
  return m_implementation->Control(sensor ? NBoard::eTemperatureSensor : NBoard::eTemperatureMain);
}

BImagingDeviceTrigger* BVimbaImagingDevice::Trigger() { return m_implementation->Trigger(); }

bool BVimbaImagingDevice::IsColor() const { return m_implementation->IsColor(); }

std::int64_t BVimbaImagingDevice::GetBandwidth() { return m_implementation->GetBandwidth(); }

bool BVimbaImagingDevice::SetBandwidth(std::int32_t bytes_per_second) {
  return m_implementation->SetBandwidth(bytes_per_second) == VmbErrorSuccess;
}

bool BVimbaImagingDevice::AddBandwidthPartner(BImagingDevice* partner) {
  const BVimbaImagingDevice* ours = AsOurs(partner);
  return ours && m_implementation->AddBandwidthPartner(ours->m_implementation.get());
}

bool BVimbaImagingDevice::RemoveBandwidthPartner(BImagingDevice* partner) {
  const BVimbaImagingDevice* ours = AsOurs(partner);
  return ours && m_implementation->RemoveBandwidthPartner(ours->m_implementation.get());
}
