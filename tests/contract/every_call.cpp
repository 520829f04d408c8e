// every_call.cpp
// Every call that works on a handle or the system, with arguments that are right but for the handle.
#include "every_call.h"

#include <gtest/gtest.h>

namespace {

constexpr char kNoCamera[] = "no camera";

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

}  // namespace

const std::vector<Call> kFeatureCalls{
    {"IntGet", [](VmbHandle_t handle) { return VmbFeatureIntGet(handle, "Width", &integer); }},
    {"IntSet", [](VmbHandle_t handle) { return VmbFeatureIntSet(handle, "Width", 8); }},
    {"IntRangeQuery", [](VmbHandle_t handle) { return VmbFeatureIntRangeQuery(handle, "Width", &integer, &integer); }},
    {"FloatGet", [](VmbHandle_t handle) { return VmbFeatureFloatGet(handle, "ExposureTimeAbs", &number); }},
    {"FloatSet", [](VmbHandle_t handle) { return VmbFeatureFloatSet(handle, "ExposureTimeAbs", 1.0); }},
    {"FloatRangeQuery",
     [](VmbHandle_t handle) { return VmbFeatureFloatRangeQuery(handle, "ExposureTimeAbs", &number, &number); }},
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
       return VmbCameraInfoQuery(kNoCamera, &info, sizeof info);
     }},
    {"CameraOpen", [](VmbHandle_t) { return VmbCameraOpen(kNoCamera, VmbAccessModeFull, &opened); }}};

void ExpectOfAll(const std::vector<Call>& calls, VmbHandle_t handle, VmbError_t expected) {
  for (const Call& call : calls) EXPECT_EQ(call.call(handle), expected) << "Vmb" << call.name;
}
