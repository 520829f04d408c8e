// controls_test.cpp
// Controls and trigger as the host gets them from an open device, with the profile's limits and start values.
#include "VimbaC.h"
#include "driver/opened_camera.h"

namespace {

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

// What no trigger has.
constexpr int kNoSource = 5;
constexpr int kNoEdge = 7;

struct Controls : OpenedCamera {};

TEST_F(Controls, TheProfileNarrowsGainAndExposure) {
  profile.Key("MINGAIN", "2").Key("MAXGAIN", "12").Key("MINSHUTTER", "10").Key("MAXSHUTTER", "1000");
  ASSERT_TRUE(Open());
  int min = 0;
  int max = 0;
  EXPECT_TRUE(Device().GainControl()->GetRange(min, max));
  EXPECT_EQ(min, 2);
  EXPECT_EQ(max, 12);
  EXPECT_TRUE(Device().ShutterControl()->GetRange(min, max));
  EXPECT_EQ(min, 10);
  EXPECT_EQ(max, 1000);
  EXPECT_EQ(Device().MaxShutterForFast(), 1000);
}

TEST_F(Controls, ALimitOutsideTheCamerasRangeChangesNothing) {
  ASSERT_TRUE(Open());
  int min_before = 0;
  int max_before = 0;
  Device().GainControl()->GetRange(min_before, max_before);
  profile.Key("MINGAIN", "-5").Key("MAXGAIN", "500");
  ASSERT_TRUE(Reopen());
  int min = 0;
  int max = 0;
  Device().GainControl()->GetRange(min, max);
  EXPECT_EQ(min, min_before);
  EXPECT_EQ(max, max_before);
}

TEST_F(Controls, TheExposureNeverExceedsTwoSeconds) {
  ASSERT_TRUE(Open(SimulatedCamera().Range("ExposureTimeAbs", 10, 60'000'000)));
  EXPECT_EQ(Device().ShutterControl()->MaxValue(), 20000);
}

TEST_F(Controls, WhatIsNoNumberWasNotReadAndIsNotWritten) {
  const nlohmann::json ranges[] = {{0, "nan"}, {"nan", 24}, {"inf", "-inf"}, {"inf", "inf"}};
  for (const nlohmann::json& range : ranges) {
    SCOPED_TRACE(range.dump());
    profile.Key("GAIN", "6").Key("MAXGAIN", "12");
    cameras.reset();
    cameras.emplace(SimulatedCamera());
    cameras->Fault({{"call", "VmbFeatureFloatRangeQuery"}, {"feature", "Gain"}, {"answer", range}, {"count", 0}});
    ASSERT_TRUE(Reopen());
    Device().GainControl()->SetValue(9);
    EXPECT_THAT(cameras->CallsOf("VmbFeatureFloatSet"), Each(Not(AnyOf(HasSubstr("nan"), HasSubstr("inf")))));
    device.reset();
  }
}

TEST_F(Controls, ARangeWithoutALimitIsOne) {
  cameras.emplace(SimulatedCamera());
  cameras->Fault({{"call", "VmbFeatureFloatRangeQuery"}, {"feature", "Gain"}, {"answer", {0, "inf"}}, {"count", 0}});
  ASSERT_TRUE(Reopen());
  EXPECT_TRUE(Device().GainControl()->SetValue(30));
  EXPECT_THAT(cameras->CallsOf("VmbFeatureFloatSet"), Contains("VmbFeatureFloatSet(\"Gain\", 30)"));
}

TEST_F(Controls, StartValuesAreAppliedInTheOrderOfTheTypes) {
  profile.Key("SHUTTER", "50").Key("GAIN", "6").Key("Bayertype", "RGGB").Key("WHITEBALANCEBLUE", "130");
  ASSERT_TRUE(Open(SimulatedCamera().Colour()));
  EXPECT_EQ(Device().GainControl()->Value(), 6);
  EXPECT_EQ(Device().ShutterControl()->Value(), 50);
  std::vector<std::string> sets = cameras->CallsOf("VmbFeatureFloatSet");
  sets.resize(3);
  EXPECT_THAT(sets, ElementsAre("VmbFeatureFloatSet(\"Gain\", 6)", "VmbFeatureFloatSet(\"BalanceRatioAbs\", 1.3)",
                                "VmbFeatureFloatSet(\"ExposureTimeAbs\", 5000)"));
}

TEST_F(Controls, AStartValueOutsideTheLimitsGivesTheControlsOwnDefault) {
  profile.Key("SHUTTER", "30000").Key("GAIN", "30");
  ASSERT_TRUE(Open(SimulatedCamera().Range("Gain", 0, 24).Feature("Gain", 3).Feature("ExposureTimeAbs", 7000)));
  EXPECT_EQ(Device().GainControl()->Value(), 0);
  EXPECT_EQ(Device().ShutterControl()->Value(), 100);
}

TEST_F(Controls, ASetValueIsClampedAndWritten) {
  ASSERT_TRUE(Open(SimulatedCamera().Range("Gain", 0, 24)));
  Forget();
  EXPECT_TRUE(Device().GainControl()->SetValue(1000));
  EXPECT_TRUE(Device().GainControl()->SetValue(-1000));
  EXPECT_THAT(cameras->Calls(), ElementsAre("VmbFeatureFloatSet(\"Gain\", 24)", "VmbFeatureFloatSet(\"Gain\", 0)"));
}

TEST_F(Controls, TheValueInForceIsNotWrittenAgain) {
  ASSERT_TRUE(Open());
  BImagingDeviceControl& gain = *Device().GainControl();
  gain.SetValue(6);
  Forget();
  EXPECT_TRUE(gain.SetValue(6));
  EXPECT_THAT(cameras->Calls(), IsEmpty());
}

TEST_F(Controls, ARefusedValueLeavesTheOldOne) {
  ASSERT_TRUE(Open());
  BImagingDeviceControl& shutter = *Device().ShutterControl();
  shutter.SetValue(100);
  cameras->FailCall("VmbFeatureFloatSet", "ExposureTimeAbs", VmbErrorInvalidAccess);
  EXPECT_FALSE(shutter.SetValue(200));
  EXPECT_EQ(shutter.Value(), 100);
}

TEST_F(Controls, TemperaturesAreReadLive) {
  ASSERT_TRUE(Open(SimulatedCamera().With("temperature", {{"sensor", 41.5}, {"main", 46.25}})));
  Forget();
  EXPECT_EQ(Device().TemperatureControl(true)->Value(), 415);
  EXPECT_EQ(Device().TemperatureControl(false)->Value(), 462);
  EXPECT_THAT(cameras->Calls(), ElementsAre("VmbFeatureEnumSet(\"DeviceTemperatureSelector\", \"Sensor\")",
                                            "VmbFeatureFloatGet(\"DeviceTemperature\")",
                                            "VmbFeatureEnumSet(\"DeviceTemperatureSelector\", \"Main\")",
                                            "VmbFeatureFloatGet(\"DeviceTemperature\")"));
}

TEST_F(Controls, WithoutASelectorATemperatureIsUnavailableAndZero) {
  ASSERT_TRUE(Open(SimulatedCamera().Missing("DeviceTemperatureSelector")));
  EXPECT_FALSE(Device().TemperatureControl(true)->IsAvailable());
  EXPECT_EQ(Device().TemperatureControl(true)->Value(), 0);
}

TEST_F(Controls, RealValuesComeInTheirUnits) {
  ASSERT_TRUE(Open());
  BImagingDeviceControl& shutter = *Device().ShutterControl();
  EXPECT_TRUE(shutter.SetRealValue(12.5));
  EXPECT_EQ(shutter.Value(), 125);
  EXPECT_DOUBLE_EQ(shutter.GetRealValue(), 12.5);
  EXPECT_EQ(shutter.UnitString(), WString(L"[ms]"));
  double min = 0.0;
  double max = 0.0;
  EXPECT_TRUE(Device().ShutterControl()->GetRealRange(min, max));
  EXPECT_DOUBLE_EQ(max, 2000.0);
}

struct Trigger : OpenedCamera {
  std::vector<std::string> CallsAfter(void (*act)(BImagingDeviceTrigger&), bool external = false) {
    Device().Trigger()->SetExternal(external);
    Forget();
    act(*Device().Trigger());
    return cameras->Calls();
  }
};

constexpr char kModeOn[] = "VmbFeatureEnumSet(\"TriggerMode\", \"On\")";
constexpr char kFrameStart[] = "VmbFeatureEnumSet(\"TriggerSelector\", \"FrameStart\")";

TEST_F(Trigger, SelectsItsSources) {
  ASSERT_TRUE(Open());
  const auto set_to = [](const char* source) {
    return std::string("VmbFeatureEnumSet(\"TriggerSource\", \"") + source + "\")";
  };
  EXPECT_THAT(CallsAfter([](auto& trigger) { EXPECT_TRUE(trigger.SetSource(BImagingDeviceTrigger::eSoftware)); }),
              ElementsAre(kModeOn, kFrameStart, set_to("Software")));
  EXPECT_THAT(CallsAfter([](auto& trigger) { EXPECT_TRUE(trigger.SetSource(BImagingDeviceTrigger::eLine)); }),
              ElementsAre(kModeOn, kFrameStart, set_to("Line2")));
  EXPECT_THAT(CallsAfter([](auto& trigger) { EXPECT_TRUE(trigger.SetSource(BImagingDeviceTrigger::eFreeRun)); }),
              ElementsAre(kModeOn, kFrameStart, set_to("Freerun")));
  EXPECT_THAT(CallsAfter([](auto& trigger) { EXPECT_TRUE(trigger.SetSource(kNoSource)); }),
              ElementsAre(kModeOn, kFrameStart));
  EXPECT_THAT(CallsAfter([](auto& trigger) { trigger.SetOn(); }),
              ElementsAre(kModeOn, kFrameStart, set_to("Software")));
}

TEST_F(Trigger, AnExternalOneDoesNotGoToFreeRun) {
  ASSERT_TRUE(Open());
  EXPECT_THAT(CallsAfter([](auto& trigger) { EXPECT_TRUE(trigger.SetSource(BImagingDeviceTrigger::eFreeRun)); }, true),
              IsEmpty());
}

TEST_F(Trigger, AnExternalOneIsNotFired) {
  ASSERT_TRUE(Open());
  EXPECT_THAT(CallsAfter([](auto& trigger) { trigger.Fire(); }, true), IsEmpty());
}

TEST_F(Trigger, FiresAndWaitsUntilTheCameraIsDone) {
  ASSERT_TRUE(Open());
  EXPECT_THAT(CallsAfter([](auto& trigger) { trigger.Fire(); }),
              ElementsAre("VmbFeatureCommandRun(\"TriggerSoftware\")", "VmbFeatureCommandIsDone(\"TriggerSoftware\")"));
}

TEST_F(Trigger, AnyEdgeButZeroIsTheFallingOne) {
  ASSERT_TRUE(Open());
  EXPECT_THAT(CallsAfter([](auto& trigger) { EXPECT_TRUE(trigger.SetActivation(kNoEdge)); }),
              ElementsAre("VmbFeatureEnumSet(\"TriggerActivation\", \"FallingEdge\")"));
  EXPECT_THAT(CallsAfter([](auto& trigger) { EXPECT_TRUE(trigger.SetActivation(BImagingDeviceTrigger::eRising)); }),
              ElementsAre("VmbFeatureEnumSet(\"TriggerActivation\", \"RisingEdge\")"));
}

TEST_F(Trigger, ARefusedStepIsReported) {
  ASSERT_TRUE(Open());
  for (const char* feature : {"TriggerMode", "TriggerSelector", "TriggerSource"}) {
    cameras->ClearFaults();
    cameras->FailCall("VmbFeatureEnumSet", feature, VmbErrorInvalidAccess);
    EXPECT_FALSE(Device().Trigger()->SetSource(BImagingDeviceTrigger::eSoftware)) << feature;
  }
}

TEST_F(Trigger, SwitchingItOffMakesItInternal) {
  ASSERT_TRUE(Open());
  Device().Trigger()->SetExternal(true);
  EXPECT_TRUE(Device().Trigger()->IsExternal());
  Forget();
  Device().Trigger()->SetOff();
  EXPECT_FALSE(Device().Trigger()->IsExternal());
  EXPECT_THAT(cameras->Calls(), IsEmpty());
}

}  // namespace
