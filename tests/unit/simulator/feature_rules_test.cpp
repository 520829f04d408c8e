// feature_rules_test.cpp
// Access rules, and how a simulated camera's features depend on each other.
#include <gmock/gmock.h>

#include <utility>

#include "simulated_link.h"

namespace {

using testing::Pair;

struct Features : testing::Test {
  StartedCameras world{SimulatedCamera().Colour("RGGB")};
  OpenedHandle camera;
};

std::pair<std::int64_t, std::int64_t> RangeOf(VmbHandle_t camera, const char* feature) {
  VmbInt64_t min = 0;
  VmbInt64_t max = 0;
  EXPECT_EQ(VmbFeatureIntRangeQuery(camera, feature, &min, &max), VmbErrorSuccess);
  return {min, max};
}

TEST_F(Features, ThatAreReadOnlyCannotBeWritten) {
  EXPECT_EQ(VmbFeatureIntSet(camera, "PayloadSize", 1), VmbErrorInvalidAccess);
  EXPECT_EQ(VmbFeatureFloatSet(camera, "DeviceTemperature", 1.0), VmbErrorInvalidAccess);
  EXPECT_EQ(VmbFeatureEnumSet(camera, "SensorType", "Mono"), VmbErrorInvalidAccess);
}

TEST_F(Features, OfTheImageAreLockedWhileAcquisitionRuns) {
  TriggerBy(camera, "Software");
  RunCommand(camera, "AcquisitionStart");

  for (const char* feature :
       {"Width", "Height", "OffsetX", "OffsetY", "BinningHorizontal", "BinningVertical", "GVSPPacketSize"}) {
    EXPECT_EQ(VmbFeatureIntSet(camera, feature, IntOf(camera, feature)), VmbErrorInvalidAccess) << feature;
  }
  EXPECT_EQ(VmbFeatureEnumSet(camera, "PixelFormat", "Mono8"), VmbErrorInvalidAccess);
  SetFloat(camera, "ExposureTimeAbs", 500.0);

  RunCommand(camera, "AcquisitionStop");
  SetEnum(camera, "PixelFormat", "Mono8");
}

TEST_F(Features, ThatAreAutomaticCannotBeWrittenByHand) {
  SetEnum(camera, "ExposureAuto", "Continuous");
  SetEnum(camera, "GainAuto", "Continuous");
  SetEnum(camera, "BalanceWhiteAuto", "Continuous");

  EXPECT_EQ(VmbFeatureFloatSet(camera, "ExposureTimeAbs", 500.0), VmbErrorInvalidAccess);
  EXPECT_EQ(VmbFeatureFloatSet(camera, "Gain", 1.0), VmbErrorInvalidAccess);
  EXPECT_EQ(VmbFeatureFloatSet(camera, "BalanceRatioAbs", 1.0), VmbErrorInvalidAccess);

  SetEnum(camera, "ExposureAuto", "Off");
  SetFloat(camera, "ExposureTimeAbs", 500.0);
}

TEST(WidestPayload, IsThatOfTheWidestFormat) {
  const StartedCameras world{SimulatedCamera().Colour("RGGB").WidestPayload()};
  const OpenedHandle camera;

  SetInt(camera, "Width", 40);
  SetInt(camera, "Height", 20);

  EXPECT_EQ(EnumOf(camera, "PixelFormat"), "BayerRG8");
  EXPECT_EQ(IntOf(camera, "PayloadSize"), 2400);
}

TEST_F(Features, OffsetsReachAsFarAsTheSizeLeaves) {
  EXPECT_THAT(RangeOf(camera, "OffsetX"), Pair(0, 0));
  SetInt(camera, "Width", 40);
  SetInt(camera, "Height", 20);

  EXPECT_THAT(RangeOf(camera, "OffsetX"), Pair(0, 24));
  EXPECT_THAT(RangeOf(camera, "OffsetY"), Pair(0, 28));
  SetInt(camera, "OffsetX", 24);
  EXPECT_EQ(VmbFeatureIntSet(camera, "OffsetX", 25), VmbErrorInvalidValue);
}

TEST_F(Features, ASizeThatDoesNotFitAtTheOffsetIsInvalid) {
  SetInt(camera, "Width", 40);
  SetInt(camera, "OffsetX", 10);

  EXPECT_THAT(RangeOf(camera, "Width"), Pair(8, SimulatedCamera::kWidth));
  EXPECT_EQ(VmbFeatureIntSet(camera, "Width", 55), VmbErrorInvalidValue);
  SetInt(camera, "Width", 54);
}

TEST_F(Features, BinningDividesTheRangesOfTheSize) {
  SetInt(camera, "Width", 40);
  SetInt(camera, "OffsetX", 20);

  SetInt(camera, "BinningHorizontal", 2);
  SetInt(camera, "BinningVertical", 3);

  EXPECT_THAT(RangeOf(camera, "Width"), Pair(8, 32));
  EXPECT_THAT(RangeOf(camera, "Height"), Pair(8, 16));
  EXPECT_EQ(IntOf(camera, "WidthMax"), 32);
  EXPECT_EQ(IntOf(camera, "Width"), 32);
  EXPECT_EQ(IntOf(camera, "Height"), 16);
  EXPECT_EQ(IntOf(camera, "OffsetX"), 0);
  EXPECT_EQ(IntOf(camera, "SensorWidth"), SimulatedCamera::kWidth);
}

TEST_F(Features, BalanceHasOneValueForEachSelectorEntry) {
  SetEnum(camera, "BalanceRatioSelector", "Red");
  SetFloat(camera, "BalanceRatioAbs", 1.5);
  SetEnum(camera, "BalanceRatioSelector", "Blue");
  SetFloat(camera, "BalanceRatioAbs", 2.5);

  EXPECT_EQ(FloatOf(camera, "BalanceRatioAbs"), 2.5);
  SetEnum(camera, "BalanceRatioSelector", "Red");
  EXPECT_EQ(FloatOf(camera, "BalanceRatioAbs"), 1.5);
}

TEST(Temperature, HasOneValueForEachPlace) {
  const StartedCameras world{SimulatedCamera().With("temperature", {{"sensor", 31.5}, {"main", 40.25}})};
  const OpenedHandle camera;

  EXPECT_EQ(FloatOf(camera, "DeviceTemperature"), 31.5);
  SetEnum(camera, "DeviceTemperatureSelector", "Main");

  EXPECT_EQ(FloatOf(camera, "DeviceTemperature"), 40.25);
}

TEST_F(Features, AResetSetsTheClockToZero) {
  RunCommand(camera, "GevTimestampControlLatch");
  const auto begin = std::chrono::steady_clock::now();

  RunCommand(camera, "GevTimestampControlReset");
  RunCommand(camera, "GevTimestampControlLatch");

  const auto elapsed = std::chrono::steady_clock::now() - begin;

  const std::chrono::duration<double> clock(static_cast<double>(IntOf(camera, "GevTimestampValue")) /
                                            static_cast<double>(IntOf(camera, "GevTimestampTickFrequency")));
  EXPECT_LE(clock, elapsed);
}

TEST(FrameRateLimit, IsThatOfTheSlowestOfExposureReadOutAndStream) {
  const StartedCameras world{SimulatedCamera().Sensor(1000, 1000).With("lineTime_us", 30.0)};
  const OpenedHandle camera;
  SetInt(camera, "StreamBytesPerSecond", 100'000'000);
  SetFloat(camera, "ExposureTimeAbs", 1000.0);
  EXPECT_DOUBLE_EQ(FloatOf(camera, "AcquisitionFrameRateLimit"), 1.0 / 0.03);

  SetFloat(camera, "ExposureTimeAbs", 40'000.0);
  EXPECT_DOUBLE_EQ(FloatOf(camera, "AcquisitionFrameRateLimit"), 25.0);

  SetInt(camera, "StreamBytesPerSecond", 20'000'000);
  EXPECT_DOUBLE_EQ(FloatOf(camera, "AcquisitionFrameRateLimit"), 20.0);
}

TEST(PacketSize, AdjustingTakesItsTimeAndFindsWhatTheLinkCarries) {
  constexpr std::chrono::milliseconds kAdjustment{30};
  const StartedCameras world{
      SimulatedCamera().RealTiming().With("packetSize", {{"negotiated", 7001}, {"adjust_ms", kAdjustment.count()}})};
  const OpenedHandle camera;
  VmbBool_t done = 0;
  const auto begin = std::chrono::steady_clock::now();

  RunCommand(camera, "GVSPAdjustPacketSize");
  EXPECT_TRUE(Eventually([&] {
    EXPECT_EQ(VmbFeatureCommandIsDone(camera, "GVSPAdjustPacketSize", &done), VmbErrorSuccess);
    return done != 0;
  }));

  EXPECT_GE(std::chrono::steady_clock::now() - begin, kAdjustment);
  // The feature has steps of 4.
  EXPECT_EQ(IntOf(camera, "GVSPPacketSize"), 7000);
}

TEST(MissingFeatures, AreNotFoundAndLeaveTheRestAlone) {
  const StartedCameras world{SimulatedCamera().Missing("Width").Missing("AcquisitionStop")};
  const OpenedHandle camera;
  VmbInt64_t value = 0;

  EXPECT_EQ(VmbFeatureIntGet(camera, "Width", &value), VmbErrorNotFound);
  EXPECT_EQ(VmbFeatureCommandRun(camera, "AcquisitionStop"), VmbErrorNotFound);
  EXPECT_EQ(IntOf(camera, "PayloadSize"), SimulatedCamera::kWidth * SimulatedCamera::kHeight);
}

TEST(MissingFeatures, AreBinningOfACameraThatCannotBinAndColourOfAMonochromeOne) {
  const StartedCameras world{SimulatedCamera().With("binning", 0)};
  const OpenedHandle camera;
  double value = 0.0;

  EXPECT_EQ(VmbFeatureIntSet(camera, "BinningHorizontal", 1), VmbErrorNotFound);
  EXPECT_EQ(VmbFeatureFloatGet(camera, "BalanceRatioAbs", &value), VmbErrorNotFound);
  EXPECT_EQ(EnumOf(camera, "SensorType"), "Mono");
}

}  // namespace
