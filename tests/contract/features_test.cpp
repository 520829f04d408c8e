// features_test.cpp
// Types, ranges and access rules of features, and how they depend on each other.
#include <algorithm>
#include <cstdint>
#include <limits>
#include <utility>

#include "camera_under_test.h"

namespace {

struct Features : CameraTest {};
struct Clock : CameraTest {};
struct SystemFeatures : StartedTest {};

std::pair<std::int64_t, std::int64_t> RangeOf(VmbHandle_t camera, const char* feature) {
  VmbInt64_t min = 0;
  VmbInt64_t max = 0;
  EXPECT_EQ(VmbFeatureIntRangeQuery(camera, feature, &min, &max), VmbErrorSuccess);
  return {min, max};
}

void OnChange(VmbHandle_t, const char*, void*) {}

TEST_F(Features, OfUnknownNameAreNotFound) {
  VmbInt64_t value = 0;

  EXPECT_EQ(VmbFeatureIntGet(camera, "width", &value), VmbErrorNotFound);
  EXPECT_EQ(VmbFeatureIntGet(camera, "", &value), VmbErrorNotFound);
  EXPECT_EQ(VmbFeatureEnumSet(camera, "GeVDiscoveryStatus", "Off"), VmbErrorNotFound);
  EXPECT_EQ(VmbFeatureIntGet(gVimbaHandle, "Width", &value), VmbErrorNotFound);
}

TEST_F(Features, CanBeWatched) {
  EXPECT_EQ(VmbFeatureInvalidationRegister(camera, "Width", &OnChange, nullptr), VmbErrorSuccess);
}

TEST_F(Features, OfUnknownNameCannotBeWatched) {
  EXPECT_EQ(VmbFeatureInvalidationRegister(camera, "Widht", &OnChange, nullptr), VmbErrorNotFound);
  EXPECT_EQ(VmbFeatureInvalidationRegister(gVimbaHandle, "Width", &OnChange, nullptr), VmbErrorNotFound);
}

TEST_F(Features, AskedForAsAnotherTypeAreOfTheWrongType) {
  VmbInt64_t integer = 0;
  double number = 0.0;
  const char* entry = nullptr;
  VmbUint32_t size = 0;
  VmbBool_t flag = 0;

  EXPECT_EQ(VmbFeatureIntGet(camera, "ExposureTimeAbs", &integer), VmbErrorWrongType);
  EXPECT_EQ(VmbFeatureIntGet(camera, "PixelFormat", &integer), VmbErrorWrongType);
  EXPECT_EQ(VmbFeatureFloatGet(camera, "Width", &number), VmbErrorWrongType);
  EXPECT_EQ(VmbFeatureFloatSet(camera, "PixelFormat", 1.0), VmbErrorWrongType);
  EXPECT_EQ(VmbFeatureEnumGet(camera, "Width", &entry), VmbErrorWrongType);
  EXPECT_EQ(VmbFeatureEnumSet(camera, "AcquisitionStart", "On"), VmbErrorWrongType);
  EXPECT_EQ(VmbFeatureStringGet(camera, "Width", nullptr, 0, &size), VmbErrorWrongType);
  EXPECT_EQ(VmbFeatureBoolGet(camera, "Width", &flag), VmbErrorWrongType);
  EXPECT_EQ(VmbFeatureCommandRun(camera, "Width"), VmbErrorWrongType);
  EXPECT_EQ(VmbFeatureCommandIsDone(camera, "ExposureTimeAbs", &flag), VmbErrorWrongType);
}

TEST_F(Features, RefuseValuesOutsideTheirRange) {
  const auto [smallest, largest] = RangeOf(camera, "Width");
  double shortest = 0.0;
  double longest = 0.0;
  EXPECT_EQ(VmbFeatureFloatRangeQuery(camera, "ExposureTimeAbs", &shortest, &longest), VmbErrorSuccess);
  const double exposure = FloatOf(camera, "ExposureTimeAbs");

  EXPECT_EQ(VmbFeatureIntSet(camera, "Width", largest + 1), VmbErrorInvalidValue);
  EXPECT_EQ(VmbFeatureIntSet(camera, "Width", smallest - 1), VmbErrorInvalidValue);
  EXPECT_EQ(VmbFeatureFloatSet(camera, "ExposureTimeAbs", longest * 1.01), VmbErrorInvalidValue);
  EXPECT_EQ(VmbFeatureFloatSet(camera, "ExposureTimeAbs", shortest / 2.0), VmbErrorInvalidValue);
  EXPECT_EQ(VmbFeatureFloatSet(camera, "ExposureTimeAbs", std::numeric_limits<double>::quiet_NaN()),
            VmbErrorInvalidValue);

  EXPECT_EQ(IntOf(camera, "Width"), kWidth);
  EXPECT_EQ(FloatOf(camera, "ExposureTimeAbs"), exposure);
}

TEST_F(Features, RefuseEntriesThatDoNotExist) {
  const std::string format = EnumOf(camera, "PixelFormat");
  VmbInt64_t value = 0;

  EXPECT_EQ(VmbFeatureEnumSet(camera, "PixelFormat", "Mono8Packed"), VmbErrorInvalidValue);
  EXPECT_EQ(VmbFeatureEnumSet(camera, "PixelFormat", ""), VmbErrorInvalidValue);
  EXPECT_EQ(VmbFeatureEnumAsInt(camera, "PixelFormat", "Mono8Packed", &value), VmbErrorInvalidValue);

  EXPECT_EQ(EnumOf(camera, "PixelFormat"), format);
}

TEST_F(Features, RefuseValuesBetweenTwoSteps) {
  SetInt(camera, "GVSPPacketSize", 1500);

  EXPECT_EQ(VmbFeatureIntSet(camera, "GVSPPacketSize", 1502), VmbErrorInvalidValue);

  EXPECT_EQ(IntOf(camera, "GVSPPacketSize"), 1500);
  SetInt(camera, "GVSPPacketSize", 1400);
  EXPECT_EQ(IntOf(camera, "GVSPPacketSize"), 1400);
}

TEST_F(Features, ThatAreReadOnlyCannotBeWritten) {
  EXPECT_EQ(VmbFeatureIntSet(camera, "PayloadSize", IntOf(camera, "PayloadSize")), VmbErrorInvalidAccess);
}

TEST_F(Features, OfTheImageAreLockedWhileAcquisitionRuns) {
  const std::string format = EnumOf(camera, "PixelFormat");
  RunCommand(camera, "AcquisitionStart");

  EXPECT_EQ(VmbFeatureIntSet(camera, "Width", kWidth / 2), VmbErrorInvalidAccess);
  EXPECT_EQ(VmbFeatureIntSet(camera, "Height", kHeight / 2), VmbErrorInvalidAccess);
  EXPECT_EQ(VmbFeatureEnumSet(camera, "PixelFormat", format.c_str()), VmbErrorInvalidAccess);
  SetFloat(camera, "ExposureTimeAbs", FloatOf(camera, "ExposureTimeAbs"));

  RunCommand(camera, "AcquisitionStop");
  EXPECT_EQ(IntOf(camera, "Width"), kWidth);
  SetInt(camera, "Width", kWidth / 2);
  SetInt(camera, "Height", kHeight / 2);
  SetEnum(camera, "PixelFormat", format.c_str());
}

struct Format {
  const char* name;
  VmbPixelFormatType number;
  int bytes_per_pixel;
};
constexpr Format kFormats[] = {{"Mono8", VmbPixelFormatMono8, 1},       {"BayerGR8", VmbPixelFormatBayerGR8, 1},
                               {"BayerRG8", VmbPixelFormatBayerRG8, 1}, {"BayerGB8", VmbPixelFormatBayerGB8, 1},
                               {"BayerBG8", VmbPixelFormatBayerBG8, 1}, {"YUV422Packed", VmbPixelFormatYuv422, 2},
                               {"RGB8Packed", VmbPixelFormatRgb8, 3}};

TEST_F(Features, PayloadFollowsSizeAndFormat) {
  const std::string before = EnumOf(camera, "PixelFormat");
  int formats = 0;
  for (const Format& format : kFormats) {
    if (VmbFeatureEnumSet(camera, "PixelFormat", format.name) != VmbErrorSuccess) continue;
    ++formats;
    VmbInt64_t number = 0;

    SetInt(camera, "Width", kWidth / 2);
    EXPECT_EQ(IntOf(camera, "PayloadSize"), format.bytes_per_pixel * kWidth / 2 * kHeight) << format.name;
    SetInt(camera, "Width", kWidth);
    EXPECT_EQ(IntOf(camera, "PayloadSize"), format.bytes_per_pixel * kWidth * kHeight) << format.name;
    EXPECT_EQ(EnumOf(camera, "PixelFormat"), format.name);
    EXPECT_EQ(VmbFeatureEnumAsInt(camera, "PixelFormat", format.name, &number), VmbErrorSuccess);
    EXPECT_EQ(number, format.number) << format.name;
  }
  EXPECT_GE(formats, 1);
  SetEnum(camera, "PixelFormat", before.c_str());
}

TEST_F(Features, ThatAreCommandsAreDoneAfterAWhile) {
  RunCommand(camera, "AcquisitionStop");

  EXPECT_TRUE(Eventually([&] {
    VmbBool_t done = 0;
    EXPECT_EQ(VmbFeatureCommandIsDone(camera, "AcquisitionStop", &done), VmbErrorSuccess);
    return done == 1;
  }));
}

TEST_F(Clock, KeepsTheLatchedTime) {
  RunCommand(camera, "GevTimestampControlLatch");
  const std::int64_t first = IntOf(camera, "GevTimestampValue");

  EXPECT_GT(first, 0);
  EXPECT_EQ(IntOf(camera, "GevTimestampValue"), first);
  EXPECT_TRUE(Eventually([&] {
    RunCommand(camera, "GevTimestampControlLatch");
    const std::int64_t now = IntOf(camera, "GevTimestampValue");
    EXPECT_GE(now, first);
    return now > first;
  }));
}

TEST_F(Clock, IsThatOfTheFrames) {
  FrameRing ring(camera, 3);
  ring.Start();
  RunCommand(camera, "GevTimestampControlLatch");
  auto last = static_cast<std::uint64_t>(IntOf(camera, "GevTimestampValue"));

  RunCommand(camera, "AcquisitionStart");
  const auto frames = ring.WaitFor(3);
  RunCommand(camera, "GevTimestampControlLatch");
  const auto after = static_cast<std::uint64_t>(IntOf(camera, "GevTimestampValue"));

  for (const VmbFrame_t& frame : frames) {
    EXPECT_GE(frame.timestamp, last);
    EXPECT_LE(frame.timestamp, after);
    last = frame.timestamp;
  }
}

TEST_F(SystemFeatures, ReportTheTransportLayer) {
  VmbBool_t present = 0;

  EXPECT_EQ(VmbFeatureBoolGet(gVimbaHandle, "GeVTLIsPresent", &present), VmbErrorSuccess);

  EXPECT_EQ(present, 1);
}

TEST_F(SystemFeatures, ReportWhetherDiscoveryIsAutomatic) {
  VmbInt64_t number = -1;
  EXPECT_EQ(VmbFeatureEnumAsInt(gVimbaHandle, "GeVDiscoveryStatus", "Automatic", &number), VmbErrorSuccess);
  EXPECT_EQ(number, 1);

  RunCommand(gVimbaHandle, "GeVDiscoveryAllOff");
  EXPECT_EQ(EnumOf(gVimbaHandle, "GeVDiscoveryStatus"), "Off");
  RunCommand(gVimbaHandle, "GeVDiscoveryAllOnce");
  EXPECT_EQ(EnumOf(gVimbaHandle, "GeVDiscoveryStatus"), "Off");
  RunCommand(gVimbaHandle, "GeVDiscoveryAllAuto");
  EXPECT_EQ(EnumOf(gVimbaHandle, "GeVDiscoveryStatus"), "Automatic");
  RunCommand(gVimbaHandle, "GeVDiscoveryAllOff");
  EXPECT_EQ(EnumOf(gVimbaHandle, "GeVDiscoveryStatus"), "Off");
}

TEST_F(SystemFeatures, AreOfTypesToo) {
  VmbInt64_t integer = 0;
  VmbBool_t flag = 0;

  EXPECT_EQ(VmbFeatureIntGet(gVimbaHandle, "GeVTLIsPresent", &integer), VmbErrorWrongType);
  EXPECT_EQ(VmbFeatureBoolGet(gVimbaHandle, "GeVDiscoveryStatus", &flag), VmbErrorWrongType);
  EXPECT_EQ(VmbFeatureEnumSet(gVimbaHandle, "GeVDiscoveryStatus", "Off"), VmbErrorInvalidAccess);
}

}  // namespace
