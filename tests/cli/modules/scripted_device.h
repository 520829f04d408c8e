// scripted_device.h
// A device without a camera: it does what the script says and logs every operation that it is asked for.
#pragma once

#include <string>

#include "bimagingdevice.h"

void Log(const std::string& operation);

class ScriptedControl : public BImagingDeviceControl {
 public:
  ScriptedControl(std::string name, NBoard::CONTROLTYPE type, int value, int min, int max);

  int Value() override { return m_value; }
  bool SetValue(int value) override;
  void SetMinValue(int value) override { m_min = value; }
  void SetMaxValue(int value) override { m_max = value; }
  void SetDefaultValue(int) override {}
  bool GetRange(int& min, int& max) override;
  bool SetToDefault() override { return true; }
  bool IsAvailable() const override { return true; }
  WString UnitString() const override;
  double ToRealValue(int value) const override;
  int FromRealValue(double value) const override;

 private:
  std::string m_name;
  int m_value, m_min, m_max;
};

class ScriptedTrigger : public BImagingDeviceTrigger {
 public:
  void SetOn() override { SetSource(eSoftware); }
  bool IsAvailable() const override { return true; }
  bool IsExternal() const override { return m_external; }
  void SetExternal(bool external) override;
  void SetOff() override;
  bool SetActivation(int edge) override;
  bool SetSource(int source) override;
  void Fire() override { Log("Fire"); }

 private:
  bool m_external = false;
};

class ScriptedDevice : public BImagingDevice {
 public:
  // number: 0 where there is one device only; every other one is in its name, in what it logs and in the keys of its
  // script ("snap2").
  explicit ScriptedDevice(int number);

  bool IsOpen() const override { return true; }
  const wchar_t* TypeName() const override { return L"Scripted"; }
  const wchar_t* Name() const override { return m_name.c_str(); }
  BSize ImageSize(bool& rotated) const override;
  int MaxShutterForFast() const override { return 20000; }
  bool FramesPerSecond(double& frames_per_second) override;
  bool SetColorMode(bool on) override;
  bool HasWhiteBalance() const override { return m_color; }
  bool SetWhiteBalanceBlue(int value, bool color) override;
  bool SetWhiteBalanceRed(int value, bool color) override;
  int ColorBlueBalance() const override { return 130; }
  int ColorRedBalance() const override { return 120; }
  bool WhiteBalanceRange(int& min, int& max) override;
  bool WhiteBalanceOnce() override { return false; }
  void StartSnap(bool one_shot) override;
  BError Snap(BBaseAoi* aoi, std::uint32_t timeout_ms) override;
  void StopSnap() override;
  void Refresh() override {}
  BImagingDeviceControl* GainControl() override { return &m_gain; }
  BImagingDeviceControl* OffsetControl() override { return nullptr; }
  BImagingDeviceControl* GammaControl() override { return nullptr; }
  BImagingDeviceControl* SharpnessControl() override { return nullptr; }
  BImagingDeviceControl* ShutterControl() override { return m_has_exposure ? &m_exposure : nullptr; }
  BImagingDeviceControl* BrightnessControl() override { return nullptr; }
  BImagingDeviceControl* HueControl() override { return nullptr; }
  BImagingDeviceControl* SaturationControl() override { return nullptr; }
  BImagingDeviceControl* TemperatureControl(bool sensor) override { return sensor ? &m_temperature : nullptr; }
  BImagingDeviceTrigger* Trigger() override { return m_has_trigger ? &m_trigger : nullptr; }
  bool IsColor() const override { return m_color; }
  std::int64_t GetBandwidth() override { return 45000000; }
  bool SetBandwidth(std::int32_t) override { return true; }
  bool AddBandwidthPartner(BImagingDevice* partner) override;
  bool RemoveBandwidthPartner(BImagingDevice* partner) override;

 private:
  void Log(const std::string& operation) const;
  // The key of a step of this device.
  std::string Key(const std::string& step) const { return m_number ? step + std::to_string(m_number) : step; }

  const int m_number;
  const WString m_name;
  bool m_color, m_has_trigger, m_has_exposure;
  ScriptedControl m_gain, m_exposure, m_temperature;
  ScriptedTrigger m_trigger;
  int m_pictures = 0;
};
