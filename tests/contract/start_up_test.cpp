// start_up_test.cpp
// Start-up and shut-down: what works before, between and after.
#include <atomic>
#include <future>
#include <vector>

#include "camera_under_test.h"
#include "every_call.h"

namespace {

struct StartUp : ContractTest {};
struct ShutDown : ContractTest {};

VmbError_t ListCameras() {
  VmbUint32_t found = 0;
  return VmbCamerasList(nullptr, 0, &found, sizeof(VmbCameraInfo_t));
}

TEST_F(StartUp, IsNeededByEveryCallButThree) {
  for (const auto& calls : {kFeatureCalls, kCameraCalls, kSystemCalls}) {
    ExpectOfAll(calls, gVimbaHandle, VmbErrorApiNotStarted);
  }
}

TEST_F(StartUp, IsNeededAgainAfterAShutDown) {
  EXPECT_EQ(VmbStartup(), VmbErrorSuccess);
  VmbShutdown();

  for (const auto& calls : {kFeatureCalls, kCameraCalls, kSystemCalls}) {
    ExpectOfAll(calls, gVimbaHandle, VmbErrorApiNotStarted);
  }
}

TEST_F(StartUp, IsNotNeededToAskForTheVersion) {
  VmbVersionInfo_t version{};

  EXPECT_EQ(VmbVersionQuery(&version, sizeof version), VmbErrorSuccess);

  EXPECT_EQ(version.major, 1u);
  EXPECT_EQ(version.minor, 8u);
  EXPECT_EQ(version.patch, 3u);
}

TEST_F(StartUp, NeedsItsOwnShutDown) {
  EXPECT_EQ(VmbStartup(), VmbErrorSuccess);
  EXPECT_EQ(VmbStartup(), VmbErrorSuccess);
  VmbShutdown();
  EXPECT_EQ(ListCameras(), VmbErrorSuccess);

  VmbShutdown();

  EXPECT_EQ(ListCameras(), VmbErrorApiNotStarted);
}

TEST_F(ShutDown, WithoutStartUpDoesNothing) {
  VmbShutdown();

  const StartedApi api;

  EXPECT_EQ(ListCameras(), VmbErrorSuccess);
}

TEST_F(ShutDown, ClosesEveryCameraForGood) {
  EXPECT_EQ(VmbStartup(), VmbErrorSuccess);
  const std::string id = CameraUnderTest();
  VmbHandle_t stale = nullptr;
  EXPECT_EQ(VmbCameraOpen(id.c_str(), VmbAccessModeFull, &stale), VmbErrorSuccess);

  VmbShutdown();

  const StartedApi api;
  EXPECT_EQ(VmbCameraClose(stale), VmbErrorBadHandle);
  VmbHandle_t fresh = nullptr;
  EXPECT_EQ(VmbCameraOpen(id.c_str(), VmbAccessModeFull, &fresh), VmbErrorSuccess);
  EXPECT_NE(fresh, stale);
}

TEST_F(ShutDown, FromACallbackDoesNothing) {
  const StartedApi api;
  const CameraHandle camera(CameraUnderTest());
  MakeReady(camera);
  FrameRing ring(camera, 1);
  ring.on_frame = [&](VmbFrame_t&) { VmbShutdown(); };
  ring.Start();

  RunCommand(camera, "AcquisitionStart");
  ring.WaitFor(1);

  EXPECT_EQ(IntOf(camera, "Width"), kWidth);
}

TEST_F(ShutDown, WaitsForTheRunningCallback) {
  EXPECT_EQ(VmbStartup(), VmbErrorSuccess);
  std::promise<void> entered;
  std::atomic<bool> returned{false};
  const CameraHandle camera(CameraUnderTest());
  MakeReady(camera);
  FrameRing ring(camera, 1);
  ring.on_frame = [&](VmbFrame_t&) {
    entered.set_value();
    // The API stops answering in VmbShutdown, which from then on waits for this callback.
    VmbInt64_t width = 0;
    returned = Eventually([&] { return VmbFeatureIntGet(camera, "Width", &width) == VmbErrorApiNotStarted; });
  };
  ring.Start();
  RunCommand(camera, "AcquisitionStart");
  ASSERT_EQ(entered.get_future().wait_for(kDeadline), std::future_status::ready);

  VmbShutdown();

  EXPECT_TRUE(returned);
}

TEST_F(ShutDown, TakesCapturingCamerasAway) {
  EXPECT_EQ(VmbStartup(), VmbErrorSuccess);
  const CameraHandle camera(CameraUnderTest());
  MakeReady(camera);
  FrameRing ring(camera, 4);
  ring.KeepQueued();
  ring.Start();
  RunCommand(camera, "AcquisitionStart");
  ring.WaitFor(2);

  VmbShutdown();
  const std::size_t arrived = ring.Arrived();

  // A callback that was late would come while the next opening receives frames.
  const StartedApi api;
  const CameraHandle fresh(CameraUnderTest());
  MakeReady(fresh);
  FrameRing next(fresh, 2);
  next.Start();
  RunCommand(fresh, "AcquisitionStart");
  next.WaitFor(2);
  EXPECT_EQ(ring.Arrived(), arrived);
}

}  // namespace
