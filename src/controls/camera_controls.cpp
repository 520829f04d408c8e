// camera_controls.cpp
// What a profile says of a camera's controls, and the white balance of both modes.
#include "controls/camera_controls.h"

#include <optional>

#include "bcamprofile.h"
#include "bimagingdeviceimpl.h"
#include "profile/profile_integer.h"
#include "profile/profile_keys.h"

void CameraControls::ApplyProfileLimits(const IProfile& profile) {
  const auto limit = [&](NBoard::CONTROLTYPE type, const wchar_t* min_key, const wchar_t* max_key) {
    BImagingDeviceControl& control = *m_device.Control(type);
    if (const std::optional<int> min = ReadInteger(profile, min_key)) control.SetMinValue(*min);
    if (const std::optional<int> max = ReadInteger(profile, max_key)) control.SetMaxValue(*max);
  };
  limit(NBoard::eGain, ProfileKey::kMinGain, ProfileKey::kMaxGain);
  limit(NBoard::eShutter, ProfileKey::kMinShutter, ProfileKey::kMaxShutter);
  ApplyStartValues(profile);
  ReadWhiteBalance(profile);
}

void CameraControls::ApplyStartValues(const IProfile& profile) {
  for (int type = 0; type < NBoard::kControlTypes; ++type) {
    BImagingDeviceControl* control = m_device.Control(static_cast<NBoard::CONTROLTYPE>(type));
    if (!control) continue;
    const std::optional<int> value = ReadInteger(profile, NBoard::ControlTypeString(type));
    if (!value) continue;
    control->SetDefaultValue(*value);
    control->SetToDefault();
  }
}

int CameraControls::MaxShutterForFast(const BCamProfile& profile) const {
  int min = 0;
  int max = 0;
  m_device.Control(NBoard::eShutter)->GetRange(min, max);
  profile.ReadMaxShutterForFast(max);
  return max;
}

void CameraControls::ReadWhiteBalance(const IProfile& profile) {
  if (!HasWhiteBalance()) return;
  const auto read = [&](NBoard::WBVALUE index, int otherwise) {
    return ReadInteger(profile, NBoard::WBValueString(index)).value_or(otherwise);
  };
  constexpr Balance kBalanced;
  SetWhiteBalanceBlue(read(NBoard::eColorBlue, kBalanced.blue), true);
  SetWhiteBalanceRed(read(NBoard::eColorRed, kBalanced.red), true);
  m_mono_balance = {read(NBoard::eMonoBlue, kBalanced.blue), read(NBoard::eMonoRed, kBalanced.red)};
}

bool CameraControls::HasWhiteBalance() const {
  const BImagingDeviceControl* red = m_device.Control(NBoard::eWhiteBalanceRed);
  const BImagingDeviceControl* blue = m_device.Control(NBoard::eWhiteBalanceBlue);
  return red && blue && red->IsAvailable() && blue->IsAvailable();
}

bool CameraControls::SetWhiteBalanceBlue(int value, bool color) {
  return SetBalance(m_device.Control(NBoard::eWhiteBalanceBlue), &Balance::blue, value, color);
}

bool CameraControls::SetWhiteBalanceRed(int value, bool color) {
  return SetBalance(m_device.Control(NBoard::eWhiteBalanceRed), &Balance::red, value, color);
}

bool CameraControls::SetBalance(BImagingDeviceControl* control, int Balance::*part, int value, bool color) {
  const bool set = control && control->SetValue(value);
  m_current_balance.*part = value;
  if (color) m_color_balance.*part = value;
  return set;
}

void CameraControls::RestoreWhiteBalance(bool color) {
  const Balance balance = color ? m_color_balance : m_mono_balance;
  if (m_current_balance.blue != balance.blue) SetWhiteBalanceBlue(balance.blue, color);
  if (m_current_balance.red != balance.red) SetWhiteBalanceRed(balance.red, color);
}

void CameraControls::SaveWhiteBalance(BCamProfile& profile) const {
  if (!HasWhiteBalance()) return;
  profile.GoToRoot();
  const auto save = [&](NBoard::WBVALUE index, int value) {
    const WString key = NBoard::WBValueString(index);
    if (ReadInteger(profile, key) != value) profile.Write(key, WString::Format(L"%d", value));
  };
  save(NBoard::eColorBlue, m_color_balance.blue);
  save(NBoard::eColorRed, m_color_balance.red);
}
