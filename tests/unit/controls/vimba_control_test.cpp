// vimba_control_test.cpp
// One control of an opened camera: its value, its range, its default, and its real units.
#include "controls/vimba_control.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "VimbaC.h"
#include "bstopwatch.h"
#include "support/open_camera_handle.h"
#include "unit/controls/control_cases.h"

namespace {

using Calls = std::vector<std::string>;

constexpr std::uint32_t kPauseMs = 20;

TEST(Temperature, IsReadLiveWithItsSourceSelectedAgain) {
  OpenCameraHandle camera(SimulatedCamera().With("temperature", {{"sensor", 36.65}, {"main", 51.0}}));
  BVimbaControl sensor(NBoard::eTemperatureSensor, camera.Handle());
  BVimbaControl board(NBoard::eTemperatureMain, camera.Handle());
  camera->ClearCalls();

  EXPECT_EQ(sensor.Value(), 366);
  EXPECT_EQ(board.Value(), 510);

  EXPECT_EQ(camera->Calls(), (Calls{R"(VmbFeatureEnumSet("DeviceTemperatureSelector", "Sensor"))",
                                    R"(VmbFeatureFloatGet("DeviceTemperature"))",
                                    R"(VmbFeatureEnumSet("DeviceTemperatureSelector", "Main"))",
                                    R"(VmbFeatureFloatGet("DeviceTemperature"))"}));
}

TEST(Temperature, ThatCannotBeSelectedOrReadIsUnavailableAndZero) {
  const std::pair<const char*, const char*> failures[] = {{"VmbFeatureEnumSet", "DeviceTemperatureSelector"},
                                                          {"VmbFeatureFloatGet", "DeviceTemperature"}};
  for (const NBoard::CONTROLTYPE type : kTemperatures) {
    for (const auto& [call, feature] : failures) {
      OpenCameraHandle camera;
      camera->FailCall(call, feature, VmbErrorNotFound);
      BVimbaControl control(type, camera.Handle());
      camera->ClearFaults();
      camera->ClearCalls();
      EXPECT_FALSE(control.IsAvailable()) << call;
      EXPECT_EQ(control.Value(), 0) << call;
      EXPECT_EQ(camera->Calls(), Calls{}) << call;
    }
  }
}

TEST(Temperature, ThatFailsLaterReadsAsZero) {
  const std::pair<const char*, const char*> failures[] = {{"VmbFeatureEnumSet", "DeviceTemperatureSelector"},
                                                          {"VmbFeatureFloatGet", "DeviceTemperature"}};
  for (const auto& [call, feature] : failures) {
    OpenCameraHandle camera;
    BVimbaControl sensor(NBoard::eTemperatureSensor, camera.Handle());
    camera->FailCall(call, feature, VmbErrorIO);
    EXPECT_EQ(sensor.Value(), 0) << call;
    EXPECT_TRUE(sensor.IsAvailable()) << call;
  }
}

TEST(Temperature, IsNeverWritten) {
  OpenCameraHandle camera;
  BVimbaControl sensor(NBoard::eTemperatureSensor, camera.Handle());
  camera->ClearCalls();
  const BStopWatch watch;

  EXPECT_FALSE(sensor.SetValue(100));

  EXPECT_GE(watch.Period(), kPauseMs);
  EXPECT_EQ(camera->Calls(), Calls{});
}

TEST(ControlValue, IsKnownWithoutAskingTheCamera) {
  OpenCameraHandle camera(WholeRanges());
  BVimbaControl gain(NBoard::eGain, camera.Handle());
  BVimbaControl red(NBoard::eWhiteBalanceRed, camera.Handle());
  camera->ClearCalls();

  gain.Value();
  red.Value();
  RangeOf(gain);
  gain.IsAvailable();

  EXPECT_EQ(camera->Calls(), Calls{});
}

TEST(ControlValue, IsWrittenInTheCamerasUnitAndFollowedByAPause) {
  struct Row {
    NBoard::CONTROLTYPE type;
    int value;
    Calls calls;
  };
  const Row rows[] = {
      {NBoard::eGain, 12, {R"(VmbFeatureFloatSet("Gain", 12))"}},
      {NBoard::eShutter, 101, {R"(VmbFeatureFloatSet("ExposureTimeAbs", 10100))"}},
      {NBoard::eWhiteBalanceRed,
       125,
       {R"(VmbFeatureEnumSet("BalanceRatioSelector", "Red"))", R"(VmbFeatureFloatSet("BalanceRatioAbs", 1.25))"}},
      {NBoard::eWhiteBalanceBlue,
       250,
       {R"(VmbFeatureEnumSet("BalanceRatioSelector", "Blue"))", R"(VmbFeatureFloatSet("BalanceRatioAbs", 2.5))"}}};
  OpenCameraHandle camera(WholeRanges());
  for (const Row& row : rows) {
    BVimbaControl control(row.type, camera.Handle());
    camera->ClearCalls();
    const BStopWatch watch;
    EXPECT_TRUE(control.SetValue(row.value));
    EXPECT_GE(watch.Period(), kPauseMs);
    EXPECT_EQ(camera->Calls(), row.calls);
    EXPECT_EQ(control.Value(), row.value);
  }
}

TEST(ControlValue, IsClampedToTheRange) {
  struct Row {
    NBoard::CONTROLTYPE type;
    int value;
    std::string written;
  };
  const Row rows[] = {{NBoard::eGain, 27, "VmbFeatureFloatSet(\"Gain\", 26)"},
                      {NBoard::eGain, -1, "VmbFeatureFloatSet(\"Gain\", 0)"},
                      {NBoard::eShutter, 0, "VmbFeatureFloatSet(\"ExposureTimeAbs\", 25)"},
                      {NBoard::eShutter, 20'001, "VmbFeatureFloatSet(\"ExposureTimeAbs\", 2e+06)"},
                      {NBoard::eShutter, 2147483647, "VmbFeatureFloatSet(\"ExposureTimeAbs\", 2e+06)"},
                      {NBoard::eShutter, -2147483647 - 1, "VmbFeatureFloatSet(\"ExposureTimeAbs\", 25)"},
                      {NBoard::eWhiteBalanceBlue, 79, "VmbFeatureFloatSet(\"BalanceRatioAbs\", 0.8)"},
                      {NBoard::eWhiteBalanceBlue, 301, "VmbFeatureFloatSet(\"BalanceRatioAbs\", 3)"}};
  for (const Row& row : rows) {
    OpenCameraHandle camera(WholeRanges());
    BVimbaControl control(row.type, camera.Handle());
    EXPECT_TRUE(control.SetValue(row.value));
    EXPECT_EQ(camera->Calls().back(), row.written);
  }
}

// With a pause each, these would take 20 seconds.
TEST(ControlValue, ThatTheCameraHasAlreadyIsNeitherWrittenNorFollowedByAPause) {
  OpenCameraHandle camera(WholeRanges());
  BVimbaControl gain(NBoard::eGain, camera.Handle());
  camera->ClearCalls();
  const BStopWatch watch;

  for (int i = 0; i < 1000; ++i) EXPECT_TRUE(gain.SetValue(5));

  EXPECT_LT(watch.Period(), 10'000U);
  EXPECT_EQ(camera->Calls(), Calls{});
}

TEST(ControlValue, ThatTheCameraRefusesLeavesTheOldOneAndPausesAllTheSame) {
  OpenCameraHandle camera(WholeRanges());
  BVimbaControl gain(NBoard::eGain, camera.Handle());
  camera->FailCall("VmbFeatureFloatSet", "Gain", VmbErrorInvalidAccess);
  const BStopWatch watch;

  EXPECT_FALSE(gain.SetValue(7));

  EXPECT_GE(watch.Period(), kPauseMs);
  EXPECT_EQ(gain.Value(), 5);
}

TEST(ControlValue, WithoutItsSelectorIsNotWritten) {
  OpenCameraHandle camera(WholeRanges());
  BVimbaControl red(NBoard::eWhiteBalanceRed, camera.Handle());
  const int before = red.Value();
  camera->FailCall("VmbFeatureEnumSet", "BalanceRatioSelector", VmbErrorInvalidAccess);
  camera->ClearCalls();
  const BStopWatch watch;

  EXPECT_FALSE(red.SetValue(200));

  EXPECT_GE(watch.Period(), kPauseMs);
  EXPECT_EQ(camera->Calls(), Calls{R"(VmbFeatureEnumSet("BalanceRatioSelector", "Red"))"});
  EXPECT_EQ(red.Value(), before);
}

TEST(ControlValue, OfAnUnavailableControlIsNotWritten) {
  OpenCameraHandle camera(WholeRanges());
  camera->FailCall("VmbFeatureFloatGet", "BalanceRatioAbs", VmbErrorIO);
  BVimbaControl red(NBoard::eWhiteBalanceRed, camera.Handle());
  camera->ClearCalls();

  EXPECT_FALSE(red.SetValue(200));
  EXPECT_FALSE(red.SetToDefault());

  EXPECT_EQ(camera->Calls(), Calls{});
}

TEST(ControlRange, CanOnlyBeNarrowed) {
  OpenCameraHandle camera(WholeRanges());
  BVimbaControl gain(NBoard::eGain, camera.Handle());

  for (const int outside : {-1, 27}) {
    gain.SetMinValue(outside);
    gain.SetMaxValue(outside);
    EXPECT_EQ(RangeOf(gain), std::make_pair(0, 26));
  }
  gain.SetMinValue(3);
  gain.SetMaxValue(20);
  EXPECT_EQ(RangeOf(gain), std::make_pair(3, 20));
  gain.SetMinValue(2);
  gain.SetMaxValue(21);
  EXPECT_EQ(RangeOf(gain), std::make_pair(3, 20));
}

TEST(ControlRange, BothEndsCountAsInside) {
  OpenCameraHandle camera(WholeRanges());
  BVimbaControl gain(NBoard::eGain, camera.Handle());

  gain.SetMinValue(26);
  EXPECT_EQ(RangeOf(gain), std::make_pair(26, 26));
  gain.SetMaxValue(26);
  EXPECT_EQ(RangeOf(gain), std::make_pair(26, 26));

  BVimbaControl another(NBoard::eGain, camera.Handle());
  another.SetMaxValue(0);
  EXPECT_EQ(RangeOf(another), std::make_pair(0, 0));
}

TEST(ControlRange, IsToldWithWhetherTheControlIsAvailable) {
  OpenCameraHandle camera(WholeRanges());
  camera->FailCall("VmbFeatureEnumSet", "BalanceRatioSelector", VmbErrorNotFound);
  int min = 0;
  int max = 0;

  EXPECT_TRUE(BVimbaControl(NBoard::eGain, camera.Handle()).GetRange(min, max));
  EXPECT_FALSE(BVimbaControl(NBoard::eWhiteBalanceRed, camera.Handle()).GetRange(min, max));
}

TEST(ControlDefault, IsWhatSetToDefaultWrites) {
  OpenCameraHandle camera(WholeRanges());
  BVimbaControl gain(NBoard::eGain, camera.Handle());
  BVimbaControl shutter(NBoard::eShutter, camera.Handle());

  EXPECT_TRUE(gain.SetToDefault());
  EXPECT_EQ(gain.Value(), 0);
  EXPECT_TRUE(shutter.SetToDefault());
  EXPECT_EQ(shutter.Value(), 100);

  shutter.SetDefaultValue(333);
  EXPECT_TRUE(shutter.SetToDefault());
  EXPECT_EQ(camera->Calls().back(), "VmbFeatureFloatSet(\"ExposureTimeAbs\", 33300)");
}

TEST(ControlDefault, OutsideTheRangeIsIgnored) {
  OpenCameraHandle camera(WholeRanges());
  BVimbaControl shutter(NBoard::eShutter, camera.Handle());

  shutter.SetDefaultValue(20'001);
  shutter.SetDefaultValue(-5);
  shutter.SetToDefault();

  EXPECT_EQ(shutter.Value(), 100);
}

TEST(ControlInRealUnits, IsReadAndSetInWhatAPersonReads) {
  OpenCameraHandle camera(WholeRanges());
  BVimbaControl shutter(NBoard::eShutter, camera.Handle());
  BVimbaControl gain(NBoard::eGain, camera.Handle());
  double min = 0.0;
  double max = 0.0;

  EXPECT_EQ(shutter.UnitString().Str(), L"[ms]");
  EXPECT_EQ(shutter.GetRealValue(), 15.0);
  EXPECT_TRUE(shutter.SetRealValue(12.5));
  EXPECT_EQ(camera->Calls().back(), "VmbFeatureFloatSet(\"ExposureTimeAbs\", 12500)");
  EXPECT_TRUE(shutter.GetRealRange(min, max));
  EXPECT_EQ(max, 2000.0);
  EXPECT_EQ(gain.UnitString().Str(), L"[x]");
  EXPECT_TRUE(gain.SetRealValue(10.0));
  EXPECT_EQ(gain.Value(), 20);
  EXPECT_EQ(shutter.MaxValue(), 20'000);
  EXPECT_EQ(shutter.MinValue(), 0);
}

}  // namespace
