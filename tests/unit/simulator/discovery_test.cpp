// discovery_test.cpp
// The system's features, cameras that come and go, callbacks for changed features.
#include <gmock/gmock.h>

#include "bmutex.h"
#include "simulated_link.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// What a callback finds in the event features, one text an event.
struct EventLog {
  BMutex mutex;
  std::vector<std::string> lines KEL_GUARDED_BY(mutex);

  void WatchEvents() {
    EXPECT_EQ(VmbFeatureInvalidationRegister(gVimbaHandle, "DiscoveryCameraEvent", &OnEvent, this), VmbErrorSuccess);
  }
  void Watch(VmbHandle_t camera, const char* feature) {
    EXPECT_EQ(VmbFeatureInvalidationRegister(camera, feature, &OnChange, this), VmbErrorSuccess) << feature;
  }
  static void OnEvent(VmbHandle_t handle, const char* name, void* context) {
    char ident[64] = "";
    EXPECT_EQ(VmbFeatureStringGet(handle, "DiscoveryCameraIdent", ident, sizeof ident, nullptr), VmbErrorSuccess);
    EventLog& log = *static_cast<EventLog*>(context);
    const BMutexLock lock(log.mutex);
    log.lines.push_back(std::string(name) + ": " + ident + " " + EnumOf(handle, "DiscoveryCameraEvent"));
  }
  static void OnChange(VmbHandle_t, const char* name, void* context) {
    EventLog& log = *static_cast<EventLog*>(context);
    const BMutexLock lock(log.mutex);
    log.lines.emplace_back(name);
  }
  // Once no callback is due.
  std::vector<std::string> Lines() {
    WaitIdle();
    const BMutexLock lock(mutex);
    return lines;
  }
};

void Unplug(const char* camera_id = SimulatedCamera::kId) { EXPECT_EQ(VimbaSimUnplug(camera_id), kAccepted); }

void Plug(const char* camera_id = SimulatedCamera::kId) { EXPECT_EQ(VimbaSimPlug(camera_id), kAccepted); }

std::uint32_t Listed() {
  VmbUint32_t found = 0;
  EXPECT_EQ(VmbCamerasList(nullptr, 0, &found, sizeof(VmbCameraInfo_t)), VmbErrorSuccess);
  return found;
}

TEST(SystemFeatures, FollowTheConfiguration) {
  const StartedCameras world{{SimulatedCamera()}, {{"geVTLIsPresent", false}, {"discoveryStatus", "Automatic"}}};
  VmbBool_t present = 1;

  EXPECT_EQ(VmbFeatureBoolGet(gVimbaHandle, "GeVTLIsPresent", &present), VmbErrorSuccess);

  EXPECT_EQ(present, 0);
  EXPECT_EQ(EnumOf(gVimbaHandle, "GeVDiscoveryStatus"), "Automatic");
}

TEST(Discovery, ReportsCamerasThatGoAndCome) {
  EventLog log;
  const StartedCameras world{std::vector{SimulatedCamera(1), SimulatedCamera(2)}};
  RunCommand(gVimbaHandle, "GeVDiscoveryAllAuto");
  log.WatchEvents();

  Unplug("DEV_000F31000001");
  Unplug("DEV_000F31000002");
  EXPECT_EQ(Listed(), 0u);
  Plug("DEV_000F31000001");

  EXPECT_EQ(Listed(), 1u);
  EXPECT_THAT(log.Lines(), ElementsAre("DiscoveryCameraEvent: DEV_000F31000001 Missing",
                                       "DiscoveryCameraEvent: DEV_000F31000002 Missing",
                                       "DiscoveryCameraEvent: DEV_000F31000001 Detected"));
}

TEST(Discovery, IsSilentWhileItIsOff) {
  EventLog log;
  const StartedCameras world;
  log.WatchEvents();

  Unplug();

  EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST(Discovery, IsSilentAboutACameraThatIsPluggedInAlready) {
  EventLog log;
  const StartedCameras world;
  RunCommand(gVimbaHandle, "GeVDiscoveryAllAuto");
  log.WatchEvents();

  Plug();

  EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST(Unplugging, LeavesADeadHandleThatCanOnlyGiveBack) {
  const StartedCameras world;
  const OpenedHandle camera;
  FrameRing ring(camera, 2);
  ring.Start();
  VmbInt64_t value = 0;

  Unplug();

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

  Unplug();

  EXPECT_EQ(VmbCameraOpen(SimulatedCamera::kId, VmbAccessModeFull, &handle), VmbErrorNotFound);
  EXPECT_EQ(VmbCameraInfoQuery(SimulatedCamera::kId, &info, sizeof info), VmbErrorNotFound);
}

TEST(PluggingIn, IsAPowerUpThatNoOldHandleSurvives) {
  const StartedCameras world;
  const OpenedHandle old;
  SetInt(old, "Width", 32);
  VmbInt64_t value = 0;

  Unplug();
  Plug();

  const OpenedHandle fresh;
  EXPECT_EQ(IntOf(fresh, "Width"), SimulatedCamera::kWidth);
  EXPECT_EQ(VmbFeatureIntGet(old, "Width", &value), VmbErrorDeviceNotOpen);
}

TEST(PluggingIn, LetsANewHandleTakePicturesWhateverBecomesOfTheOldOne) {
  const StartedCameras world;
  const OpenedHandle old;
  Unplug();
  Plug();
  const OpenedHandle fresh;
  FrameRing ring(fresh, 1);
  ring.Start();

  EXPECT_EQ(VmbCameraClose(old), VmbErrorSuccess);
  RunCommand(fresh, "AcquisitionStart");

  EXPECT_EQ(ring.WaitFor(1).front().receiveStatus, VmbFrameStatusComplete);
}

TEST(Invalidation, ReportsEveryFeatureThatChangesWithAnother) {
  EventLog log;
  const StartedCameras world;
  const OpenedHandle camera;
  for (const char* feature : {"Width", "PayloadSize", "OffsetX", "Height"}) log.Watch(camera, feature);

  SetInt(camera, "Width", 32);
  SetInt(camera, "Width", 32);

  EXPECT_THAT(log.Lines(), ElementsAre("Width", "PayloadSize", "OffsetX"));
}

TEST(Invalidation, EndsWithItsHandle) {
  EventLog log;
  const StartedCameras world;
  {
    const OpenedHandle camera;
    log.Watch(camera, "Width");
  }

  const OpenedHandle camera;
  SetInt(camera, "Width", 32);

  EXPECT_THAT(log.Lines(), IsEmpty());
}

}  // namespace
