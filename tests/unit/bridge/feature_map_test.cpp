// feature_map_test.cpp
// What becomes of formats, automatics, triggers and commands that a camera names otherwise or lacks.
#include <gtest/gtest.h>

#include "described_camera.h"

namespace {

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

TEST(Acquisition, GoesOnWhenASecondStartFails) {
  DescribedCamera camera("convention");
  EXPECT_EQ(camera.Features().Run("AcquisitionStart"), VmbErrorSuccess);
  camera.SetOwn("Ready", "0");

  EXPECT_NE(camera.Features().Run("AcquisitionStart"), VmbErrorSuccess);

  EXPECT_TRUE(camera.State().Acquiring());
  EXPECT_EQ(camera.OwnInteger("TLParamsLocked"), 1);
}

TEST(Acquisition, ThatDoesNotStartHoldsNothing) {
  DescribedCamera camera("convention");
  camera.SetOwn("Ready", "0");

  EXPECT_NE(camera.Features().Run("AcquisitionStart"), VmbErrorSuccess);

  EXPECT_FALSE(camera.State().Acquiring());
  EXPECT_EQ(camera.OwnInteger("TLParamsLocked"), 0);
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
