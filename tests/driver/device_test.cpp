// device_test.cpp
// The device's operations as the host calls them, one after the other in the table's order.
#include <iomanip>
#include <sstream>

#include "VimbaC.h"
#include "bbaseaoi.h"
#include "driver/opened_camera.h"
#include "support/plain_device.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

struct DeviceTest : OpenedCamera {
  bool OpenColour() {
    profile.Key("Bayertype", "RGGB");
    return Open(SimulatedCamera().Colour());
  }
};

TEST_F(DeviceTest, ReportsWhatItIs) {
  ASSERT_TRUE(Open());
  EXPECT_TRUE(Device().IsOpen());
  EXPECT_STREQ(Device().TypeName(), L"Vimba");
  EXPECT_STREQ(Device().Name(), L"Vimba_Manta-G-507B_50-0503340001");
  bool rotated = true;
  EXPECT_EQ(Device().ImageSize(rotated), (BSize{64, 48}));
  EXPECT_FALSE(rotated);
  EXPECT_FALSE(Device().IsColor());
}

TEST_F(DeviceTest, TheLimitOfTheFastModeIsTheLongestExposureUnlessTheProfileSaysOther) {
  ASSERT_TRUE(Open());
  EXPECT_EQ(Device().MaxShutterForFast(), 20000);
  profile.Key("MAXSHUTTERFORFAST", "500");
  ASSERT_TRUE(Reopen());
  EXPECT_EQ(Device().MaxShutterForFast(), 500);
}

TEST_F(DeviceTest, AColourCameraHasAWhiteBalanceAndItsRange) {
  ASSERT_TRUE(OpenColour());
  EXPECT_TRUE(Device().HasWhiteBalance());
  int min = 0;
  int max = 0;
  EXPECT_TRUE(Device().WhiteBalanceRange(min, max));
  EXPECT_LT(min, 100);
  EXPECT_GT(max, 100);
}

TEST_F(DeviceTest, TheBalanceIsSetByColourAndKeptForTheColourModeOnRequest) {
  ASSERT_TRUE(OpenColour());
  Forget();
  EXPECT_TRUE(Device().SetWhiteBalanceBlue(150, true));
  EXPECT_TRUE(Device().SetWhiteBalanceRed(160, false));
  EXPECT_EQ(Device().ColorBlueBalance(), 150);
  EXPECT_EQ(Device().ColorRedBalance(), 100);
  EXPECT_THAT(cameras->Calls(), ElementsAre("VmbFeatureEnumSet(\"BalanceRatioSelector\", \"Blue\")",
                                            "VmbFeatureFloatSet(\"BalanceRatioAbs\", 1.5)",
                                            "VmbFeatureEnumSet(\"BalanceRatioSelector\", \"Red\")",
                                            "VmbFeatureFloatSet(\"BalanceRatioAbs\", 1.6)"));
}

TEST_F(DeviceTest, WithoutBothBalancesThereIsNoRangeAndNoCallForIt) {
  for (const char* lacking : {"Red", "Blue"}) {
    cameras.emplace(SimulatedCamera().Colour());
    cameras->Fault({{"call", "VmbFeatureEnumSet"},
                    {"feature", "BalanceRatioSelector"},
                    {"value", lacking},
                    {"error", VmbErrorInvalidValue},
                    {"count", 0}});
    profile.Key("Bayertype", "RGGB");
    ASSERT_TRUE(Reopen());
    Forget();
    int min = 7;
    int max = 8;
    EXPECT_FALSE(Device().HasWhiteBalance());
    EXPECT_FALSE(Device().WhiteBalanceRange(min, max));
    EXPECT_EQ(min, 7);
    EXPECT_THAT(cameras->Calls(), IsEmpty());
    device.reset();
  }
}

TEST_F(DeviceTest, AMonochromeCameraHasNoBalance) {
  ASSERT_TRUE(Open());
  EXPECT_FALSE(Device().HasWhiteBalance());
  EXPECT_FALSE(Device().SetWhiteBalanceBlue(120, true));
  int min = 0;
  int max = 0;
  EXPECT_FALSE(Device().WhiteBalanceRange(min, max));
}

TEST_F(DeviceTest, WhatIsNotSupportedAnswersNothing) {
  ASSERT_TRUE(Open());
  Forget();
  EXPECT_FALSE(Device().WhiteBalanceOnce());
  Device().Refresh();
  EXPECT_EQ(Device().OffsetControl(), nullptr);
  EXPECT_EQ(Device().GammaControl(), nullptr);
  EXPECT_EQ(Device().SharpnessControl(), nullptr);
  EXPECT_EQ(Device().BrightnessControl(), nullptr);
  EXPECT_EQ(Device().HueControl(), nullptr);
  EXPECT_EQ(Device().SaturationControl(), nullptr);
  EXPECT_FALSE(Device().AutoFocusOnce());
  EXPECT_THAT(cameras->Calls(), IsEmpty());
  EXPECT_THAT(output.Messages(), IsEmpty());
}

TEST_F(DeviceTest, GivesTheControlsByTheirTypes) {
  ASSERT_TRUE(Open());
  EXPECT_EQ(Device().GainControl()->Type(), NBoard::eGain);
  EXPECT_EQ(Device().ShutterControl()->Type(), NBoard::eShutter);
  EXPECT_EQ(Device().TemperatureControl(true)->Type(), NBoard::eTemperatureSensor);
  EXPECT_EQ(Device().TemperatureControl(false)->Type(), NBoard::eTemperatureMain);
}

TEST_F(DeviceTest, GivesTheTriggerOnlyWhenItCanBeUsed) {
  ASSERT_TRUE(Open());
  ASSERT_NE(Device().Trigger(), nullptr);
  EXPECT_TRUE(Device().Trigger()->IsAvailable());
  cameras->Fault({{"call", "VmbFeatureEnumSet"},
                  {"feature", "TriggerSource"},
                  {"value", "Line2"},
                  {"error", VmbErrorInvalidValue},
                  {"count", 0}});
  ASSERT_TRUE(Reopen());
  EXPECT_EQ(Device().Trigger(), nullptr);
}

TEST_F(DeviceTest, ReadsAndSetsTheStreamRate) {
  ASSERT_TRUE(Open());
  Forget();
  EXPECT_TRUE(Device().SetBandwidth(50'000'000));
  EXPECT_EQ(Device().GetBandwidth(), 50'000'000);
  cameras->FailCall("VmbFeatureIntSet", "StreamBytesPerSecond", VmbErrorInvalidAccess);
  EXPECT_FALSE(Device().SetBandwidth(60'000'000));
  cameras->FailCall("VmbFeatureIntGet", "StreamBytesPerSecond", VmbErrorInvalidAccess);
  EXPECT_EQ(Device().GetBandwidth(), 0);
  cameras->ClearCalls();
  EXPECT_FALSE(Device().SetBandwidth(50'000'000));
  EXPECT_THAT(cameras->CallsOf("VmbFeatureIntSet"), IsEmpty());
}

TEST_F(DeviceTest, ARateOutsideTheCamerasRangeIsNotClamped) {
  ASSERT_TRUE(Open());
  EXPECT_FALSE(Device().SetBandwidth(-1));
}

TEST_F(DeviceTest, ReportsHowLongTheLastSnapTook) {
  ASSERT_TRUE(Open());
  EXPECT_EQ(Device().LastSnapTime(), 0.0);
  Device().StartSnap(true);
  cameras->Fault(
      {{"call", "VmbFeatureCommandRun"}, {"feature", "TriggerSoftware"}, {"error", VmbErrorOther}, {"count", 1}});
  EXPECT_EQ(Device().Snap(nullptr, 30), BError(BError::eTimeout));
  Device().StopSnap();
  EXPECT_GE(Device().LastSnapTime(), 30.0);
}

TEST_F(DeviceTest, ADeviceOfAnotherDriverIsNoPartner) {
  ASSERT_TRUE(Open());
  Forget();
  PlainDevice other;
  EXPECT_FALSE(Device().AddBandwidthPartner(&other));
  EXPECT_FALSE(Device().RemoveBandwidthPartner(&other));
  EXPECT_FALSE(Device().AddBandwidthPartner(nullptr));
  EXPECT_FALSE(Device().RemoveBandwidthPartner(nullptr));
  EXPECT_THAT(cameras->Calls(), IsEmpty());
}

TEST_F(DeviceTest, ReportsTheCamerasFrameRate) {
  ASSERT_TRUE(Open(SimulatedCamera().Feature("ExposureTimeAbs", 1000.0)));
  Forget();
  double frames_per_second = 0.0;
  EXPECT_TRUE(Device().FramesPerSecond(frames_per_second));
  EXPECT_GT(frames_per_second, 0.0);
  std::wostringstream line;
  line << L"AcquisitionFrameRateLimit = " << std::fixed << std::setprecision(4) << frames_per_second;
  EXPECT_THAT(Message(L"FramesPerSecond()"), ElementsAre(L"FramesPerSecond()", line.str(), L"End"));
}

TEST_F(DeviceTest, TheProfileCapsTheFrameRate) {
  profile.Key("CAMFREQ", "0.5");
  ASSERT_TRUE(Open());
  Forget();
  double frames_per_second = 0.0;
  EXPECT_TRUE(Device().FramesPerSecond(frames_per_second));
  EXPECT_EQ(frames_per_second, 0.5);
  EXPECT_THAT(Message(L"FramesPerSecond()"), Contains(L"AcquisitionFrameRateLimit (defined camera INI file) = 0.5000"));
}

TEST_F(DeviceTest, ACapOfZeroIsNone) {
  profile.Key("CAMFREQ", "0");
  ASSERT_TRUE(Open());
  double frames_per_second = 0.0;
  EXPECT_TRUE(Device().FramesPerSecond(frames_per_second));
  EXPECT_GT(frames_per_second, 0.0);
}

TEST_F(DeviceTest, AnExposureEqualToTheLimitIsStillFast) {
  profile.Key("MAXSHUTTERFORFAST", "100").Key("SHUTTER", "100");
  ASSERT_TRUE(Open());
  double frames_per_second = 0.0;
  EXPECT_TRUE(Device().FramesPerSecond(frames_per_second));
  Device().ShutterControl()->SetValue(101);
  Forget();
  EXPECT_FALSE(Device().FramesPerSecond(frames_per_second));
  EXPECT_GT(frames_per_second, 0.0);
  EXPECT_THAT(Message(L"FramesPerSecond()"),
              Contains(L"current shutter > max_shutter_for_fast. FramesPerSecond() returns false"));
}

TEST_F(DeviceTest, ACameraWithoutAFrameRateLimitSaysSo) {
  ASSERT_TRUE(Open(SimulatedCamera().Missing("AcquisitionFrameRateLimit")));
  Forget();
  double frames_per_second = 7.0;
  EXPECT_FALSE(Device().FramesPerSecond(frames_per_second));
  EXPECT_THAT(Message(L"FramesPerSecond()"),
              ElementsAre(L"FramesPerSecond()", L"AcquisitionFrameRateLimit failure : -3", L"End"));
}

}  // namespace
