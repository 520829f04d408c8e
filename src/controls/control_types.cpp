// control_types.cpp
// The control types that the driver serves: their features, their units and what both are worth.
#include "controls/control_types.h"

#include <array>
#include <cmath>

#include "vimba/feature_names.h"

namespace {

// Exposures beyond this are refused, whatever the camera allows.
constexpr double kLongestExposureUs = 2'000'000.0;

constexpr std::array<ControlType, 6> kCreated{{
    {.type = NBoard::eGain,
     .feature = Feature::kGain,
     .automatic = Feature::kGainAuto,
     .automatic_entry = FeatureEntry::kOff,
     .fallback_max = 10.0,
     .is_decibels = true,
     .unit = L"[x]"},
    {.type = NBoard::eShutter,
     .feature = Feature::kExposureTimeAbs,
     .automatic = Feature::kExposureMode,
     .automatic_entry = FeatureEntry::kTimed,
     .fallback_max = kLongestExposureUs,
     .default_value = 10'000.0,
     .max_cap = kLongestExposureUs,
     .feature_to_integer = {.over = 100.0},
     .real_to_integer = {.times = 10.0},
     .unit = L"[ms]"},
    {.type = NBoard::eWhiteBalanceRed,
     .feature = Feature::kBalanceRatioAbs,
     .selector = Feature::kBalanceRatioSelector,
     .selector_entry = FeatureEntry::kRed,
     .automatic = Feature::kBalanceWhiteAuto,
     .automatic_entry = FeatureEntry::kOff,
     .color_only = true,
     .fallback_min = 1.0,
     .fallback_max = 1.0,
     .default_value = 1.0,
     .feature_to_integer = {.times = 100.0},
     .real_to_integer = {.times = 100.0}},
    {.type = NBoard::eWhiteBalanceBlue,
     .feature = Feature::kBalanceRatioAbs,
     .selector = Feature::kBalanceRatioSelector,
     .selector_entry = FeatureEntry::kBlue,
     .automatic = Feature::kBalanceWhiteAuto,
     .automatic_entry = FeatureEntry::kOff,
     .color_only = true,
     .fallback_min = 1.0,
     .fallback_max = 1.0,
     .default_value = 1.0,
     .feature_to_integer = {.times = 100.0},
     .real_to_integer = {.times = 100.0}},
    {.type = NBoard::eTemperatureSensor,
     .feature = Feature::kDeviceTemperature,
     .selector = Feature::kDeviceTemperatureSelector,
     .selector_entry = FeatureEntry::kSensor,
     .feature_to_integer = {.times = 10.0},
     .real_to_integer = {.times = 10.0},
     .is_whole_units = true},
    {.type = NBoard::eTemperatureMain,
     .feature = Feature::kDeviceTemperature,
     .selector = Feature::kDeviceTemperatureSelector,
     .selector_entry = FeatureEntry::kMain,
     .feature_to_integer = {.times = 10.0},
     .real_to_integer = {.times = 10.0},
     .is_whole_units = true},
}};

// A host may ask for its unit; no camera has it.
constexpr ControlType kBrightness{.type = NBoard::eBrightness, .unit = L"[%]"};
constexpr ControlType kNone{.type = NBoard::eOffset};

int TruncatedToInt(double value) {
  if (std::isnan(value)) return 0;
  if (value >= static_cast<double>(std::numeric_limits<int>::max())) return std::numeric_limits<int>::max();
  if (value <= static_cast<double>(std::numeric_limits<int>::min())) return std::numeric_limits<int>::min();
  return static_cast<int>(value);
}

}  // namespace

std::span<const ControlType> CreatedControlTypes() { return kCreated; }

const ControlType& ControlTypeOf(int type) {
  for (const ControlType& row : kCreated) {
    if (row.type == type) return row;
  }
  return type == NBoard::eBrightness ? kBrightness : kNone;
}

int ControlType::FeatureToInteger(double value) const { return TruncatedToInt(feature_to_integer.Apply(value)); }

double ControlType::IntegerToFeature(int value) const {
  const double feature_value = feature_to_integer.Revert(value);
  return is_whole_units ? std::trunc(feature_value) : feature_value;
}

double ControlType::IntegerToReal(int value) const {
  if (is_decibels) return std::pow(10.0, value / 20.0);
  const double real_value = real_to_integer.Revert(value);
  return is_whole_units ? std::trunc(real_value) : real_value;
}

int ControlType::RealToInteger(double value) const {
  if (is_decibels) return TruncatedToInt(20.0 * std::log10(value));
  return TruncatedToInt(real_to_integer.Apply(value));
}
