// plain_device.h
// A device and an implementation that do nothing of their own.
#pragma once

#include <memory>
#include <utility>

#include "bimagingdevice.h"
#include "bimagingdeviceimpl.h"

class PlainDevice : public BImagingDevice {
 public:
  bool IsOpen() const override { return false; }
  const wchar_t* TypeName() const override { return L"Plain"; }
  const wchar_t* Name() const override { return L"Plain_1"; }
  BSize ImageSize(bool&) const override { return {}; }
  int MaxShutterForFast() const override { return -1; }
  bool FramesPerSecond(double&) override { return false; }
  bool SetColorMode(bool) override { return false; }
  bool HasWhiteBalance() const override { return false; }
  bool SetWhiteBalanceBlue(int, bool) override { return false; }
  bool SetWhiteBalanceRed(int, bool) override { return false; }
  int ColorBlueBalance() const override { return 0; }
  int ColorRedBalance() const override { return 0; }
  bool WhiteBalanceRange(int&, int&) override { return false; }
  bool WhiteBalanceOnce() override { return false; }
  void StartSnap(bool) override {}
  BError Snap(BBaseAoi*, std::uint32_t) override { return BError(BError::eTimeout); }
  void StopSnap() override {}
  void Refresh() override {}
  BImagingDeviceControl* GainControl() override { return nullptr; }
  BImagingDeviceControl* OffsetControl() override { return nullptr; }
  BImagingDeviceControl* GammaControl() override { return nullptr; }
  BImagingDeviceControl* SharpnessControl() override { return nullptr; }
  BImagingDeviceControl* ShutterControl() override { return nullptr; }
  BImagingDeviceControl* BrightnessControl() override { return nullptr; }
  BImagingDeviceControl* HueControl() override { return nullptr; }
  BImagingDeviceControl* SaturationControl() override { return nullptr; }
  BImagingDeviceControl* TemperatureControl(bool) override { return nullptr; }
  BImagingDeviceTrigger* Trigger() override { return nullptr; }
  bool IsColor() const override { return false; }
  std::int64_t GetBandwidth() override { return 0; }
  bool SetBandwidth(std::int32_t) override { return false; }
  bool AddBandwidthPartner(BImagingDevice*) override { return false; }
  bool RemoveBandwidthPartner(BImagingDevice*) override { return false; }

  void NoteSnapTime(double time_ms) { SetLastSnapTime(time_ms); }
};

class PlainImplementation : public BImagingDeviceImpl {
 public:
  const wchar_t* ApiName() const override { return L"Plain"; }
  const wchar_t* Identifier() const override { return L"Plain_1"; }
  BSize ImageSize(bool&) const override { return {}; }
  bool FramesPerSecond(double&) override { return false; }
  bool Initialize(BSmartRef<BCamProfile> profile) override {
    SetProfile(std::move(profile));
    return true;
  }
  bool IsColor() const override { return false; }
  bool SetWhiteBalanceBlue(int, bool) override { return false; }
  bool SetWhiteBalanceRed(int, bool) override { return false; }
  int ColorBlueBalance() const override { return 0; }
  int ColorRedBalance() const override { return 0; }
  bool IsOpen() const override { return false; }
  BImagingDeviceTrigger* Trigger() const override { return nullptr; }

  using BImagingDeviceImpl::DeleteControls;
  using BImagingDeviceImpl::Profile;
  using BImagingDeviceImpl::SetControl;
};
