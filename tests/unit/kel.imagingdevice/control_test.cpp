// control_test.cpp
// What a control's operations make of one another.
#include <gtest/gtest.h>

#include <limits>
#include <utility>

#include "../table_place.h"
#include "bimagingdevicecontrol.h"

namespace {

// 0.5 real units to the integer, or minus that.
class HalfSteps : public BImagingDeviceControl {
 public:
  static constexpr int kFirstValue = 7;

  explicit HalfSteps(double step = 0.5) : BImagingDeviceControl(NBoard::eShutter), m_step(step) {}

  int Value() override { return m_value; }
  bool SetValue(int value) override {
    m_value = value;
    return holds;
  }
  void SetMinValue(int) override {}
  void SetMaxValue(int) override {}
  void SetDefaultValue(int) override {}
  bool GetRange(int& min, int& max) override {
    min = -20;
    max = 100;
    return has_range;
  }
  bool SetToDefault() override { return SetValue(0); }
  bool IsAvailable() const override { return true; }
  WString UnitString() const override { return L"[ms]"; }
  double ToRealValue(int value) const override { return value * m_step; }
  int FromRealValue(double value) const override { return static_cast<int>(value / m_step); }

  bool holds = true;
  bool has_range = true;

 private:
  double m_step;
  int m_value = kFirstValue;
};

TEST(Control, KnowsItsType) { EXPECT_EQ(HalfSteps().Type(), NBoard::eShutter); }

TEST(Control, TakesItsEndsFromItsRange) {
  HalfSteps control;

  EXPECT_EQ(control.MinValue(), -20);
  EXPECT_EQ(control.MaxValue(), 100);
}

TEST(Control, HasItsEndsAtZeroWithoutARange) {
  HalfSteps control;
  control.has_range = false;

  EXPECT_EQ(control.MinValue(), 0);
  EXPECT_EQ(control.MaxValue(), 0);
}

TEST(Control, ConvertsItsValue) {
  HalfSteps control;
  EXPECT_EQ(control.GetRealValue(), 3.5);

  EXPECT_TRUE(control.SetRealValue(12.5));

  EXPECT_EQ(control.Value(), 25);
  EXPECT_EQ(control.GetRealValue(), 12.5);
}

TEST(Control, ReportsWhenTheCameraDoesNotHoldARealValue) {
  HalfSteps control;
  control.holds = false;

  EXPECT_FALSE(control.SetRealValue(1.0));
}

TEST(Control, RefusesWhatIsNoFiniteNumber) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  for (const double value : {kInfinity, -kInfinity, std::numeric_limits<double>::quiet_NaN()}) {
    HalfSteps control;

    EXPECT_FALSE(control.SetRealValue(value));

    EXPECT_EQ(control.Value(), HalfSteps::kFirstValue);
  }
}

std::pair<double, double> RealRange(HalfSteps&& control) {
  double min = -1, max = -1;
  const bool there = control.GetRealRange(min, max);
  EXPECT_EQ(there, control.has_range);
  return {min, max};
}

TEST(Control, ConvertsItsRange) { EXPECT_EQ(RealRange(HalfSteps()), (std::pair{-10.0, 50.0})); }

TEST(Control, PutsTheSmallerEndFirstWhenTheRealUnitRunsBackwards) {
  EXPECT_EQ(RealRange(HalfSteps(-0.5)), (std::pair{-50.0, 10.0}));
}

TEST(Control, LeavesTheArgumentsAloneWithoutARange) {
  HalfSteps control;
  control.has_range = false;

  EXPECT_EQ(RealRange(std::move(control)), (std::pair{-1.0, -1.0}));
}

TEST(Control, KeepsItsOperationsInTableOrder) {
  using Control = BImagingDeviceControl;
  const std::vector<std::size_t> places = {
      TablePlace(&Control::Value),         TablePlace(&Control::SetValue),        TablePlace(&Control::SetMinValue),
      TablePlace(&Control::SetMaxValue),   TablePlace(&Control::SetDefaultValue), TablePlace(&Control::MinValue),
      TablePlace(&Control::MaxValue),      TablePlace(&Control::GetRange),        TablePlace(&Control::SetToDefault),
      TablePlace(&Control::IsAvailable),   TablePlace(&Control::UnitString),      TablePlace(&Control::ToRealValue),
      TablePlace(&Control::FromRealValue), TablePlace(&Control::GetRealValue),    TablePlace(&Control::SetRealValue),
      TablePlace(&Control::GetRealRange)};

  EXPECT_EQ(places, (std::vector<std::size_t>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15}));
}

}  // namespace
