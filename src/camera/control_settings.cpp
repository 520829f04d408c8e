// control_settings.cpp
// The profile's limits and start values for the controls, and the white balance of both modes.
#include "camera/profile_keys.h"
#include "camera/vimba_imaging_device_impl.h"

void BVimbaImagingDeviceImpl::ApplyProfileLimits() {
  const auto limit = [this](NBoard::CONTROLTYPE type, const wchar_t* min_key, const wchar_t* max_key) {
    int value = 0;
    if (ReadIntKey(min_key, value, 0)) Control(type)->SetMinValue(value);
    if (ReadIntKey(max_key, value, 0)) Control(type)->SetMaxValue(value);
  };
  limit(NBoard::eGain, ProfileKey::kMinGain, ProfileKey::kMaxGain);
  limit(NBoard::eShutter, ProfileKey::kMinShutter, ProfileKey::kMaxShutter);
  ApplyStartValues();
  ReadWhiteBalance();
  int min = 0;
  Control(NBoard::eShutter)->GetRange(min, m_max_shutter_for_fast);
  Profile()->ReadMaxShutterForFast(m_max_shutter_for_fast);
}

void BVimbaImagingDeviceImpl::ApplyStartValues() {
  for (int type = 0; type < NBoard::kControlTypes; ++type) {
    BImagingDeviceControl* control = Control(static_cast<NBoard::CONTROLTYPE>(type));
    int value = 0;
    if (!control || !ReadIntKey(NBoard::ControlTypeString(type), value, 0)) continue;
    control->SetDefaultValue(value);
    control->SetToDefault();
  }
}

void BVimbaImagingDeviceImpl::ReadWhiteBalance() {
  if (!HasWhiteBalance()) return;
  const auto read = [this](NBoard::WBVALUE index) {
    int value = 0;
    ReadIntKey(NBoard::WBValueString(index), value, WhiteBalance{}.blue);
    return value;
  };
  SetWhiteBalanceBlue(read(NBoard::eColorBlue), true);
  SetWhiteBalanceRed(read(NBoard::eColorRed), true);
  m_mono_balance = {read(NBoard::eMonoBlue), read(NBoard::eMonoRed)};
}

bool BVimbaImagingDeviceImpl::HasWhiteBalance() const {
  const BImagingDeviceControl* red = Control(NBoard::eWhiteBalanceRed);
  const BImagingDeviceControl* blue = Control(NBoard::eWhiteBalanceBlue);
  return red && blue && red->IsAvailable() && blue->IsAvailable();
}

bool BVimbaImagingDeviceImpl::SetWhiteBalanceBlue(int value, bool color) {
  return SetBalance(NBoard::eWhiteBalanceBlue, &WhiteBalance::blue, value, color);
}

bool BVimbaImagingDeviceImpl::SetWhiteBalanceRed(int value, bool color) {
  return SetBalance(NBoard::eWhiteBalanceRed, &WhiteBalance::red, value, color);
}

bool BVimbaImagingDeviceImpl::SetBalance(NBoard::CONTROLTYPE type, int WhiteBalance::*part, int value, bool color) {
  BImagingDeviceControl* control = Control(type);
  const bool set = control && control->SetValue(value);
  m_current_balance.*part = value;
  if (color) m_color_balance.*part = value;
  return set;
}

int BVimbaImagingDeviceImpl::ColorBlueBalance() const { return m_color_balance.blue; }

int BVimbaImagingDeviceImpl::ColorRedBalance() const { return m_color_balance.red; }
