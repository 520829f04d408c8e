// api_rules_test.cpp
// Start-up, record sizes, null pointers and handles: the rules that every call follows.
#include <utility>

#include "frame_ring.h"

namespace {

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
    {"IntGet", [](VmbHandle_t h) { return VmbFeatureIntGet(h, "Width", &integer); }},
    {"IntSet", [](VmbHandle_t h) { return VmbFeatureIntSet(h, "Width", 8); }},
    {"IntRangeQuery", [](VmbHandle_t h) { return VmbFeatureIntRangeQuery(h, "Width", &integer, &integer); }},
    {"FloatGet", [](VmbHandle_t h) { return VmbFeatureFloatGet(h, "Gain", &number); }},
    {"FloatSet", [](VmbHandle_t h) { return VmbFeatureFloatSet(h, "Gain", 1.0); }},
    {"FloatRangeQuery", [](VmbHandle_t h) { return VmbFeatureFloatRangeQuery(h, "Gain", &number, &number); }},
    {"EnumGet", [](VmbHandle_t h) { return VmbFeatureEnumGet(h, "PixelFormat", &text); }},
    {"EnumSet", [](VmbHandle_t h) { return VmbFeatureEnumSet(h, "PixelFormat", "Mono8"); }},
    {"EnumAsInt", [](VmbHandle_t h) { return VmbFeatureEnumAsInt(h, "PixelFormat", "Mono8", &integer); }},
    {"StringGet", [](VmbHandle_t h) { return VmbFeatureStringGet(h, "DeviceID", buffer, sizeof buffer, &size); }},
    {"StringMaxlengthQuery", [](VmbHandle_t h) { return VmbFeatureStringMaxlengthQuery(h, "DeviceID", &size); }},
    {"BoolGet", [](VmbHandle_t h) { return VmbFeatureBoolGet(h, "GeVTLIsPresent", &flag); }},
    {"CommandRun", [](VmbHandle_t h) { return VmbFeatureCommandRun(h, "AcquisitionStop"); }},
    {"CommandIsDone", [](VmbHandle_t h) { return VmbFeatureCommandIsDone(h, "AcquisitionStop", &flag); }},
    {"InvalidationRegister",
     [](VmbHandle_t h) { return VmbFeatureInvalidationRegister(h, "Width", &Invalidation, nullptr); }}};

const std::vector<Call> kCameraCalls{
    {"CameraClose", [](VmbHandle_t h) { return VmbCameraClose(h); }},
    {"FrameAnnounce",
     [](VmbHandle_t h) {
       frame.buffer = buffer;
       frame.bufferSize = sizeof buffer;
       return VmbFrameAnnounce(h, &frame, sizeof frame);
     }},
    {"FrameRevokeAll", [](VmbHandle_t h) { return VmbFrameRevokeAll(h); }},
    {"CaptureStart", [](VmbHandle_t h) { return VmbCaptureStart(h); }},
    {"CaptureEnd", [](VmbHandle_t h) { return VmbCaptureEnd(h); }},
    {"CaptureFrameQueue", [](VmbHandle_t h) { return VmbCaptureFrameQueue(h, &frame, &Frame); }},
    {"CaptureQueueFlush", [](VmbHandle_t h) { return VmbCaptureQueueFlush(h); }}};

const std::vector<Call> kSystemCalls{
    {"CamerasList", [](VmbHandle_t) { return VmbCamerasList(nullptr, 0, &size, sizeof(VmbCameraInfo_t)); }},
    {"CameraInfoQuery",
     [](VmbHandle_t) {
       VmbCameraInfo_t info{};
       return VmbCameraInfoQuery(SimulatedCamera::kId, &info, sizeof info);
     }},
    {"CameraOpen", [](VmbHandle_t) { return VmbCameraOpen(SimulatedCamera::kId, VmbAccessModeFull, &opened); }}};

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
  { const StartedApi api; }

  for (const auto& calls : {kFeatureCalls, kCameraCalls, kSystemCalls}) {
    ExpectOfAll(calls, gVimbaHandle, VmbErrorApiNotStarted);
  }
}

TEST(ApiRules, TheVersionCanBeAskedForAtAnyTime) {
  VmbVersionInfo_t version{};

  EXPECT_EQ(VmbVersionQuery(&version, sizeof version), VmbErrorSuccess);

  EXPECT_GE(version.major, 1u);
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
  VmbStartup();
  EXPECT_EQ(VmbCameraOpen("DEV_000F31000001", VmbAccessModeFull, &first), VmbErrorSuccess);
  EXPECT_EQ(VmbCameraOpen("DEV_000F31000002", VmbAccessModeFull, &second), VmbErrorSuccess);

  VmbShutdown();

  const StartedApi api;
  EXPECT_EQ(VmbCameraClose(first), VmbErrorBadHandle);
  EXPECT_EQ(VmbCameraClose(second), VmbErrorBadHandle);
  const OpenedHandle again;
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
  const OpenedHandle h;
  const std::vector<std::pair<const char*, VmbError_t>> answers{
      {"IntGet", VmbFeatureIntGet(h, "Width", nullptr)},
      {"IntGet without name", VmbFeatureIntGet(h, nullptr, &integer)},
      {"IntRangeQuery", VmbFeatureIntRangeQuery(h, "Width", &integer, nullptr)},
      {"FloatGet", VmbFeatureFloatGet(h, "Gain", nullptr)},
      {"FloatRangeQuery", VmbFeatureFloatRangeQuery(h, "Gain", nullptr, &number)},
      {"EnumGet", VmbFeatureEnumGet(h, "PixelFormat", nullptr)},
      {"EnumSet", VmbFeatureEnumSet(h, "PixelFormat", nullptr)},
      {"EnumAsInt", VmbFeatureEnumAsInt(h, "PixelFormat", "Mono8", nullptr)},
      {"StringGet", VmbFeatureStringGet(h, "DeviceID", nullptr, 0, nullptr)},
      {"StringMaxlengthQuery", VmbFeatureStringMaxlengthQuery(h, "DeviceID", nullptr)},
      {"BoolGet", VmbFeatureBoolGet(gVimbaHandle, "GeVTLIsPresent", nullptr)},
      {"CommandRun", VmbFeatureCommandRun(h, nullptr)},
      {"CommandIsDone", VmbFeatureCommandIsDone(h, "AcquisitionStop", nullptr)},
      {"InvalidationRegister", VmbFeatureInvalidationRegister(h, "Width", nullptr, nullptr)}};

  for (const auto& [call, answer] : answers) EXPECT_EQ(answer, VmbErrorBadParameter) << "VmbFeature" << call;
}

TEST(ApiRules, AnUnknownHandleIsABadHandle) {
  const StartedCameras world;

  for (const auto& calls : {kFeatureCalls, kCameraCalls}) {
    // NOLINTNEXTLINE(performance-no-int-to-ptr): any value that is no handle
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
