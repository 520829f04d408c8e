// number_map_test.cpp
// What becomes of numbers that a camera names or scales otherwise.
#include <gtest/gtest.h>

#include <limits>

#include "described_camera.h"

namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

TEST(Exposure, InMicrosecondsIsWrittenAsItIs) {
  DescribedCamera camera("convention");

  ExpectFloatSet(camera, "ExposureTimeAbs", 123.25);

  EXPECT_EQ(camera.OwnFloat("ExposureTime"), 123.25);
  EXPECT_EQ(FloatOf(camera, "ExposureTimeAbs"), 123.25);
}

TEST(Exposure, InMillisecondsIsConvertedBothWays) {
  DescribedCamera camera("factors");

  ExpectFloatSet(camera, "ExposureTimeAbs", 250.0);

  EXPECT_DOUBLE_EQ(camera.OwnFloat("ExposureTime"), 0.25);
  EXPECT_DOUBLE_EQ(FloatOf(camera, "ExposureTimeAbs"), 250.0);
}

TEST(Exposure, InSecondsIsConvertedBothWays) {
  DescribedCamera camera("seconds");
  EXPECT_DOUBLE_EQ(FloatOf(camera, "ExposureTimeAbs"), 250'000.0);

  ExpectFloatSet(camera, "ExposureTimeAbs", 1'500.0);

  EXPECT_DOUBLE_EQ(camera.OwnFloat("ExposureTime"), 0.0015);
}

TEST(Exposure, OutsideItsRangeIsRefusedAndLeftAlone) {
  DescribedCamera camera("factors");

  for (const double refused : {9.0, 1'000'001.0, -1.0, kNone}) {
    ExpectFloatSet(camera, "ExposureTimeAbs", refused, VmbErrorInvalidValue);
  }

  EXPECT_EQ(camera.OwnFloat("ExposureTime"), 12.5);
}

TEST(Exposure, OfWholeNumbersIsTheNearestStep) {
  DescribedCamera camera("whole_numbers");
  struct Row {
    double wanted_us;
    std::int64_t written;
  };

  for (const Row& row : {Row{29.0, 20}, Row{31.0, 40}, Row{40.0, 40}, Row{20.0, 20}, Row{99'999.0, 100'000}}) {
    ExpectFloatSet(camera, "ExposureTimeAbs", row.wanted_us);
    EXPECT_EQ(camera.OwnInteger("ExposureTime"), row.written) << row.wanted_us;
    EXPECT_EQ(FloatOf(camera, "ExposureTimeAbs"), static_cast<double>(row.written));
  }
  ExpectFloatSet(camera, "ExposureTimeAbs", 19.0, VmbErrorInvalidValue);
}

TEST(Exposure, KeepsTheCamerasOwnNameToo) {
  DescribedCamera camera("factors");

  // In the camera's own unit.
  EXPECT_EQ(FloatOf(camera, "ExposureTime"), 12.5);
}

TEST(Gain, AsAFactorIsConvertedToDecibelsAndBack) {
  DescribedCamera camera("factors");

  ExpectFloatSet(camera, "Gain", 6.0);

  EXPECT_NEAR(camera.OwnFloat("Gain"), 1.9953, 1e-4);
  EXPECT_NEAR(FloatOf(camera, "Gain"), 6.0, 1e-9);
}

TEST(Gain, AsAFactorTakesBothEndsOfItsRange) {
  DescribedCamera camera("factors");

  ExpectFloatSet(camera, "Gain", 0.0);
  EXPECT_EQ(camera.OwnFloat("Gain"), 1.0);
  ExpectFloatSet(camera, "Gain", 40.0);
  EXPECT_EQ(camera.OwnFloat("Gain"), 100.0);

  ExpectFloatSet(camera, "Gain", 40.1, VmbErrorInvalidValue);
  ExpectFloatSet(camera, "Gain", -0.1, VmbErrorInvalidValue);
}

// A factor of nothing has no value in dB.
TEST(Gain, AsAFactorFromNothingOnBeginsAtMinus60Decibels) {
  DescribedCamera camera("factor_from_zero");
  VimbaLibrary::FloatRange range;
  ASSERT_EQ(camera.Features().FloatRangeOf("Gain", range), VmbErrorSuccess);
  EXPECT_NEAR(range.min, -60.0, 1e-9);
  EXPECT_NEAR(range.max, 20.0, 1e-9);

  ExpectFloatSet(camera, "Gain", range.min);
  EXPECT_NEAR(camera.OwnFloat("Gain"), 0.001, 1e-12);
  ExpectFloatSet(camera, "Gain", -60.1, VmbErrorInvalidValue);

  camera.SetOwn("Gain", "0");
  double gain_db = 4.0;
  EXPECT_EQ(camera.Features().GetFloat("Gain", gain_db), VmbErrorInvalidValue);
  EXPECT_EQ(gain_db, 4.0);
}

TEST(Gain, AsAWholeFactorFromNothingOnBeginsAtOne) {
  DescribedCamera camera("whole_factor");
  VimbaLibrary::FloatRange range;
  ASSERT_EQ(camera.Features().FloatRangeOf("Gain", range), VmbErrorSuccess);
  EXPECT_EQ(range.min, 0.0);
  EXPECT_NEAR(range.max, 20.0, 1e-9);

  ExpectFloatSet(camera, "Gain", 0.0);
  EXPECT_EQ(camera.OwnInteger("Gain"), 1);
  ExpectFloatSet(camera, "Gain", 9.0);
  EXPECT_EQ(camera.OwnInteger("Gain"), 3);
  ExpectFloatSet(camera, "Gain", -1.0, VmbErrorInvalidValue);
}

TEST(Gain, InRawStepsIsNotFoundAndCannotBeSet) {
  DescribedCamera camera("absolute");

  ExpectFloatSet(camera, "Gain", 1.0, VmbErrorNotFound);

  EXPECT_EQ(camera.OwnInteger("GainRaw"), 100);
  EXPECT_EQ(IntOf(camera, "GainRaw"), 100);
}

TEST(Gain, InWholeDecibelsIsTheNearestOne) {
  DescribedCamera camera("whole_gain");
  EXPECT_EQ(FloatOf(camera, "Gain"), 4.0);

  ExpectFloatSet(camera, "Gain", 7.6);

  EXPECT_EQ(camera.OwnInteger("Gain"), 8);
  ExpectFloatSet(camera, "Gain", 30.5, VmbErrorInvalidValue);
}

TEST(Gain, ThatIsRawUnderTheCallersNameIsNotFound) {
  DescribedCamera camera("raw_gain");

  ExpectFloatSet(camera, "Gain", 1.0, VmbErrorNotFound);
  ExpectFloatSet(camera, "BalanceRatioAbs", 1.0, VmbErrorNotFound);

  EXPECT_EQ(camera.OwnInteger("Gain"), 4);
}

TEST(Gain, InAUnitThatIsNotKnownIsNotFound) {
  DescribedCamera camera("odd_units");

  EXPECT_FALSE(camera.Features().Has("Gain"));
  EXPECT_FALSE(camera.Features().Has("ExposureTimeAbs"));
  EXPECT_FALSE(camera.Features().Has("BalanceRatioAbs"));
  EXPECT_FALSE(camera.Features().Has("AcquisitionFrameRateAbs"));
}

TEST(Balance, FollowsItsSelector) {
  DescribedCamera camera("convention");

  ExpectEntrySet(camera, "BalanceRatioSelector", "Blue");
  EXPECT_EQ(FloatOf(camera, "BalanceRatioAbs"), 2.5);
  ExpectFloatSet(camera, "BalanceRatioAbs", 3.0);
  ExpectEntrySet(camera, "BalanceRatioSelector", "Red");
  ExpectFloatSet(camera, "BalanceRatioAbs", 2.0);

  EXPECT_EQ(camera.OwnFloat("RatioOfBlue"), 3.0);
  EXPECT_EQ(camera.OwnFloat("RatioOfRed"), 2.0);
}

TEST(Balance, InRawStepsIsNotFoundAndCannotBeSet) {
  DescribedCamera camera("whole_numbers");

  ExpectFloatSet(camera, "BalanceRatioAbs", 1.0, VmbErrorNotFound);

  EXPECT_EQ(camera.OwnInteger("BalanceRatio"), 1024);
}

TEST(FrameRate, IsWrittenUnderEitherName) {
  DescribedCamera absolute("absolute");
  DescribedCamera convention("convention");

  ExpectFloatSet(absolute, "AcquisitionFrameRateAbs", 12.5);
  ExpectFloatSet(convention, "AcquisitionFrameRateAbs", 12.5);
  ExpectFloatSet(convention, "AcquisitionFrameRateAbs", 60.5, VmbErrorInvalidValue);

  EXPECT_EQ(absolute.OwnFloat("AcquisitionFrameRateAbs"), 12.5);
  EXPECT_EQ(convention.OwnFloat("AcquisitionFrameRate"), 12.5);
}

TEST(FrameRate, ThatIsReadOnlyCannotBeSet) {
  DescribedCamera camera("factors");

  ExpectFloatSet(camera, "AcquisitionFrameRateAbs", 18.0, VmbErrorInvalidAccess);
}

TEST(FrameRateLimit, IsWhatTheStreamCarriesWhereThatIsLess) {
  DescribedCamera camera("convention");
  const double payload_bytes = 640.0 * 480.0;
  EXPECT_EQ(camera.Features().SetInteger("StreamBytesPerSecond", 3'072'000), VmbErrorSuccess);

  // Down to a whole step.
  EXPECT_DOUBLE_EQ(FloatOf(camera, "AcquisitionFrameRateLimit"), 3'072'000.0 / payload_bytes);
  ExpectFloatSet(camera, "AcquisitionFrameRateLimit", 5.0, VmbErrorInvalidAccess);
}

TEST(FrameRateLimit, OfACameraWithoutRateOrStreamIsNotFound) {
  DescribedCamera unknown("odd_units");
  DescribedCamera none("raw_gain");

  EXPECT_FALSE(unknown.Features().Has("AcquisitionFrameRateLimit"));
  EXPECT_FALSE(none.Features().Has("AcquisitionFrameRateLimit"));
}

TEST(StreamRate, SwitchesTheCamerasLimitOnAndRoundsDown) {
  DescribedCamera camera("convention");
  camera.SetOwn("DeviceLinkThroughputLimitMode", "Off");

  EXPECT_EQ(camera.Features().SetInteger("StreamBytesPerSecond", 50'007'999), VmbErrorSuccess);

  EXPECT_EQ(camera.OwnEntry("DeviceLinkThroughputLimitMode"), "On");
  EXPECT_EQ(camera.OwnInteger("DeviceLinkThroughputLimit"), 50'000'000);
  EXPECT_EQ(IntOf(camera, "StreamBytesPerSecond"), 50'000'000);
}

TEST(StreamRate, OutsideItsRangeIsRefused) {
  DescribedCamera camera("convention");

  EXPECT_EQ(camera.Features().SetInteger("StreamBytesPerSecond", 999'999), VmbErrorInvalidValue);
  EXPECT_EQ(camera.Features().SetInteger("StreamBytesPerSecond", 125'000'001), VmbErrorInvalidValue);

  EXPECT_EQ(camera.OwnInteger("DeviceLinkThroughputLimit"), 100'000'000);
}

TEST(StreamRate, InAUnitThatIsNotKnownIsNotFound) {
  DescribedCamera camera("factors");

  EXPECT_EQ(camera.Features().SetInteger("StreamBytesPerSecond", 500), VmbErrorNotFound);

  EXPECT_EQ(camera.OwnInteger("DeviceLinkThroughputLimit"), 900);
}

}  // namespace
