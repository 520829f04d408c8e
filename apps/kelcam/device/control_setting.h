// control_setting.h
// "--set CONTROL=VALUE": what it asks for, and how a device gets it.
#pragma once

#include <array>
#include <string>

#include "bimagingdevice.h"

namespace Kelcam {

// The controls that can be set, by the names of the command line.
inline constexpr const char* kGain = "gain";
inline constexpr const char* kExposure = "exposure";
inline constexpr const char* kWhiteBalanceRed = "wbred";
inline constexpr const char* kWhiteBalanceBlue = "wbblue";
inline constexpr std::array kSettableControls = {kGain, kExposure, kWhiteBalanceRed, kWhiteBalanceBlue};

// "gain=12" and "gain=12dB" are in the control's integer unit; "gain=4x" names the control's real unit, and
// "exposure=2s" one that stands for it.
struct ControlSetting {
  std::string control;  // one of kSettableControls
  std::string text;     // the value as it was written
  double number = 0.0;
  std::string unit;  // empty: the integer unit
};

// Throws UsageError that names the unknown control or the bad number.
ControlSetting ParseControlSetting(const std::string& text);

// Throws UsageError when the camera has no such control or the unit is not the control's, Failure when the camera
// refuses the value. A value outside the control's range becomes the nearest one within, with a notice. `color`: a
// white balance is the one of colour mode.
void ApplyControlSetting(const ControlSetting& setting, BImagingDevice& device, bool color, bool wants_notice = true);

// "ms" for a control whose unit text is "[ms]".
std::string UnitOf(const BImagingDeviceControl& control);

}  // namespace Kelcam
