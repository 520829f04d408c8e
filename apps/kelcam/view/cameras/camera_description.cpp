// camera_description.cpp
// What a device says of itself, as pages show it.
#include "view/cameras/camera_description.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <tuple>

#include "base/failure.h"
#include "base/report.h"
#include "device/control_setting.h"

namespace Kelcam {
namespace {

constexpr const char* kFastConversion = "[l]";
constexpr const char* kGainUnit = "dB";
constexpr double kWhiteBalanceUnit = 100.0;
// Of a degree.
constexpr double kTemperatureSteps = 10.0;
constexpr std::string_view kRateRange = "StreamBytesPerSecond by profile = ";

constexpr std::pair<const char*, TriggerChoice> kTriggers[] = {
    {"software", TriggerChoice::kSoftware}, {"line", TriggerChoice::kLine}, {"free", TriggerChoice::kFree}};

// In whole decibels: those are its steps, and the factor has none of its own.
void AddGain(std::vector<ControlState>& controls, BImagingDeviceControl* gain) {
  if (!gain || !gain->IsAvailable()) return;
  int minimum = 0;
  int maximum = 0;
  std::ignore = gain->GetRange(minimum, maximum);
  const int value = gain->Value();
  ControlState state{kGain, "Gain", kGainUnit, static_cast<double>(minimum), static_cast<double>(maximum)};
  state.value = value;
  state.value_text =
      std::to_string(value) + " " + kGainUnit + " = " + Fixed(gain->ToRealValue(value), 1) + UnitOf(*gain);
  controls.push_back(state);
}

// In its real unit. A scale of powers has no zero.
void AddExposure(std::vector<ControlState>& controls, BImagingDeviceControl* exposure) {
  if (!exposure || !exposure->IsAvailable()) return;
  int minimum = 0;
  int maximum = 0;
  std::ignore = exposure->GetRange(minimum, maximum);
  ControlState state{kExposure, "Exposure", UnitOf(*exposure)};
  state.step = maximum > minimum ? exposure->ToRealValue(minimum + 1) - exposure->ToRealValue(minimum) : 0.0;
  state.minimum = std::max(exposure->ToRealValue(minimum), state.step);
  state.maximum = exposure->ToRealValue(maximum);
  state.value = exposure->ToRealValue(exposure->Value());
  state.value_text = Fixed(state.value, 1) + " " + state.unit;
  state.is_logarithmic = true;
  controls.push_back(state);
}

void AddWhiteBalance(std::vector<ControlState>& controls, BImagingDevice& device) {
  int minimum = 0;
  int maximum = 0;
  if (!device.HasWhiteBalance() || !device.WhiteBalanceRange(minimum, maximum)) return;
  const auto add = [&](const char* name, const char* label, int value) {
    ControlState state{name, label, "", static_cast<double>(minimum), static_cast<double>(maximum)};
    state.value = value;
    state.value_text = Fixed(value / kWhiteBalanceUnit, 2);
    controls.push_back(state);
  };
  add(kWhiteBalanceRed, "Red balance", device.ColorRedBalance());
  add(kWhiteBalanceBlue, "Blue balance", device.ColorBlueBalance());
}

}  // namespace

// The white balance that a camera reports is the one of colour mode.
std::vector<ControlState> ControlsOf(BImagingDevice& device, bool color) {
  std::vector<ControlState> controls;
  AddExposure(controls, device.ShutterControl());
  AddGain(controls, device.GainControl());
  if (color) AddWhiteBalance(controls, device);
  return controls;
}

std::vector<Temperature> TemperaturesOf(BImagingDevice& device) {
  std::vector<Temperature> temperatures;
  for (const bool is_sensor : {true, false}) {
    BImagingDeviceControl* const control = device.TemperatureControl(is_sensor);
    if (!control || !control->IsAvailable()) continue;
    temperatures.push_back({is_sensor ? "sensor" : "board", control->Value() / kTemperatureSteps});
  }
  return temperatures;
}

StreamRateState StreamRateRangeIn(const MessageMemory& messages) {
  StreamRateState rate{0, 1, std::numeric_limits<std::int32_t>::max()};
  for (const std::string& line : LinesOf(messages.MessagesSince(0))) {
    if (!line.starts_with(kRateRange)) continue;
    const char* const end = line.data() + line.size();
    std::int64_t minimum = 0;
    std::int64_t maximum = 0;
    const auto first = std::from_chars(line.data() + kRateRange.size(), end, minimum);
    const char* const second = std::find_if(first.ptr, end, [](char c) { return c >= '0' && c <= '9'; });
    if (first.ec != std::errc() || std::from_chars(second, end, maximum).ec != std::errc()) continue;
    rate.minimum_bytes_per_s = minimum;
    rate.maximum_bytes_per_s = maximum;
  }
  return rate;
}

std::string NameOf(TriggerChoice choice) {
  return std::find_if(std::begin(kTriggers), std::end(kTriggers), [&](const auto& row) { return row.second == choice; })
      ->first;
}

std::vector<std::string> TriggersOf(BImagingDevice& device) {
  if (!device.Trigger()) return {};
  std::vector<std::string> names;
  for (const auto& [name, choice] : kTriggers) names.emplace_back(name);
  return names;
}

TriggerChoice TriggerOf(const std::string& name) {
  for (const auto& [known, choice] : kTriggers) {
    if (name == known) return choice;
  }
  throw UsageError("there is no trigger \"" + name + "\", but software, line and free");
}

std::string AreaTextOf(const Options& options) {
  return options.area_text.empty() ? kFastConversion : options.area_text;
}

}  // namespace Kelcam
