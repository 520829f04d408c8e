// discovery_test.cpp
// The system's features, cameras that come and go, callbacks on changed features.
#include <gmock/gmock.h>

#include "bmutex.h"
#include "frame_ring.h"

namespace {

using testing::ElementsAre;

// What a callback finds in the event features, one text an event.
struct EventLog {
  BMutex mutex;
  std::vector<std::string> lines KEL_GUARDED_BY(mutex);

  static void OnEvent(VmbHandle_t handle, const char* name, void* context) {
    char ident[64] = "";
    VmbFeatureStringGet(handle, "DiscoveryCameraIdent", ident, sizeof ident, nullptr);
    EventLog& log = *static_cast<EventLog*>(context);
    const BMutexLock lock(log.mutex);
    log.lines.push_back(std::string(name) + ": " + ident + " " + EnumOf(handle, "DiscoveryCameraEvent"));
  }
  static void OnChange(VmbHandle_t, const char* name, void* context) {
    EventLog& log = *static_cast<EventLog*>(context);
    const BMutexLock lock(log.mutex);
    log.lines.emplace_back(name);
  }
  std::vector<std::string> Lines() {
    WaitIdle();
    const BMutexLock lock(mutex);
    return lines;
  }
};

std::uint32_t Listed() {
  VmbUint32_t found = 0;
  EXPECT_EQ(VmbCamerasList(nullptr, 0, &found, sizeof(VmbCameraInfo_t)), VmbErrorSuccess);
  return found;
}

TEST(SystemFeatures, TellOfTransportLayerAndDiscovery) {
  const StartedCameras world;
  VmbBool_t present = 0;
  VmbInt64_t number = -1;

  EXPECT_EQ(VmbFeatureBoolGet(gVimbaHandle, "GeVTLIsPresent", &present), VmbErrorSuccess);
  EXPECT_EQ(present, 1);
  EXPECT_EQ(EnumOf(gVimbaHandle, "GeVDiscoveryStatus"), "Off");
  RunCommand(gVimbaHandle, "GeVDiscoveryAllOnce");
  RunCommand(gVimbaHandle, "GeVDiscoveryAllAuto");
  EXPECT_EQ(EnumOf(gVimbaHandle, "GeVDiscoveryStatus"), "Automatic");
  EXPECT_EQ(VmbFeatureEnumAsInt(gVimbaHandle, "GeVDiscoveryStatus", "Automatic", &number), VmbErrorSuccess);
  EXPECT_EQ(number, 1);
  RunCommand(gVimbaHandle, "GeVDiscoveryAllOff");
  EXPECT_EQ(EnumOf(gVimbaHandle, "GeVDiscoveryStatus"), "Off");
}

TEST(SystemFeatures, FollowTheConfiguration) {
  const StartedCameras world{{SimulatedCamera()}, {{"geVTLIsPresent", false}, {"discoveryStatus", "Automatic"}}};
  VmbBool_t present = 1;

  EXPECT_EQ(VmbFeatureBoolGet(gVimbaHandle, "GeVTLIsPresent", &present), VmbErrorSuccess);

  EXPECT_EQ(present, 0);
  EXPECT_EQ(EnumOf(gVimbaHandle, "GeVDiscoveryStatus"), "Automatic");
}

TEST(Discovery, TellsOfCamerasThatGoAndCome) {
  const StartedCameras world{std::vector{SimulatedCamera(1), SimulatedCamera(2)}};
  EventLog log;
  RunCommand(gVimbaHandle, "GeVDiscoveryAllAuto");
  VmbFeatureInvalidationRegister(gVimbaHandle, "DiscoveryCameraEvent", &EventLog::OnEvent, &log);

  VimbaSimUnplug("DEV_000F31000001");
  VimbaSimUnplug("DEV_000F31000002");
  EXPECT_EQ(Listed(), 0u);
  VimbaSimPlug("DEV_000F31000001");

  EXPECT_EQ(Listed(), 1u);
  EXPECT_THAT(log.Lines(), ElementsAre("DiscoveryCameraEvent: DEV_000F31000001 Missing",
                                       "DiscoveryCameraEvent: DEV_000F31000002 Missing",
                                       "DiscoveryCameraEvent: DEV_000F31000001 Detected"));
}

TEST(Discovery, IsSilentWhileItIsOff) {
  const StartedCameras world;
  EventLog log;
  VmbFeatureInvalidationRegister(gVimbaHandle, "DiscoveryCameraEvent", &EventLog::OnEvent, &log);

  VimbaSimUnplug(SimulatedCamera::kId);

  EXPECT_THAT(log.Lines(), ElementsAre());
}

TEST(Discovery, OfAnUnchangedPlugTellsNothing) {
  const StartedCameras world;
  EventLog log;
  RunCommand(gVimbaHandle, "GeVDiscoveryAllAuto");
  VmbFeatureInvalidationRegister(gVimbaHandle, "DiscoveryCameraEvent", &EventLog::OnEvent, &log);

  VimbaSimPlug(SimulatedCamera::kId);

  EXPECT_THAT(log.Lines(), ElementsAre());
}

TEST(Unplugging, LeavesADeadHandleThatCanOnlyGiveBack) {
  const StartedCameras world;
  const OpenedHandle camera;
  FrameRing ring(camera, 2);
  ring.Start();
  VimbaSimUnplug(SimulatedCamera::kId);

  VmbInt64_t value = 0;
  EXPECT_EQ(VmbFeatureIntGet(camera, "Width", &value), VmbErrorDeviceNotOpen);
  EXPECT_EQ(VmbFeatureCommandRun(camera, "AcquisitionStart"), VmbErrorDeviceNotOpen);
  EXPECT_EQ(VmbCaptureStart(camera), VmbErrorDeviceNotOpen);
  EXPECT_EQ(ring.Queue(0), VmbErrorDeviceNotOpen);
  EXPECT_EQ(VmbCaptureEnd(camera), VmbErrorSuccess);
  EXPECT_EQ(VmbCaptureQueueFlush(camera), VmbErrorSuccess);
  EXPECT_EQ(VmbFrameRevokeAll(camera), VmbErrorSuccess);
  EXPECT_EQ(VmbCameraClose(camera), VmbErrorSuccess);
}

TEST(Unplugging, LetsNobodyOpenTheCamera) {
  const StartedCameras world;
  VmbHandle_t handle = nullptr;
  VmbCameraInfo_t info{};

  VimbaSimUnplug(SimulatedCamera::kId);

  EXPECT_EQ(VmbCameraOpen(SimulatedCamera::kId, VmbAccessModeFull, &handle), VmbErrorNotFound);
  EXPECT_EQ(VmbCameraInfoQuery(SimulatedCamera::kId, &info, sizeof info), VmbErrorNotFound);
}

TEST(PluggingIn, IsAPowerUpThatNoOldHandleSurvives) {
  const StartedCameras world;
  const OpenedHandle old;
  SetInt(old, "Width", 32);
  VimbaSimUnplug(SimulatedCamera::kId);
  VimbaSimPlug(SimulatedCamera::kId);

  const OpenedHandle fresh;

  VmbInt64_t value = 0;
  EXPECT_EQ(VmbFeatureIntGet(old, "Width", &value), VmbErrorDeviceNotOpen);
  EXPECT_EQ(IntOf(fresh, "Width"), SimulatedCamera::kWidth);
  FrameRing ring(fresh, 1);
  ring.Start();
  EXPECT_EQ(VmbCameraClose(old), VmbErrorSuccess);
  RunCommand(fresh, "AcquisitionStart");
  EXPECT_EQ(ring.WaitFor(1).front().receiveStatus, VmbFrameStatusComplete);
}

TEST(Invalidation, TellsOfFeaturesThatChangeWithAnother) {
  const StartedCameras world;
  const OpenedHandle camera;
  EventLog log;
  for (const char* feature : {"Width", "PayloadSize", "OffsetX", "Height"}) {
    EXPECT_EQ(VmbFeatureInvalidationRegister(camera, feature, &EventLog::OnChange, &log), VmbErrorSuccess);
  }

  SetInt(camera, "Width", 32);
  SetInt(camera, "Width", 32);

  EXPECT_THAT(log.Lines(), ElementsAre("Width", "PayloadSize", "OffsetX"));
}

TEST(Invalidation, OfAnUnknownFeatureIsNotFound) {
  const StartedCameras world;
  const OpenedHandle camera;

  EXPECT_EQ(VmbFeatureInvalidationRegister(camera, "Widht", &EventLog::OnChange, nullptr), VmbErrorNotFound);
  EXPECT_EQ(VmbFeatureInvalidationRegister(gVimbaHandle, "Width", &EventLog::OnChange, nullptr), VmbErrorNotFound);
}

TEST(Invalidation, EndsWithItsHandle) {
  const StartedCameras world;
  EventLog log;
  {
    const OpenedHandle camera;
    VmbFeatureInvalidationRegister(camera, "Width", &EventLog::OnChange, &log);
  }

  const OpenedHandle camera;
  SetInt(camera, "Width", 32);

  EXPECT_THAT(log.Lines(), ElementsAre());
}

}  // namespace
