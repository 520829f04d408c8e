// api_rules_test.cpp
// Start-up, record sizes, null pointers and handles: the rules that every call follows.
#include <utility>

#include "frame_ring.h"

namespace {

// What the calls get, where its value does not matter.
VmbFrame_t frame{};
VmbInt64_t integer = 0;
double number = 0.0;
const char* text = nullptr;
char buffer[8];
VmbUint32_t size = 0;
VmbBool_t flag = 0;
VmbHandle_t opened = nullptr;
void Frame(VmbHandle_t, VmbFrame_t*) {}
void Invalidation(VmbHandle_t, const char*, void*) {}

struct Call {
  const char* name;
  std::function<VmbError_t(VmbHandle_t)> call;
};

const std::vector<Call> kFeatureCalls{
    {"IntGet", [](VmbHandle_t handle) { return VmbFeatureIntGet(handle, "Width", &integer); }},
    {"IntSet", [](VmbHandle_t handle) { return VmbFeatureIntSet(handle, "Width", 8); }},
    {"IntRangeQuery", [](VmbHandle_t handle) { return VmbFeatureIntRangeQuery(handle, "Width", &integer, &integer); }},
    {"FloatGet", [](VmbHandle_t handle) { return VmbFeatureFloatGet(handle, "Gain", &number); }},
    {"FloatSet", [](VmbHandle_t handle) { return VmbFeatureFloatSet(handle, "Gain", 1.0); }},
    {"FloatRangeQuery", [](VmbHandle_t handle) { return VmbFeatureFloatRangeQuery(handle, "Gain", &number, &number); }},
    {"EnumGet", [](VmbHandle_t handle) { return VmbFeatureEnumGet(handle, "PixelFormat", &text); }},
    {"EnumSet", [](VmbHandle_t handle) { return VmbFeatureEnumSet(handle, "PixelFormat", "Mono8"); }},
    {"EnumAsInt", [](VmbHandle_t handle) { return VmbFeatureEnumAsInt(handle, "PixelFormat", "Mono8", &integer); }},
    {"StringGet",
     [](VmbHandle_t handle) { return VmbFeatureStringGet(handle, "DeviceID", buffer, sizeof buffer, &size); }},
    {"StringMaxlengthQuery",
     [](VmbHandle_t handle) { return VmbFeatureStringMaxlengthQuery(handle, "DeviceID", &size); }},
    {"BoolGet", [](VmbHandle_t handle) { return VmbFeatureBoolGet(handle, "GeVTLIsPresent", &flag); }},
    {"CommandRun", [](VmbHandle_t handle) { return VmbFeatureCommandRun(handle, "AcquisitionStop"); }},
    {"CommandIsDone", [](VmbHandle_t handle) { return VmbFeatureCommandIsDone(handle, "AcquisitionStop", &flag); }},
    {"InvalidationRegister",
     [](VmbHandle_t handle) { return VmbFeatureInvalidationRegister(handle, "Width", &Invalidation, nullptr); }}};

const std::vector<Call> kCameraCalls{
    {"CameraClose", [](VmbHandle_t handle) { return VmbCameraClose(handle); }},
    {"FrameAnnounce",
     [](VmbHandle_t handle) {
       frame.buffer = buffer;
       frame.bufferSize = sizeof buffer;
       return VmbFrameAnnounce(handle, &frame, sizeof frame);
     }},
    {"FrameRevokeAll", [](VmbHandle_t handle) { return VmbFrameRevokeAll(handle); }},
    {"CaptureStart", [](VmbHandle_t handle) { return VmbCaptureStart(handle); }},
    {"CaptureEnd", [](VmbHandle_t handle) { return VmbCaptureEnd(handle); }},
    {"CaptureFrameQueue", [](VmbHandle_t handle) { return VmbCaptureFrameQueue(handle, &frame, &Frame); }},
    {"CaptureQueueFlush", [](VmbHandle_t handle) { return VmbCaptureQueueFlush(handle); }}};

const std::vector<Call> kSystemCalls{
    {"CamerasList", [](VmbHandle_t) { return VmbCamerasList(nullptr, 0, &size, sizeof(VmbCameraInfo_t)); }},
    {"CameraInfoQuery",
     [](VmbHandle_t) {
       VmbCameraInfo_t info{};
       return VmbCameraInfoQuery(SimulatedCamera::kId, &info, sizeof info);
     }},
    {"CameraOpen", [](VmbHandle_t) { return VmbCameraOpen(SimulatedCamera::kId, VmbAccessModeFull, &opened); }}};

// Every call of the list answers so.
void ExpectOfAll(const std::vector<Call>& calls, VmbHandle_t handle, VmbError_t expected) {
  for (const Call& call : calls) EXPECT_EQ(call.call(handle), expected) << "Vmb" << call.name;
}

TEST(ApiRules, EveryCallButThreeAnswersApiNotStartedBeforeStartUp) {
  const SimulatedCameras cameras{SimulatedCamera()};

  for (const auto& calls : {kFeatureCalls, kCameraCalls, kSystemCalls}) {
    ExpectOfAll(calls, gVimbaHandle, VmbErrorApiNotStarted);
  }
}

TEST(ApiRules, EveryCallButThreeAnswersApiNotStartedAfterShutDown) {
  const SimulatedCameras cameras{SimulatedCamera()};
  EXPECT_EQ(VmbStartup(), VmbErrorSuccess);
  VmbShutdown();

  for (const auto& calls : {kFeatureCalls, kCameraCalls, kSystemCalls}) {
    ExpectOfAll(calls, gVimbaHandle, VmbErrorApiNotStarted);
  }
}

TEST(ApiRules, TheVersionCanBeAskedForBeforeStartUp) {
  VmbVersionInfo_t version{};

  EXPECT_EQ(VmbVersionQuery(&version, sizeof version), VmbErrorSuccess);

  EXPECT_EQ(version.major, 1u);
  EXPECT_EQ(version.minor, 8u);
  EXPECT_EQ(version.patch, 3u);
}

TEST(ApiRules, EachStartUpNeedsItsOwnShutDown) {
  const SimulatedCameras cameras{SimulatedCamera()};
  EXPECT_EQ(VmbStartup(), VmbErrorSuccess);
  EXPECT_EQ(VmbStartup(), VmbErrorSuccess);
  VmbShutdown();
  EXPECT_EQ(VmbCamerasList(nullptr, 0, &size, sizeof(VmbCameraInfo_t)), VmbErrorSuccess);

  VmbShutdown();

  EXPECT_EQ(VmbCamerasList(nullptr, 0, &size, sizeof(VmbCameraInfo_t)), VmbErrorApiNotStarted);
}

TEST(ApiRules, AShutDownTooManyDoesNothing) {
  const SimulatedCameras cameras{SimulatedCamera()};
  VmbShutdown();

  const StartedApi api;

  EXPECT_EQ(VmbCamerasList(nullptr, 0, &size, sizeof(VmbCameraInfo_t)), VmbErrorSuccess);
}

TEST(ApiRules, ShutDownClosesEveryCameraForGood) {
  const SimulatedCameras cameras{{SimulatedCamera(1), SimulatedCamera(2)}};
  VmbHandle_t first = nullptr;
  VmbHandle_t second = nullptr;
  EXPECT_EQ(VmbStartup(), VmbErrorSuccess);
  EXPECT_EQ(VmbCameraOpen("DEV_000F31000001", VmbAccessModeFull, &first), VmbErrorSuccess);
  EXPECT_EQ(VmbCameraOpen("DEV_000F31000002", VmbAccessModeFull, &second), VmbErrorSuccess);

  VmbShutdown();

  const StartedApi api;
  EXPECT_EQ(VmbCameraClose(first), VmbErrorBadHandle);
  EXPECT_EQ(VmbCameraClose(second), VmbErrorBadHandle);
  EXPECT_EQ(VmbCameraOpen("DEV_000F31000001", VmbAccessModeFull, &opened), VmbErrorSuccess);
}

TEST(ApiRules, ARecordOfAnotherSizeIsRefused) {
  const StartedCameras world;
  const OpenedHandle camera;
  VmbVersionInfo_t version{};
  VmbCameraInfo_t info{};

  EXPECT_EQ(VmbVersionQuery(&version, sizeof version - 1), VmbErrorStructSize);
  EXPECT_EQ(VmbCamerasList(&info, 1, &size, sizeof info + 8), VmbErrorStructSize);
  EXPECT_EQ(VmbCameraInfoQuery(SimulatedCamera::kId, &info, 0), VmbErrorStructSize);
  EXPECT_EQ(VmbFrameAnnounce(camera, &frame, sizeof frame - 8), VmbErrorStructSize);
}

TEST(ApiRules, ANullPointerIsABadParameter) {
  const StartedCameras world;
  const OpenedHandle camera;
  VmbCameraInfo_t info{};
  const std::vector<std::pair<const char*, VmbError_t>> answers{
      {"VersionQuery", VmbVersionQuery(nullptr, sizeof(VmbVersionInfo_t))},
      {"CamerasList", VmbCamerasList(&info, 1, nullptr, sizeof info)},
      {"CamerasList without list", VmbCamerasList(nullptr, 1, &size, sizeof info)},
      {"CameraInfoQuery", VmbCameraInfoQuery(SimulatedCamera::kId, nullptr, sizeof info)},
      {"CameraInfoQuery without id", VmbCameraInfoQuery(nullptr, &info, sizeof info)},
      {"CameraOpen", VmbCameraOpen(SimulatedCamera::kId, VmbAccessModeFull, nullptr)},
      {"CameraOpen without id", VmbCameraOpen(nullptr, VmbAccessModeFull, &opened)},
      {"FrameAnnounce", VmbFrameAnnounce(camera, nullptr, sizeof(VmbFrame_t))},
      {"CaptureFrameQueue", VmbCaptureFrameQueue(camera, nullptr, &Frame)}};

  for (const auto& [call, answer] : answers) EXPECT_EQ(answer, VmbErrorBadParameter) << "Vmb" << call;
}

TEST(ApiRules, ANullPointerInAFeatureCallIsABadParameter) {
  const StartedCameras world;
  const OpenedHandle camera;
  const std::vector<std::pair<const char*, VmbError_t>> answers{
      {"IntGet", VmbFeatureIntGet(camera, "Width", nullptr)},
      {"IntGet without name", VmbFeatureIntGet(camera, nullptr, &integer)},
      {"IntRangeQuery", VmbFeatureIntRangeQuery(camera, "Width", &integer, nullptr)},
      {"FloatGet", VmbFeatureFloatGet(camera, "Gain", nullptr)},
      {"FloatRangeQuery", VmbFeatureFloatRangeQuery(camera, "Gain", nullptr, &number)},
      {"EnumGet", VmbFeatureEnumGet(camera, "PixelFormat", nullptr)},
      {"EnumSet", VmbFeatureEnumSet(camera, "PixelFormat", nullptr)},
      {"EnumAsInt", VmbFeatureEnumAsInt(camera, "PixelFormat", "Mono8", nullptr)},
      {"StringGet", VmbFeatureStringGet(camera, "DeviceID", nullptr, 0, nullptr)},
      {"StringMaxlengthQuery", VmbFeatureStringMaxlengthQuery(camera, "DeviceID", nullptr)},
      {"BoolGet", VmbFeatureBoolGet(gVimbaHandle, "GeVTLIsPresent", nullptr)},
      {"CommandRun", VmbFeatureCommandRun(camera, nullptr)},
      {"CommandIsDone", VmbFeatureCommandIsDone(camera, "AcquisitionStop", nullptr)},
      {"InvalidationRegister", VmbFeatureInvalidationRegister(camera, "Width", nullptr, nullptr)}};

  for (const auto& [call, answer] : answers) EXPECT_EQ(answer, VmbErrorBadParameter) << "VmbFeature" << call;
}

TEST(ApiRules, AnUnknownHandleIsABadHandle) {
  const StartedCameras world;

  for (const auto& calls : {kFeatureCalls, kCameraCalls}) {
    // Any value that is no handle.
    ExpectOfAll(calls, reinterpret_cast<VmbHandle_t>(std::uintptr_t{0x7777}), VmbErrorBadHandle);
    ExpectOfAll(calls, nullptr, VmbErrorBadHandle);
  }
}

TEST(ApiRules, AClosedHandleStaysABadHandle) {
  const StartedCameras world;
  VmbHandle_t stale = nullptr;
  {
    const OpenedHandle camera;
    stale = camera;
  }

  const OpenedHandle again;

  EXPECT_NE(static_cast<VmbHandle_t>(again), stale);
  for (const auto& calls : {kFeatureCalls, kCameraCalls}) ExpectOfAll(calls, stale, VmbErrorBadHandle);
}

TEST(ApiRules, TheSystemIsNoCamera) {
  const StartedCameras world;

  ExpectOfAll(kCameraCalls, gVimbaHandle, VmbErrorBadHandle);
}

}  // namespace
