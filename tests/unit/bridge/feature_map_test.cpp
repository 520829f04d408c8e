// feature_map_test.cpp
// What becomes of writes to features that a camera names, scales or splits otherwise.
#include <gtest/gtest.h>

#include <limits>

#include "described_camera.h"

namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

double FloatOf(DescribedCamera& camera, const char* feature) {
  double value = kNone;
  EXPECT_EQ(camera.Features().GetFloat(feature, value), VmbErrorSuccess) << feature;
  return value;
}

std::int64_t IntOf(DescribedCamera& camera, const char* feature) {
  std::int64_t value = 0;
  EXPECT_EQ(camera.Features().GetInteger(feature, value), VmbErrorSuccess) << feature;
  return value;
}

std::string EntryOf(DescribedCamera& camera, const char* feature) {
  const char* value = "";
  EXPECT_EQ(camera.Features().GetEnum(feature, value), VmbErrorSuccess) << feature;
  return value;
}

void ExpectFloatSet(DescribedCamera& camera, const char* feature, double value, VmbError_t expected = VmbErrorSuccess) {
  EXPECT_EQ(camera.Features().SetFloat(feature, value), expected) << feature << " = " << value;
}

void ExpectEntrySet(DescribedCamera& camera, const char* feature, const char* entry,
                    VmbError_t expected = VmbErrorSuccess) {
  EXPECT_EQ(camera.Features().SetEnum(feature, entry), expected) << feature << " = " << entry;
}

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

TEST(Formats, OfNewerNamesAnswerToTheOlder) {
  DescribedCamera camera("convention");
  std::int64_t number = 0;

  ExpectEntrySet(camera, "PixelFormat", "RGB8Packed");
  EXPECT_EQ(camera.OwnEntry("PixelFormat"), "RGB8");
  EXPECT_EQ(EntryOf(camera, "PixelFormat"), "RGB8Packed");
  ExpectEntrySet(camera, "PixelFormat", "YUV422Packed");
  EXPECT_EQ(camera.OwnEntry("PixelFormat"), "YUV422_8_UYVY");
  EXPECT_EQ(EntryOf(camera, "PixelFormat"), "YUV422Packed");

  EXPECT_EQ(camera.Features().EnumValueOf("PixelFormat", "RGB8Packed", number), VmbErrorSuccess);
  EXPECT_EQ(number, VmbPixelFormatRgb8);
}

TEST(Formats, OfOlderNamesKeepThem) {
  DescribedCamera camera("same_names");
  DescribedCamera yuv("absolute");

  ExpectEntrySet(camera, "PixelFormat", "RGB8Packed");
  ExpectEntrySet(yuv, "PixelFormat", "YUV422Packed");

  EXPECT_EQ(EntryOf(camera, "PixelFormat"), "RGB8Packed");
  EXPECT_EQ(EntryOf(yuv, "PixelFormat"), "YUV422Packed");
}

TEST(Formats, ThatTheCameraLacksAreRefused) {
  DescribedCamera camera("whole_numbers");
  std::int64_t number = 0;
  // It has YUV422_8, which is Y U Y V.
  ExpectEntrySet(camera, "PixelFormat", "YUV422Packed", VmbErrorInvalidValue);

  ExpectEntrySet(camera, "PixelFormat", "RGB8Packed", VmbErrorInvalidValue);
  ExpectEntrySet(camera, "PixelFormat", "BayerRG8", VmbErrorInvalidValue);

  EXPECT_EQ(camera.Features().EnumValueOf("PixelFormat", "RGB8Packed", number), VmbErrorInvalidValue);
  EXPECT_EQ(EntryOf(camera, "PixelFormat"), "Mono8");
}

TEST(Automatics, ThatTheCameraLacksAreOffAndStayOff) {
  DescribedCamera camera("factors");

  for (const char* automatic : {"ExposureAuto", "GainAuto", "BalanceWhiteAuto"}) {
    ExpectEntrySet(camera, automatic, "Off");
    ExpectEntrySet(camera, automatic, "Continuous", VmbErrorInvalidValue);
    EXPECT_EQ(EntryOf(camera, automatic), "Off");
  }
  ExpectEntrySet(camera, "ExposureMode", "Timed");
  ExpectEntrySet(camera, "ExposureMode", "TriggerWidth", VmbErrorInvalidValue);
}

TEST(Automatics, OfTheCameraAreItsOwn) {
  DescribedCamera camera("convention");

  ExpectEntrySet(camera, "ExposureAuto", "Continuous");
  ExpectEntrySet(camera, "ExposureMode", "TriggerWidth");

  EXPECT_EQ(camera.OwnEntry("ExposureAuto"), "Continuous");
  EXPECT_EQ(camera.OwnEntry("ExposureMode"), "TriggerWidth");
}

TEST(SensorType, CannotBeWritten) {
  DescribedCamera camera("convention");

  ExpectEntrySet(camera, "SensorType", "Bayer", VmbErrorInvalidAccess);
}

TEST(Temperature, OfTheMainboardIsThatOfMain) {
  DescribedCamera camera("convention");

  ExpectEntrySet(camera, "DeviceTemperatureSelector", "Main");

  EXPECT_EQ(camera.OwnEntry("DeviceTemperatureSelector"), "Mainboard");
  EXPECT_EQ(EntryOf(camera, "DeviceTemperatureSelector"), "Main");
  EXPECT_EQ(FloatOf(camera, "DeviceTemperature"), 40.25);
  ExpectFloatSet(camera, "DeviceTemperature", 1.0, VmbErrorInvalidAccess);
}

TEST(Trigger, FreerunSwitchesItOffAndAnotherSourceBackOn) {
  DescribedCamera camera("convention");
  ExpectEntrySet(camera, "TriggerMode", "On");

  ExpectEntrySet(camera, "TriggerSource", "Freerun");
  EXPECT_EQ(camera.OwnEntry("TriggerMode"), "Off");
  EXPECT_EQ(EntryOf(camera, "TriggerMode"), "On");
  EXPECT_EQ(EntryOf(camera, "TriggerSource"), "Freerun");
  ExpectEntrySet(camera, "TriggerSource", "Software");

  EXPECT_EQ(camera.OwnEntry("TriggerMode"), "On");
  EXPECT_EQ(camera.OwnEntry("TriggerSource"), "Software");
}

TEST(Trigger, ModeSetWhileFreerunningComesWithTheNextSource) {
  DescribedCamera camera("convention");
  ExpectEntrySet(camera, "TriggerSource", "Freerun");

  ExpectEntrySet(camera, "TriggerMode", "On");
  ExpectEntrySet(camera, "TriggerMode", "Sometimes", VmbErrorInvalidValue);
  EXPECT_EQ(camera.OwnEntry("TriggerMode"), "Off");
  EXPECT_EQ(EntryOf(camera, "TriggerMode"), "On");
  ExpectEntrySet(camera, "TriggerSource", "Line2");

  EXPECT_EQ(camera.OwnEntry("TriggerMode"), "On");
}

TEST(Trigger, SourceThatTheCameraLacksIsRefusedAndFreerunGoesOn) {
  DescribedCamera camera("convention");
  ExpectEntrySet(camera, "TriggerSource", "Freerun");

  ExpectEntrySet(camera, "TriggerSource", "Line9", VmbErrorInvalidValue);

  EXPECT_EQ(EntryOf(camera, "TriggerSource"), "Freerun");
}

TEST(Trigger, EntriesHaveTheirNumbers) {
  DescribedCamera camera("convention");
  std::int64_t line = 0;
  std::int64_t freerun = 0;

  EXPECT_EQ(camera.Features().EnumValueOf("TriggerSource", "Line2", line), VmbErrorSuccess);
  EXPECT_EQ(camera.Features().EnumValueOf("TriggerSource", "Freerun", freerun), VmbErrorSuccess);

  EXPECT_EQ(line, 3);
  EXPECT_NE(freerun, 0);
  EXPECT_NE(freerun, 1);
  EXPECT_EQ(camera.Features().EnumValueOf("TriggerMode", "On", line), VmbErrorSuccess);
  EXPECT_EQ(line, 1);
}

TEST(Trigger, FreerunOfTheCameraIsItsOwn) {
  DescribedCamera camera("same_names");
  ExpectEntrySet(camera, "TriggerMode", "On");

  ExpectEntrySet(camera, "TriggerSource", "Freerun");

  EXPECT_EQ(camera.OwnEntry("TriggerMode"), "On");
}

TEST(Acquisition, HoldsFormatAndSize) {
  DescribedCamera camera("whole_numbers");
  EXPECT_EQ(camera.Features().Run("AcquisitionStart"), VmbErrorSuccess);
  EXPECT_TRUE(camera.State().Acquiring());

  EXPECT_EQ(camera.Features().SetInteger("Width", 320), VmbErrorInvalidAccess);
  EXPECT_EQ(camera.Features().SetInteger("Height", 240), VmbErrorInvalidAccess);
  EXPECT_EQ(camera.Features().SetInteger("BinningHorizontal", 2), VmbErrorInvalidAccess);
  ExpectEntrySet(camera, "PixelFormat", "Mono8", VmbErrorInvalidAccess);
  ExpectFloatSet(camera, "ExposureTimeAbs", 40.0);
  EXPECT_EQ(camera.Features().SetInteger("OffsetX", 16), VmbErrorSuccess);

  EXPECT_EQ(camera.Features().Run("AcquisitionStop"), VmbErrorSuccess);
  EXPECT_EQ(camera.Features().SetInteger("Width", 320), VmbErrorSuccess);
  ExpectEntrySet(camera, "PixelFormat", "Mono10");
}

TEST(Acquisition, LocksWhatTheCameraLocks) {
  DescribedCamera camera("convention");

  EXPECT_EQ(camera.Features().Run("AcquisitionStart"), VmbErrorSuccess);
  EXPECT_EQ(camera.OwnInteger("TLParamsLocked"), 1);
  EXPECT_EQ(camera.OwnInteger("Acquires"), 1);
  EXPECT_EQ(camera.Features().Run("AcquisitionStop"), VmbErrorSuccess);

  EXPECT_EQ(camera.OwnInteger("TLParamsLocked"), 0);
  EXPECT_EQ(camera.OwnInteger("Acquires"), 2);
  EXPECT_FALSE(camera.State().Acquiring());
}

TEST(Acquisition, KnowsWhatItsFramesWillBe) {
  DescribedCamera camera("convention");
  EXPECT_EQ(camera.Features().SetInteger("Width", 320), VmbErrorSuccess);
  EXPECT_EQ(camera.Features().SetInteger("OffsetX", 32), VmbErrorSuccess);
  EXPECT_EQ(camera.Features().SetInteger("OffsetY", 8), VmbErrorSuccess);

  EXPECT_EQ(camera.Features().Run("AcquisitionStart"), VmbErrorSuccess);

  const Bridge::FrameLayout layout = camera.State().Layout();
  EXPECT_EQ(layout.payload_bytes, 320u * 480u);
  EXPECT_EQ(layout.width, 320u);
  EXPECT_EQ(layout.height, 480u);
  EXPECT_EQ(layout.offset_x, 32u);
  EXPECT_EQ(layout.offset_y, 8u);
}

TEST(Clock, OfACameraWithoutOneIsTheHosts) {
  DescribedCamera camera("convention");
  EXPECT_EQ(IntOf(camera, "GevTimestampValue"), 0);
  constexpr std::int64_t kNsPerUs = 1'000;
  const std::int64_t before = g_get_real_time() * kNsPerUs;

  EXPECT_EQ(camera.Features().Run("GevTimestampControlLatch"), VmbErrorSuccess);

  EXPECT_GE(IntOf(camera, "GevTimestampValue"), before);
  EXPECT_LE(IntOf(camera, "GevTimestampValue"), g_get_real_time() * kNsPerUs);
  EXPECT_EQ(camera.Features().SetInteger("GevTimestampValue", 0), VmbErrorInvalidAccess);
}

}  // namespace
