// control_types.cpp
// The control types that the driver serves: their features, their units and what both are worth.
#include "controls/control_types.h"

#include <array>
#include <cmath>
#include <limits>

#include "vimba/feature_names.h"

namespace {

constexpr double kNoCap = std::numeric_limits<double>::max();

constexpr std::array<ControlType, 6> kControlTypes{{
    {NBoard::eGain, Feature::kGain, nullptr, nullptr, Feature::kGainAuto, "Off", 0.0, 10.0, 0.0, kNoCap, L"[x]"},
    {NBoard::eShutter, Feature::kExposureTimeAbs, nullptr, nullptr, Feature::kExposureMode, "Timed", 0.0, 2'000'000.0,
     10'000.0, 2'000'000.0, L"[ms]"},
    {NBoard::eWhiteBalanceRed, Feature::kBalanceRatioAbs, Feature::kBalanceRatioSelector, "Red",
     Feature::kBalanceWhiteAuto, "Off", 1.0, 1.0, 1.0, kNoCap, L""},
    {NBoard::eWhiteBalanceBlue, Feature::kBalanceRatioAbs, Feature::kBalanceRatioSelector, "Blue",
     Feature::kBalanceWhiteAuto, "Off", 1.0, 1.0, 1.0, kNoCap, L""},
    {NBoard::eTemperatureSensor, Feature::kDeviceTemperature, Feature::kDeviceTemperatureSelector, "Sensor", nullptr,
     nullptr, 0.0, 0.0, 0.0, kNoCap, L""},
    {NBoard::eTemperatureMain, Feature::kDeviceTemperature, Feature::kDeviceTemperatureSelector, "Main", nullptr,
     nullptr, 0.0, 0.0, 0.0, kNoCap, L""},
}};

int TruncatedToInt(double value) {
  if (std::isnan(value)) return 0;
  if (value >= static_cast<double>(std::numeric_limits<int>::max())) return std::numeric_limits<int>::max();
  if (value <= static_cast<double>(std::numeric_limits<int>::min())) return std::numeric_limits<int>::min();
  return static_cast<int>(value);
}

}  // namespace

const ControlType* FindControlType(int type) {
  for (const ControlType& row : kControlTypes) {
    if (row.type == type) return &row;
  }
  return nullptr;
}

int FeatureToInteger(int type, double value) {
  switch (type) {
    case NBoard::eWhiteBalanceRed:
    case NBoard::eWhiteBalanceBlue:
      return TruncatedToInt(value * 100.0);
    case NBoard::eShutter:
      return TruncatedToInt(value / 100.0);
    case NBoard::eTemperatureSensor:
    case NBoard::eTemperatureMain:
      return TruncatedToInt(value * 10.0);
    default:
      return TruncatedToInt(value);
  }
}

double IntegerToFeature(int type, int value) {
  switch (type) {
    case NBoard::eWhiteBalanceRed:
    case NBoard::eWhiteBalanceBlue:
      return value / 100.0;
    case NBoard::eShutter:
      return value * 100.0;
    case NBoard::eTemperatureSensor:
    case NBoard::eTemperatureMain:
      return std::trunc(value / 10.0);
    default:
      return value;
  }
}

double IntegerToReal(int type, int value) {
  switch (type) {
    case NBoard::eGain:
      return std::pow(10.0, value / 20.0);  // decibels of an amplitude
    case NBoard::eShutter:
      return value / 10.0;  // milliseconds
    default:
      return IntegerToFeature(type, value);
  }
}

int RealToInteger(int type, double value) {
  switch (type) {
    case NBoard::eGain:
      return TruncatedToInt(20.0 * std::log10(value));
    case NBoard::eShutter:
      return TruncatedToInt(value * 10.0);
    default:
      return FeatureToInteger(type, value);
  }
}

const wchar_t* UnitOfControl(int type) {
  if (type == NBoard::eBrightness) return L"[%]";
  const ControlType* row = FindControlType(type);
  return row ? row->unit : L"";
}
