// vimba_imaging_device.h
// The device that the host holds: a thin face of one camera's implementation object.
#pragma once

#include <memory>

#include "bcamprofile.h"
#include "bimagingdevice.h"
#include "bsmartref.h"

class BVimbaImagingDeviceImpl;

class BVimbaImagingDevice final : public BImagingDevice {
 public:
  BVimbaImagingDevice();  // the camera is not open yet
  ~BVimbaImagingDevice() override;

  // Opens the camera of the profile; the device serves nothing but its destruction when this fails.
  bool Initialize(BSmartRef<BCamProfile> profile);

  bool IsOpen() const override;
  const wchar_t* TypeName() const override;
  const wchar_t* Name() const override;
  BSize ImageSize(bool& rotated) const override;
  int MaxShutterForFast() const override;
  bool FramesPerSecond(double& frames_per_second) override;
  bool SetColorMode(bool on) override;
  bool HasWhiteBalance() const override;
  bool SetWhiteBalanceBlue(int value, bool color) override;
  bool SetWhiteBalanceRed(int value, bool color) override;
  int ColorBlueBalance() const override;
  int ColorRedBalance() const override;
  bool WhiteBalanceRange(int& min, int& max) override;
  bool WhiteBalanceOnce() override;
  void StartSnap(bool one_shot) override;
  BError Snap(BBaseAoi* aoi, std::uint32_t timeout_ms) override;
  void StopSnap() override;
  void Refresh() override;
  BImagingDeviceControl* GainControl() override;
  BImagingDeviceControl* OffsetControl() override;
  BImagingDeviceControl* GammaControl() override;
  BImagingDeviceControl* SharpnessControl() override;
  BImagingDeviceControl* ShutterControl() override;
  BImagingDeviceControl* BrightnessControl() override;
  BImagingDeviceControl* HueControl() override;
  BImagingDeviceControl* SaturationControl() override;
  BImagingDeviceControl* TemperatureControl(bool sensor) override;
  BImagingDeviceTrigger* Trigger() override;
  bool IsColor() const override;
  std::int64_t GetBandwidth() override;
  bool SetBandwidth(std::int32_t bytes_per_second) override;
  bool AddBandwidthPartner(BImagingDevice* partner) override;
  bool RemoveBandwidthPartner(BImagingDevice* partner) override;

 private:
  std::unique_ptr<BVimbaImagingDeviceImpl> m_implementation;
};
