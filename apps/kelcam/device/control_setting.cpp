// control_setting.cpp
// "--set CONTROL=VALUE": what it asks for, and how a device gets it.
#include "device/control_setting.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iostream>
#include <tuple>

#include "base/failure.h"
#include "base/utf8.h"

namespace Kelcam {
namespace {

// Units that stand for another of the control's, and what to write for a fraction without a unit.
struct UnitRow {
  const char* control;
  const char* unit;
  const char* stands_for;  // empty: the integer unit
  double factor;
};
constexpr UnitRow kUnits[] = {{kExposure, "s", "ms", 1000.0}, {kGain, "dB", "", 1.0}};

struct StepRow {
  const char* control;
  const char* unit;        // the real one, behind the number
  double integers_a_unit;  // 0: the number does not tell the integer
  const char* step;
};
constexpr StepRow kSteps[] = {{kExposure, "ms", 10.0, "0.1 ms"},
                              {kGain, "x", 0.0, "1 dB"},
                              {kWhiteBalanceRed, "", 100.0, "0.01"},
                              {kWhiteBalanceBlue, "", 100.0, "0.01"}};

// "write 12.5ms, or 125 (steps of 0.1 ms)"
std::string WhatToWriteFor(const ControlSetting& setting) {
  const auto& row = *std::find_if(std::begin(kSteps), std::end(kSteps),
                                  [&](const StepRow& candidate) { return setting.control == candidate.control; });
  const bool has_unit = *row.unit != '\0';
  std::string advice = "write ";
  if (has_unit) advice += setting.text + row.unit;
  if (row.integers_a_unit > 0.0) {
    const double integers = std::clamp(std::round(setting.number * row.integers_a_unit), -1e9, 1e9);
    if (has_unit) advice += ", or ";
    advice += std::to_string(static_cast<int>(integers));
  }
  return advice + " (steps of " + row.step + ")";
}

std::string KnownControls() {
  std::string names;
  for (const char* name : kSettableControls) names += (names.empty() ? "" : ", ") + std::string(name);
  return names;
}

}  // namespace

ControlSetting ParseControlSetting(const std::string& text) {
  const std::size_t equals = text.find('=');
  if (equals == std::string::npos) throw UsageError("--set " + text + ": not of the form CONTROL=VALUE");
  ControlSetting setting{text.substr(0, equals), text.substr(equals + 1), 0.0, {}};
  if (std::find(kSettableControls.begin(), kSettableControls.end(), setting.control) == kSettableControls.end()) {
    throw UsageError("--set " + text + ": unknown control \"" + setting.control + "\", not one of " + KnownControls());
  }
  const char* begin = setting.text.data();
  const char* end = begin + setting.text.size();
  const auto [rest, error] = std::from_chars(begin, end, setting.number);
  if (error != std::errc() || !std::isfinite(setting.number)) {
    throw UsageError("--set " + text + ": \"" + setting.text + "\" does not begin with a number");
  }
  setting.unit.assign(rest, end);
  for (const UnitRow& row : kUnits) {
    if (setting.control != row.control || setting.unit != row.unit) continue;
    setting.number *= row.factor;
    setting.unit = std::string(row.stands_for);
    if (setting.unit.empty() && setting.number != std::trunc(setting.number)) {
      throw UsageError("--set " + text + ": only whole " + row.unit);
    }
    break;
  }
  if (setting.unit.empty() && setting.number != std::trunc(setting.number)) {
    throw UsageError("--set " + text + ": a number without a unit must be whole; " + WhatToWriteFor(setting));
  }
  return setting;
}

std::string UnitOf(const BImagingDeviceControl& control) {
  std::string unit = Utf8(control.UnitString());
  std::erase_if(unit, [](char c) { return c == '[' || c == ']'; });
  return unit;
}

namespace {

// Clamps in floating point: a value far outside may not even fit an integer.
int WithinRange(const ControlSetting& setting, double wanted, int min, int max, bool wants_notice) {
  const int value = static_cast<int>(std::clamp(wanted, static_cast<double>(min), static_cast<double>(max)));
  if (wants_notice && (wanted < min || wanted > max)) {
    std::cerr << "notice: " << setting.control << "=" << setting.text << " is outside the camera's range (" << min
              << " to " << max << " in the control's integer unit); set to " << value << "\n";
  }
  return value;
}

void CheckUnit(const ControlSetting& setting, const std::string& unit) {
  if (setting.unit.empty() || setting.unit == unit) return;
  throw UsageError("--set " + setting.control + "=" + setting.text + ": wrong unit \"" + setting.unit + "\"; " +
                   (unit.empty() ? setting.control + " has none" : "the unit of " + setting.control + " is " + unit));
}

void ApplyToControl(const ControlSetting& setting, BImagingDeviceControl* control, bool wants_notice) {
  if (!control || !control->IsAvailable()) throw UsageError("this camera has no control \"" + setting.control + "\"");
  CheckUnit(setting, UnitOf(*control));
  int min = 0;
  int max = 0;
  std::ignore = control->GetRange(min, max);
  double wanted = setting.number;
  if (!setting.unit.empty()) {
    const double real_min = control->ToRealValue(min);
    const double real_max = control->ToRealValue(max);
    // Only what lies within the range survives the conversion to an integer; what lies outside only has to stay
    // outside.
    wanted = setting.number < real_min   ? min - 1.0
             : setting.number > real_max ? max + 1.0
                                         : control->FromRealValue(setting.number);
  }
  if (!control->SetValue(WithinRange(setting, wanted, min, max, wants_notice))) {
    throw Failure("the camera refused " + setting.control + "=" + setting.text);
  }
}

void ApplyToWhiteBalance(const ControlSetting& setting, BImagingDevice& device, bool color, bool wants_notice) {
  if (!device.HasWhiteBalance()) throw UsageError("this camera has no control \"" + setting.control + "\"");
  CheckUnit(setting, {});
  int min = 0;
  int max = 0;
  std::ignore = device.WhiteBalanceRange(min, max);
  const int value = WithinRange(setting, setting.number, min, max, wants_notice);
  const bool done = setting.control == kWhiteBalanceRed ? device.SetWhiteBalanceRed(value, color)
                                                        : device.SetWhiteBalanceBlue(value, color);
  if (!done) throw Failure("the camera refused " + setting.control + "=" + setting.text);
}

}  // namespace

void ApplyControlSetting(const ControlSetting& setting, BImagingDevice& device, bool color, bool wants_notice) {
  if (setting.control == kGain) {
    ApplyToControl(setting, device.GainControl(), wants_notice);
  } else if (setting.control == kExposure) {
    ApplyToControl(setting, device.ShutterControl(), wants_notice);
  } else {
    ApplyToWhiteBalance(setting, device, color, wants_notice);
  }
}

}  // namespace Kelcam
