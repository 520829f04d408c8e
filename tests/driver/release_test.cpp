// release_test.cpp
// Releasing a device while frames arrive and the library refuses what it is asked.
#include <atomic>
#include <thread>

#include "VimbaC.h"
#include "bdetachedthreads.h"
#include "bstopwatch.h"
#include "driver/opened_camera.h"

namespace {

using testing::Contains;
using testing::ElementsAre;

constexpr std::uint32_t kDeadlineMs = 30'000;

// A camera that delivers by itself, as fast as frames are handed back.
struct Release : OpenedCamera {
  bool OpenRunning() {
    if (!Open(SimulatedCamera().Sensor(1280, 1024).With("scene", "none"))) return false;
    Device().Trigger()->SetSource(BImagingDeviceTrigger::eFreeRun);
    Device().StartSnap(false);
    const bool delivers = !Device().Snap(nullptr, kDeadlineMs).IsError();
    Forget();
    return delivers;
  }
  void Refuse(const std::vector<std::string>& calls) {
    for (const std::string& call : calls) cameras->Fault({{"call", call}, {"error", VmbErrorOther}, {"count", 0}});
    cameras->Fault(
        {{"call", "VmbFeatureCommandRun"}, {"feature", "AcquisitionStop"}, {"error", VmbErrorOther}, {"count", 0}});
  }
};

struct RefusedRelease : Release, testing::WithParamInterface<std::vector<std::string>> {};

TEST_P(RefusedRelease, EndsWithTheSystemShutDownAndNobodyCalledBack) {
  for (int round = 0; round < 5; ++round) {
    ASSERT_TRUE(OpenRunning());
    Refuse(GetParam());
    device->Release();
    EXPECT_THAT(cameras->CallsOf("VmbCameraClose"), ElementsAre("VmbCameraClose()"));
    EXPECT_EQ(cameras->Calls().back(), "VmbShutdown()");
    output.Clear();
    cameras->ClearFaults();
  }
}

INSTANTIATE_TEST_SUITE_P(EverySet, RefusedRelease,
                         testing::Values(std::vector<std::string>{"VmbCaptureEnd"},
                                         std::vector<std::string>{"VmbCaptureEnd", "VmbCaptureQueueFlush"},
                                         std::vector<std::string>{"VmbCaptureEnd", "VmbFrameRevokeAll"},
                                         std::vector<std::string>{"VmbCaptureEnd", "VmbCaptureQueueFlush",
                                                                  "VmbFrameRevokeAll", "VmbCameraClose"}));

// The camera goes on to fill buffers and to call back after its device has gone, until the system is shut down.
TEST_F(Release, OfACameraThatCannotBeClosedLeavesTheOthersAlone) {
  const SimulatedCamera running = SimulatedCamera(1).Sensor(1280, 1024).With("scene", "none");
  cameras.emplace(std::vector{running, SimulatedCamera(2)});
  ProfileFile other_profile;
  other_profile.Key("Camera_Identifier", "DEV_000F31000002");
  OpenDevice other(other_profile.Open());
  ASSERT_TRUE(other && Reopen());
  Device().Trigger()->SetSource(BImagingDeviceTrigger::eFreeRun);
  Device().StartSnap(false);
  ASSERT_EQ(Device().Snap(nullptr, kDeadlineMs), BError());
  Refuse({"VmbCaptureEnd", "VmbCaptureQueueFlush", "VmbFrameRevokeAll", "VmbCameraClose"});
  device->Release();
  cameras->ClearFaults();
  for (int snap = 0; snap < 20; ++snap) {
    other->StartSnap(true);
    EXPECT_EQ(other->Snap(nullptr, kDeadlineMs), BError());
    other->StopSnap();
  }
}

TEST_F(Release, WhileTheRingIsHeldBackForWantOfMemoryEnds) {
  ASSERT_TRUE(OpenHeldBack());
  Refuse({"VmbCaptureEnd"});
  device->Release();
  EXPECT_EQ(cameras->Calls().back(), "VmbShutdown()");
}

// A thread that is started like the module's own counts as one of them.
TEST_F(Release, OfTheLastDeviceShutsTheSystemDownAfterTheModulesThreadsHaveEnded) {
  ASSERT_TRUE(Open());
  constexpr double kLooksForMs = 200.0;
  std::atomic<bool> was_down{false};
  BDetachedThreads::Of("kelCameraVimba").Start([this, &was_down] {
    while (cameras->CallsOf("VmbCameraClose").empty()) std::this_thread::yield();
    const BStopWatch since_close;
    while (since_close.PeriodD() < kLooksForMs) was_down = was_down || !cameras->CallsOf("VmbShutdown").empty();
  });
  device->Release();
  BDetachedThreads::Of("kelCameraVimba").WaitForAll();
  EXPECT_FALSE(was_down);
  EXPECT_EQ(cameras->Calls().back(), "VmbShutdown()");
}

TEST_F(Release, OfBothPartnersReachesNeither) {
  cameras.emplace(std::vector{SimulatedCamera(1), SimulatedCamera(2)});
  ProfileFile other_profile;
  other_profile.Key("Camera_Identifier", "DEV_000F31000002");
  std::optional<OpenDevice> other(std::in_place, other_profile.Open());
  ASSERT_TRUE(*other && Reopen());
  ASSERT_TRUE(Device().AddBandwidthPartner(other->Get()));
  ASSERT_TRUE((*other)->AddBandwidthPartner(device->Get()));
  device.reset();
  cameras->Deliver({{"status", VmbFrameStatusIncomplete}}, 2);
  (*other)->StartSnap(true);
  (*other)->StopSnap();
  other.reset();
  EXPECT_EQ(cameras->Calls().back(), "VmbShutdown()");
}

}  // namespace
