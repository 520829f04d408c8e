// control_types_test.cpp
// The table of control types: features, units and conversions.
#include "controls/control_types.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

namespace {

using namespace NBoard;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kNoCap = std::numeric_limits<double>::max();
constexpr int kHighest = std::numeric_limits<int>::max();
constexpr int kLowest = std::numeric_limits<int>::min();

std::string Text(const char* text) { return text ? text : "(none)"; }

TEST(ControlTypes, EachNamesItsFeatures) {
  struct Row {
    int type;
    const char *feature, *selector, *selector_entry, *automatic, *automatic_entry;
  };
  const Row rows[] = {
      {eGain, "Gain", nullptr, nullptr, "GainAuto", "Off"},
      {eWhiteBalanceRed, "BalanceRatioAbs", "BalanceRatioSelector", "Red", "BalanceWhiteAuto", "Off"},
      {eWhiteBalanceBlue, "BalanceRatioAbs", "BalanceRatioSelector", "Blue", "BalanceWhiteAuto", "Off"},
      {eShutter, "ExposureTimeAbs", nullptr, nullptr, "ExposureMode", "Timed"},
      {eTemperatureSensor, "DeviceTemperature", "DeviceTemperatureSelector", "Sensor", nullptr, nullptr},
      {eTemperatureMain, "DeviceTemperature", "DeviceTemperatureSelector", "Main", nullptr, nullptr},
  };
  for (const Row& row : rows) {
    const ControlType& type = ControlTypeOf(row.type);
    EXPECT_EQ(type.type, row.type);
    EXPECT_EQ(Text(type.feature), Text(row.feature));
    EXPECT_EQ(Text(type.selector), Text(row.selector));
    EXPECT_EQ(Text(type.selector_entry), Text(row.selector_entry));
    EXPECT_EQ(Text(type.automatic), Text(row.automatic));
    EXPECT_EQ(Text(type.automatic_entry), Text(row.automatic_entry));
  }
}

TEST(ControlTypes, EachHasARangeForACameraThatReportsNone) {
  struct Row {
    int type;
    double min, max, default_value, cap;
  };
  const Row rows[] = {{eGain, 0.0, 10.0, 0.0, kNoCap},
                      {eWhiteBalanceRed, 1.0, 1.0, 1.0, kNoCap},
                      {eWhiteBalanceBlue, 1.0, 1.0, 1.0, kNoCap},
                      {eShutter, 0.0, 2'000'000.0, 10'000.0, 2'000'000.0},
                      {eTemperatureSensor, 0.0, 0.0, 0.0, kNoCap},
                      {eTemperatureMain, 0.0, 0.0, 0.0, kNoCap}};
  for (const Row& row : rows) {
    const ControlType& type = ControlTypeOf(row.type);
    EXPECT_EQ(type.fallback_min, row.min) << row.type;
    EXPECT_EQ(type.fallback_max, row.max) << row.type;
    EXPECT_EQ(type.default_value, row.default_value) << row.type;
    EXPECT_EQ(type.max_cap, row.cap) << row.type;
  }
}

TEST(ControlTypes, NoOtherTypeIsServed) {
  constexpr int kOthers[] = {eWhiteBalanceGreen, eBrightness, eOffset, eGamma, kControlTypes, -1, kHighest, kLowest};
  for (const int type : kOthers) EXPECT_EQ(ControlTypeOf(type).feature, nullptr) << type;
}

TEST(ControlTypes, EachHasItsUnit) {
  struct Row {
    int type;
    const wchar_t* unit;
  };
  const Row rows[] = {{eGain, L"[x]"},
                      {eWhiteBalanceRed, L""},
                      {eWhiteBalanceGreen, L""},
                      {eWhiteBalanceBlue, L""},
                      {eShutter, L"[ms]"},
                      {eBrightness, L"[%]"},
                      {eOffset, L""},
                      {eGamma, L""},
                      {eTemperatureSensor, L""},
                      {eTemperatureMain, L""},
                      {10, L""},
                      {-1, L""}};
  for (const Row& row : rows) EXPECT_EQ(ControlTypeOf(row.type).unit, std::wstring(row.unit)) << row.type;
}

TEST(ControlTypes, AFeatureValueBecomesAnIntegerCutOffTowardZero) {
  struct Row {
    int type, integer;
    double value;
  };
  const Row rows[] = {{eGain, 20, 20.0},
                      {eGain, 9, 9.99},
                      {eGain, -9, -9.99},
                      {eWhiteBalanceRed, 150, 1.5},
                      {eWhiteBalanceRed, 299, 2.999},
                      {eWhiteBalanceRed, -99, -0.999},
                      {eWhiteBalanceBlue, 25, 0.25},
                      {eWhiteBalanceBlue, 800, 8.0},
                      {eShutter, 100, 10'000.0},
                      {eShutter, 0, 99.9},
                      {eShutter, 20'000, 2e6},
                      {eShutter, -2, -250.0},
                      {eBrightness, 7, 7.9},
                      {eTemperatureSensor, 366, 36.65},
                      {eTemperatureSensor, -32, -3.25},
                      {eTemperatureMain, 510, 51.0},
                      {eTemperatureMain, 0, -0.09},
                      {eWhiteBalanceGreen, 3, 3.9},
                      {eGamma, -3, -3.9}};
  for (const Row& row : rows)
    EXPECT_EQ(ControlTypeOf(row.type).FeatureToInteger(row.value), row.integer) << row.type << " " << row.value;
}

TEST(ControlTypes, AnIntegerBecomesAFeatureValue) {
  struct Row {
    int type, integer;
    double value;
  };
  const Row rows[] = {{eGain, 20, 20.0},
                      {eGain, -3, -3.0},
                      {eWhiteBalanceRed, 150, 1.5},
                      {eWhiteBalanceRed, -1, -0.01},
                      {eWhiteBalanceBlue, 25, 0.25},
                      {eWhiteBalanceBlue, 0, 0.0},
                      {eShutter, 100, 10'000.0},
                      {eShutter, 1, 100.0},
                      {eBrightness, 7, 7.0},
                      {eTemperatureSensor, 366, 36.0},
                      {eTemperatureSensor, -39, -3.0},
                      {eTemperatureMain, 510, 51.0},
                      {eTemperatureMain, 9, 0.0},
                      {eWhiteBalanceGreen, 3, 3.0},
                      {eShutter, kHighest, kHighest * 100.0},
                      {eGain, kLowest, -2147483648.0}};
  for (const Row& row : rows)
    EXPECT_EQ(ControlTypeOf(row.type).IntegerToFeature(row.integer), row.value) << row.type << " " << row.integer;
}

TEST(ControlTypes, AnIntegerBecomesARealValueInTheUnitThatAPersonReads) {
  struct Row {
    int type, integer;
    double real;
  };
  const Row rows[] = {{eGain, 0, 1.0},
                      {eGain, 20, 10.0},
                      {eGain, 40, 100.0},
                      {eGain, -20, 0.1},
                      {eShutter, 100, 10.0},
                      {eShutter, 1, 0.1},
                      {eWhiteBalanceRed, 150, 1.5},
                      {eWhiteBalanceBlue, 25, 0.25},
                      {eTemperatureSensor, 366, 36.0},
                      {eTemperatureMain, -39, -3.0},
                      {eBrightness, 7, 7.0},
                      {eOffset, -7, -7.0}};
  for (const Row& row : rows)
    EXPECT_DOUBLE_EQ(ControlTypeOf(row.type).IntegerToReal(row.integer), row.real) << row.type << " " << row.integer;
}

TEST(ControlTypes, ARealValueBecomesAnIntegerCutOffTowardZero) {
  struct Row {
    int type, integer;
    double real;
  };
  const Row rows[] = {{eGain, 0, 1.0},
                      {eGain, 20, 10.0},
                      {eGain, 6, 2.0},
                      {eGain, -6, 0.5},
                      {eShutter, 100, 10.0},
                      {eShutter, 1, 0.19},
                      {eShutter, -1, -0.19},
                      {eWhiteBalanceRed, 150, 1.509},
                      {eWhiteBalanceBlue, 25, 0.25},
                      {eTemperatureSensor, 366, 36.65},
                      {eTemperatureMain, -32, -3.25},
                      {eBrightness, 7, 7.9},
                      {eOffset, -7, -7.9}};
  for (const Row& row : rows)
    EXPECT_EQ(ControlTypeOf(row.type).RealToInteger(row.real), row.integer) << row.type << " " << row.real;
}

TEST(ControlTypes, ConversionsStopAtTheEndsOfTheIntegerRange) {
  for (int type = 0; type < kControlTypes; ++type) {
    for (const double value : {kInfinity, 1e300}) {
      EXPECT_EQ(ControlTypeOf(type).FeatureToInteger(value), kHighest) << type;
      EXPECT_EQ(ControlTypeOf(type).FeatureToInteger(-value), kLowest) << type;
    }
    EXPECT_EQ(ControlTypeOf(type).FeatureToInteger(kNan), 0) << type;
    EXPECT_EQ(ControlTypeOf(type).RealToInteger(kNan), 0) << type;
    EXPECT_EQ(ControlTypeOf(type).RealToInteger(kInfinity), kHighest) << type;
  }
}

TEST(ControlTypes, AGainFactorWithoutALogarithmGivesTheLowestDecibelsOrNone) {
  EXPECT_EQ(ControlTypeOf(eGain).RealToInteger(0.0), kLowest);
  EXPECT_EQ(ControlTypeOf(eGain).RealToInteger(-1.0), 0);
}

TEST(ControlTypes, TheLastIntegersAreStillExact) {
  EXPECT_EQ(ControlTypeOf(eGain).FeatureToInteger(2147483647.0), kHighest);
  EXPECT_EQ(ControlTypeOf(eGain).FeatureToInteger(2147483648.0), kHighest);
  EXPECT_EQ(ControlTypeOf(eGain).FeatureToInteger(2147483646.9), kHighest - 1);
  EXPECT_EQ(ControlTypeOf(eGain).FeatureToInteger(-2147483648.0), kLowest);
  EXPECT_EQ(ControlTypeOf(eGain).FeatureToInteger(-2147483647.9), kLowest + 1);
}

}  // namespace
