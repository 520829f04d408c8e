// arguments_test.cpp
// Record sizes, null pointers and handles.
#include <cstdint>
#include <utility>
#include <vector>

#include "camera_under_test.h"
#include "every_call.h"

namespace {

struct Arguments : CameraTest {
  VmbCameraInfo_t info{};
  VmbUint32_t number = 0;
  VmbHandle_t handle = nullptr;
};
struct FeatureArguments : CameraTest {};
struct Handles : CameraTest {};

void OnFrame(VmbHandle_t, VmbFrame_t*) {}

TEST_F(Arguments, ThatAreRecordsHaveOneSize) {
  VmbVersionInfo_t version{};
  unsigned char buffer[8];
  VmbFrame_t frame{};
  frame.buffer = buffer;
  frame.bufferSize = sizeof buffer;

  EXPECT_EQ(VmbVersionQuery(&version, sizeof version - 1), VmbErrorStructSize);
  EXPECT_EQ(VmbCamerasList(&info, 1, &number, sizeof info + 8), VmbErrorStructSize);
  EXPECT_EQ(VmbCameraInfoQuery(CameraUnderTest().c_str(), &info, 0), VmbErrorStructSize);
  EXPECT_EQ(VmbFrameAnnounce(camera, &frame, sizeof frame - 8), VmbErrorStructSize);
}

TEST_F(Arguments, ThatAreNullAreBadParameters) {
  const std::string id = CameraUnderTest();
  const std::vector<std::pair<const char*, VmbError_t>> answers{
      {"VersionQuery", VmbVersionQuery(nullptr, sizeof(VmbVersionInfo_t))},
      {"CamerasList", VmbCamerasList(&info, 1, nullptr, sizeof info)},
      {"CamerasList without list", VmbCamerasList(nullptr, 1, &number, sizeof info)},
      {"CameraInfoQuery", VmbCameraInfoQuery(id.c_str(), nullptr, sizeof info)},
      {"CameraInfoQuery without id", VmbCameraInfoQuery(nullptr, &info, sizeof info)},
      {"CameraOpen", VmbCameraOpen(id.c_str(), VmbAccessModeFull, nullptr)},
      {"CameraOpen without id", VmbCameraOpen(nullptr, VmbAccessModeFull, &handle)},
      {"FrameAnnounce", VmbFrameAnnounce(camera, nullptr, sizeof(VmbFrame_t))},
      {"CaptureFrameQueue", VmbCaptureFrameQueue(camera, nullptr, &OnFrame)}};

  for (const auto& [call, answer] : answers) EXPECT_EQ(answer, VmbErrorBadParameter) << "Vmb" << call;
}

TEST_F(FeatureArguments, ThatAreNullAreBadParameters) {
  VmbInt64_t integer = 0;
  double real = 0.0;
  const std::vector<std::pair<const char*, VmbError_t>> answers{
      {"IntGet", VmbFeatureIntGet(camera, "Width", nullptr)},
      {"IntGet without name", VmbFeatureIntGet(camera, nullptr, &integer)},
      {"IntRangeQuery", VmbFeatureIntRangeQuery(camera, "Width", &integer, nullptr)},
      {"FloatGet", VmbFeatureFloatGet(camera, "ExposureTimeAbs", nullptr)},
      {"FloatRangeQuery", VmbFeatureFloatRangeQuery(camera, "ExposureTimeAbs", nullptr, &real)},
      {"EnumGet", VmbFeatureEnumGet(camera, "PixelFormat", nullptr)},
      {"EnumSet", VmbFeatureEnumSet(camera, "PixelFormat", nullptr)},
      {"EnumAsInt", VmbFeatureEnumAsInt(camera, "PixelFormat", "Mono8", nullptr)},
      {"StringGet", VmbFeatureStringGet(camera, "DeviceModelName", nullptr, 0, nullptr)},
      {"StringMaxlengthQuery", VmbFeatureStringMaxlengthQuery(camera, "DeviceModelName", nullptr)},
      {"BoolGet", VmbFeatureBoolGet(gVimbaHandle, "GeVTLIsPresent", nullptr)},
      {"CommandRun", VmbFeatureCommandRun(camera, nullptr)},
      {"CommandIsDone", VmbFeatureCommandIsDone(camera, "AcquisitionStop", nullptr)},
      {"InvalidationRegister", VmbFeatureInvalidationRegister(camera, "Width", nullptr, nullptr)}};

  for (const auto& [call, answer] : answers) EXPECT_EQ(answer, VmbErrorBadParameter) << "VmbFeature" << call;
}

TEST_F(Handles, ThatAreUnknownAreBad) {
  for (const auto& calls : {kFeatureCalls, kCameraCalls}) {
    // Any value that is no handle.
    ExpectOfAll(calls, reinterpret_cast<VmbHandle_t>(std::uintptr_t{0x7777}), VmbErrorBadHandle);
    ExpectOfAll(calls, nullptr, VmbErrorBadHandle);
  }
}

TEST_F(Handles, ThatAreClosedStayBad) {
  const VmbHandle_t stale = camera;
  EXPECT_EQ(VmbCameraClose(stale), VmbErrorSuccess);

  const CameraHandle again(CameraUnderTest());

  EXPECT_NE(static_cast<VmbHandle_t>(again), stale);
  for (const auto& calls : {kFeatureCalls, kCameraCalls}) ExpectOfAll(calls, stale, VmbErrorBadHandle);
}

TEST_F(Handles, OfTheSystemAreNoCameras) { ExpectOfAll(kCameraCalls, gVimbaHandle, VmbErrorBadHandle); }

}  // namespace
