// control_types_test.cpp
// The table of control types: features, units and conversions.
#include "controls/control_types.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

namespace {

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
      {0, "Gain", nullptr, nullptr, "GainAuto", "Off"},
      {1, "BalanceRatioAbs", "BalanceRatioSelector", "Red", "BalanceWhiteAuto", "Off"},
      {3, "BalanceRatioAbs", "BalanceRatioSelector", "Blue", "BalanceWhiteAuto", "Off"},
      {4, "ExposureTimeAbs", nullptr, nullptr, "ExposureMode", "Timed"},
      {8, "DeviceTemperature", "DeviceTemperatureSelector", "Sensor", nullptr, nullptr},
      {9, "DeviceTemperature", "DeviceTemperatureSelector", "Main", nullptr, nullptr},
  };
  for (const Row& row : rows) {
    const ControlType* type = FindControlType(row.type);
    ASSERT_NE(nullptr, type) << row.type;
    EXPECT_EQ(row.type, type->type);
    EXPECT_EQ(Text(row.feature), Text(type->feature));
    EXPECT_EQ(Text(row.selector), Text(type->selector));
    EXPECT_EQ(Text(row.selector_entry), Text(type->selector_entry));
    EXPECT_EQ(Text(row.automatic), Text(type->automatic));
    EXPECT_EQ(Text(row.automatic_entry), Text(type->automatic_entry));
  }
}

TEST(ControlTypes, EachHasARangeForACameraThatDoesNotTell) {
  struct Row {
    int type;
    double min, max, default_value, cap;
  };
  const Row rows[] = {{0, 0.0, 10.0, 0.0, kNoCap}, {1, 1.0, 1.0, 1.0, kNoCap},
                      {3, 1.0, 1.0, 1.0, kNoCap},  {4, 0.0, 2'000'000.0, 10'000.0, 2'000'000.0},
                      {8, 0.0, 0.0, 0.0, kNoCap},  {9, 0.0, 0.0, 0.0, kNoCap}};
  for (const Row& row : rows) {
    const ControlType* type = FindControlType(row.type);
    ASSERT_NE(nullptr, type) << row.type;
    EXPECT_EQ(row.min, type->fallback_min) << row.type;
    EXPECT_EQ(row.max, type->fallback_max) << row.type;
    EXPECT_EQ(row.default_value, type->default_value) << row.type;
    EXPECT_EQ(row.cap, type->max_cap) << row.type;
  }
}

TEST(ControlTypes, NoOtherTypeIsServed) {
  for (const int type : {2, 5, 6, 7, 10, -1, kHighest, kLowest}) EXPECT_EQ(nullptr, FindControlType(type)) << type;
}

TEST(ControlTypes, EachHasItsUnit) {
  struct Row {
    int type;
    const wchar_t* unit;
  };
  const Row rows[] = {{0, L"[x]"}, {1, L""}, {2, L""}, {3, L""}, {4, L"[ms]"}, {5, L"[%]"},
                      {6, L""},    {7, L""}, {8, L""}, {9, L""}, {10, L""},    {-1, L""}};
  for (const Row& row : rows) EXPECT_EQ(std::wstring(row.unit), UnitOfControl(row.type)) << row.type;
}

TEST(ControlTypes, AFeatureValueBecomesAnIntegerCutOffTowardZero) {
  struct Row {
    int type, integer;
    double value;
  };
  const Row rows[] = {{0, 20, 20.0},    {0, 9, 9.99},    {0, -9, -9.99}, {1, 150, 1.5},      {1, 299, 2.999},
                      {1, -99, -0.999}, {3, 25, 0.25},   {3, 800, 8.0},  {4, 100, 10'000.0}, {4, 0, 99.9},
                      {4, 20'000, 2e6}, {4, -2, -250.0}, {5, 7, 7.9},    {8, 366, 36.65},    {8, -32, -3.25},
                      {9, 510, 51.0},   {9, 0, -0.09},   {2, 3, 3.9},    {7, -3, -3.9}};
  for (const Row& row : rows)
    EXPECT_EQ(row.integer, FeatureToInteger(row.type, row.value)) << row.type << " " << row.value;
}

TEST(ControlTypes, AnIntegerBecomesAFeatureValue) {
  struct Row {
    int type, integer;
    double value;
  };
  const Row rows[] = {{0, 20, 20.0},
                      {0, -3, -3.0},
                      {1, 150, 1.5},
                      {1, -1, -0.01},
                      {3, 25, 0.25},
                      {3, 0, 0.0},
                      {4, 100, 10'000.0},
                      {4, 1, 100.0},
                      {5, 7, 7.0},
                      {8, 366, 36.0},
                      {8, -39, -3.0},
                      {9, 510, 51.0},
                      {9, 9, 0.0},
                      {2, 3, 3.0},
                      {4, kHighest, kHighest * 100.0},
                      {0, kLowest, -2147483648.0}};
  for (const Row& row : rows)
    EXPECT_EQ(row.value, IntegerToFeature(row.type, row.integer)) << row.type << " " << row.integer;
}

TEST(ControlTypes, AnIntegerBecomesARealValueInTheUnitThatAPersonReads) {
  struct Row {
    int type, integer;
    double real;
  };
  const Row rows[] = {{0, 0, 1.0},   {0, 20, 10.0}, {0, 40, 100.0}, {0, -20, 0.1},  {4, 100, 10.0}, {4, 1, 0.1},
                      {1, 150, 1.5}, {3, 25, 0.25}, {8, 366, 36.0}, {9, -39, -3.0}, {5, 7, 7.0},    {6, -7, -7.0}};
  for (const Row& row : rows)
    EXPECT_DOUBLE_EQ(row.real, IntegerToReal(row.type, row.integer)) << row.type << " " << row.integer;
}

TEST(ControlTypes, ARealValueBecomesAnIntegerCutOffTowardZero) {
  struct Row {
    int type, integer;
    double real;
  };
  const Row rows[] = {{0, 0, 1.0},     {0, 20, 10.0},  {0, 6, 2.0},     {0, -6, 0.5},  {4, 100, 10.0},
                      {4, 1, 0.19},    {4, -1, -0.19}, {1, 150, 1.509}, {3, 25, 0.25}, {8, 366, 36.65},
                      {9, -32, -3.25}, {5, 7, 7.9},    {6, -7, -7.9}};
  for (const Row& row : rows) EXPECT_EQ(row.integer, RealToInteger(row.type, row.real)) << row.type << " " << row.real;
}

TEST(ControlTypes, ConversionsStopAtTheEndsOfTheIntegerRange) {
  for (int type = 0; type <= 9; ++type) {
    for (const double value : {kInfinity, 1e300}) {
      EXPECT_EQ(kHighest, FeatureToInteger(type, value)) << type;
      EXPECT_EQ(kLowest, FeatureToInteger(type, -value)) << type;
    }
    EXPECT_EQ(0, FeatureToInteger(type, kNan)) << type;
    EXPECT_EQ(0, RealToInteger(type, kNan)) << type;
    EXPECT_EQ(kHighest, RealToInteger(type, kInfinity)) << type;
  }
}

TEST(ControlTypes, AGainFactorWithoutALogarithmGivesTheLowestDecibelsOrNone) {
  EXPECT_EQ(kLowest, RealToInteger(0, 0.0));
  EXPECT_EQ(0, RealToInteger(0, -1.0));
}

TEST(ControlTypes, TheLastIntegersAreStillExact) {
  EXPECT_EQ(kHighest, FeatureToInteger(0, 2147483647.0));
  EXPECT_EQ(kHighest, FeatureToInteger(0, 2147483648.0));
  EXPECT_EQ(kHighest - 1, FeatureToInteger(0, 2147483646.9));
  EXPECT_EQ(kLowest, FeatureToInteger(0, -2147483648.0));
  EXPECT_EQ(kLowest + 1, FeatureToInteger(0, -2147483647.9));
}

}  // namespace
