// control_creation_test.cpp
// What a new control asks of its camera, and what it believes of one that does not answer.
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "VimbaC.h"
#include "support/open_camera_handle.h"
#include "unit/controls/control_cases.h"

namespace {

using Calls = std::vector<std::string>;

TEST(ControlCreation, AsksTheCameraInAFixedOrder) {
  struct Row {
    NBoard::CONTROLTYPE type;
    Calls calls;
  };
  const Row rows[] = {
      {NBoard::eGain,
       {R"(VmbFeatureEnumSet("GainAuto", "Off"))", R"(VmbFeatureFloatRangeQuery("Gain"))",
        R"(VmbFeatureFloatGet("Gain"))"}},
      {NBoard::eShutter,
       {R"(VmbFeatureEnumSet("ExposureMode", "Timed"))", R"(VmbFeatureFloatRangeQuery("ExposureTimeAbs"))",
        R"(VmbFeatureFloatGet("ExposureTimeAbs"))"}},
      {NBoard::eWhiteBalanceRed,
       {R"(VmbFeatureEnumSet("BalanceWhiteAuto", "Off"))", R"(VmbFeatureEnumSet("BalanceRatioSelector", "Red"))",
        R"(VmbFeatureFloatRangeQuery("BalanceRatioAbs"))", R"(VmbFeatureFloatGet("BalanceRatioAbs"))"}},
      {NBoard::eWhiteBalanceBlue,
       {R"(VmbFeatureEnumSet("BalanceWhiteAuto", "Off"))", R"(VmbFeatureEnumSet("BalanceRatioSelector", "Blue"))",
        R"(VmbFeatureFloatRangeQuery("BalanceRatioAbs"))", R"(VmbFeatureFloatGet("BalanceRatioAbs"))"}},
      {NBoard::eTemperatureSensor,
       {R"(VmbFeatureEnumSet("DeviceTemperatureSelector", "Sensor"))", R"(VmbFeatureFloatGet("DeviceTemperature"))"}},
      {NBoard::eTemperatureMain,
       {R"(VmbFeatureEnumSet("DeviceTemperatureSelector", "Main"))", R"(VmbFeatureFloatGet("DeviceTemperature"))"}},
      {NBoard::eBrightness, {}}};
  OpenCameraHandle camera(WholeRanges());
  for (const Row& row : rows) {
    camera->ClearCalls();
    const BVimbaControl control(row.type, camera.Handle());
    EXPECT_EQ(camera->Calls(), row.calls);
    EXPECT_EQ(control.IsAvailable(), row.type != NBoard::eBrightness) << row.type;
    EXPECT_EQ(control.Type(), row.type);
  }
}

TEST(ControlCreation, TakesRangeAndValueFromTheCamera) {
  OpenCameraHandle camera(WholeRanges());
  BVimbaControl gain(NBoard::eGain, camera.Handle());
  BVimbaControl shutter(NBoard::eShutter, camera.Handle());
  BVimbaControl red(NBoard::eWhiteBalanceRed, camera.Handle());

  EXPECT_EQ(RangeOf(gain), std::make_pair(0, 26));
  EXPECT_EQ(gain.Value(), 5);
  // 25 us; two seconds, whatever the camera allows.
  EXPECT_EQ(RangeOf(shutter), std::make_pair(0, 20'000));
  EXPECT_EQ(shutter.Value(), 150);
  EXPECT_EQ(RangeOf(red), std::make_pair(80, 300));
}

TEST(ControlCreation, GainAndExposureServeAlsoACameraThatTellsNothing) {
  struct Row {
    NBoard::CONTROLTYPE type;
    std::string automatic, feature;
    std::pair<int, int> range;
    int value;
  };
  const Row rows[] = {{NBoard::eGain, "GainAuto", "Gain", {0, 10}, 0},
                      {NBoard::eShutter, "ExposureMode", "ExposureTimeAbs", {0, 20'000}, 100}};
  for (const Row& row : rows) {
    OpenCameraHandle camera(SimulatedCamera().Missing(row.automatic).Missing(row.feature));
    BVimbaControl control(row.type, camera.Handle());
    EXPECT_TRUE(control.IsAvailable()) << row.feature;
    EXPECT_EQ(RangeOf(control), row.range) << row.feature;
    EXPECT_EQ(control.Value(), row.value) << row.feature;
    EXPECT_EQ(camera->Calls().size(), 3U) << row.feature;
  }
}

TEST(ControlCreation, AGainWithoutARangeStillTakesTheCamerasValue) {
  OpenCameraHandle camera(WholeRanges());
  camera->FailCall("VmbFeatureFloatRangeQuery", "Gain", VmbErrorNotSupported);

  BVimbaControl gain(NBoard::eGain, camera.Handle());

  EXPECT_EQ(RangeOf(gain), std::make_pair(0, 10));
  EXPECT_EQ(gain.Value(), 5);
}

TEST(ControlCreation, AnExposureWithoutAValueStillTakesTheCamerasRange) {
  OpenCameraHandle camera(WholeRanges().Range("ExposureTimeAbs", 1000.0, 500'000.0));
  camera->FailCall("VmbFeatureFloatGet", "ExposureTimeAbs", VmbErrorIO);

  BVimbaControl shutter(NBoard::eShutter, camera.Handle());

  EXPECT_TRUE(shutter.IsAvailable());
  EXPECT_EQ(RangeOf(shutter), std::make_pair(10, 5'000));
  EXPECT_EQ(shutter.Value(), 100);
}

TEST(ControlCreation, AWhiteBalanceNeedsSelectorRangeAndValue) {
  struct Row {
    const char *call, *feature;
    std::size_t calls;  // the first failure ends the sequence
  };
  const Row rows[] = {{"VmbFeatureEnumSet", "BalanceRatioSelector", 2},
                      {"VmbFeatureFloatRangeQuery", "BalanceRatioAbs", 3},
                      {"VmbFeatureFloatGet", "BalanceRatioAbs", 4}};
  for (const NBoard::CONTROLTYPE type : kWhiteBalances) {
    for (const Row& row : rows) {
      OpenCameraHandle camera(WholeRanges());
      camera->FailCall(row.call, row.feature, VmbErrorInvalidAccess);
      BVimbaControl control(type, camera.Handle());
      EXPECT_FALSE(control.IsAvailable()) << row.call;
      EXPECT_EQ(camera->Calls().size(), row.calls) << row.call;
      EXPECT_EQ(control.Value(), 100) << row.call;
    }
  }
}

TEST(ControlCreation, AWhiteBalanceThatCannotBeSwitchedToManualIsStillAvailable) {
  OpenCameraHandle camera(WholeRanges().Missing("BalanceWhiteAuto"));
  const BVimbaControl red(NBoard::eWhiteBalanceRed, camera.Handle());

  EXPECT_TRUE(red.IsAvailable());
}

TEST(ControlCreation, AWhiteBalanceThatTheCameraRefusesStaysAtOne) {
  OpenCameraHandle camera(WholeRanges());
  camera->FailCall("VmbFeatureEnumSet", "BalanceRatioSelector", VmbErrorInvalidValue);

  BVimbaControl blue(NBoard::eWhiteBalanceBlue, camera.Handle());

  EXPECT_EQ(RangeOf(blue), std::make_pair(100, 100));
}

}  // namespace
