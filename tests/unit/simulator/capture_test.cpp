// capture_test.cpp
// Announced frames, the capture queue and its callbacks.
#include <gmock/gmock.h>

#include <atomic>
#include <future>
#include <numeric>
#include <set>
#include <thread>
#include <tuple>

#include "bmutex.h"
#include "frame_ring.h"

namespace {

using testing::ElementsAre;

struct Capture : testing::Test {
  StartedCameras world;
  OpenedHandle camera;

  std::size_t Queued() const { return world.cameras.State()["queued"]; }
  std::size_t Dropped() const { return world.cameras.State()["dropped"]; }
};

std::vector<std::uint64_t> IdsOf(const std::vector<VmbFrame_t>& frames) {
  std::vector<std::uint64_t> ids;
  ids.reserve(frames.size());
  for (const VmbFrame_t& frame : frames) ids.push_back(frame.frameID);
  return ids;
}

TEST_F(Capture, QueueingBeforeItsStartIsAnInvalidCall) {
  FrameRing ring(camera, 1);

  EXPECT_EQ(ring.Queue(0), VmbErrorInvalidCall);
}

TEST_F(Capture, QueueingAnUnannouncedFrameIsABadParameter) {
  FrameRing ring(camera, 1);
  ring.Start();
  VmbFrame_t stranger = ring.Frame(0);

  EXPECT_EQ(ring.Queue(stranger), VmbErrorBadParameter);
}

TEST_F(Capture, AQueuedFrameCannotBeQueuedAgain) {
  FrameRing ring(camera, 1);
  ring.Start();

  EXPECT_EQ(ring.Queue(0), VmbErrorInvalidCall);
  EXPECT_EQ(Queued(), 1u);
}

TEST_F(Capture, AFrameIsAnnouncedOnce) {
  FrameRing ring(camera, 1);

  EXPECT_EQ(VmbFrameAnnounce(camera, &ring.Frame(0), sizeof(VmbFrame_t)), VmbErrorBadParameter);

  EXPECT_EQ(world.cameras.State()["announced"], 1);
}

TEST_F(Capture, AFrameWithoutBufferIsNotAnnounced) {
  VmbFrame_t empty{};

  EXPECT_EQ(VmbFrameAnnounce(camera, &empty, sizeof empty), VmbErrorBadParameter);

  EXPECT_EQ(world.cameras.State()["announced"], 0);
}

TEST_F(Capture, StartsOnce) {
  EXPECT_EQ(VmbCaptureStart(camera), VmbErrorSuccess);

  EXPECT_EQ(VmbCaptureStart(camera), VmbErrorInvalidCall);
}

TEST_F(Capture, MayBeEndedTwice) {
  EXPECT_EQ(VmbCaptureStart(camera), VmbErrorSuccess);
  EXPECT_EQ(VmbCaptureEnd(camera), VmbErrorSuccess);

  EXPECT_EQ(VmbCaptureEnd(camera), VmbErrorSuccess);
}

TEST_F(Capture, RevokingIsRefusedWhileItRuns) {
  FrameRing ring(camera, 2);
  ring.Start();

  EXPECT_EQ(VmbFrameRevokeAll(camera), VmbErrorInvalidCall);

  EXPECT_EQ(VmbCaptureEnd(camera), VmbErrorSuccess);
  EXPECT_EQ(VmbFrameRevokeAll(camera), VmbErrorSuccess);
  EXPECT_EQ(world.cameras.State()["announced"], 0);
}

TEST_F(Capture, FramesComeInTheOrderOfQueueing) {
  FrameRing ring(camera, 3);
  EXPECT_EQ(VmbCaptureStart(camera), VmbErrorSuccess);
  for (const std::size_t index : {2u, 0u, 1u}) EXPECT_EQ(ring.Queue(index), VmbErrorSuccess);

  RunCommand(camera, "AcquisitionStart");
  const auto frames = ring.WaitFor(3);

  EXPECT_THAT(IdsOf(frames), ElementsAre(0, 1, 2));
  EXPECT_EQ(frames[0].buffer, ring.Buffer(2).data());
  EXPECT_EQ(frames[2].buffer, ring.Buffer(1).data());
}

TEST_F(Capture, ACallbackMayQueueItsFrameAgain) {
  FrameRing ring(camera, 2);
  ring.KeepQueued();
  ring.Start();

  RunCommand(camera, "AcquisitionStart");

  EXPECT_GE(ring.WaitFor(50).size(), 50u);
}

TEST_F(Capture, CallbacksOfOneCameraComeOneAfterAnotherOnOneThread) {
  std::atomic<int> running{0};
  std::atomic<bool> overlapped{false};
  BMutex mutex;
  std::set<std::thread::id> threads;
  FrameRing ring(camera, 4);
  ring.on_frame = [&](VmbFrame_t& frame) {
    if (++running > 1) overlapped = true;
    {
      const BMutexLock lock(mutex);
      threads.insert(std::this_thread::get_id());
    }
    std::ignore = ring.Queue(frame);
    std::this_thread::yield();
    --running;
  };
  ring.Start();

  RunCommand(camera, "AcquisitionStart");
  ring.WaitFor(40);
  EXPECT_EQ(VmbCaptureEnd(camera), VmbErrorSuccess);

  EXPECT_FALSE(overlapped);
  EXPECT_EQ(threads.size(), 1u);
  EXPECT_EQ(threads.count(std::this_thread::get_id()), 0u);
}

TEST_F(Capture, AnImageWithoutQueuedFrameIsDropped) {
  TriggerBy(camera, "Software");
  FrameRing ring(camera, 1);
  ring.Start();
  RunCommand(camera, "AcquisitionStart");

  for (int i = 0; i < 3; ++i) RunCommand(camera, "TriggerSoftware");
  WaitIdle();
  EXPECT_EQ(Dropped(), 2u);
  EXPECT_EQ(ring.Queue(0), VmbErrorSuccess);
  RunCommand(camera, "TriggerSoftware");

  EXPECT_THAT(IdsOf(ring.WaitFor(2)), ElementsAre(0, 3));
}

TEST_F(Capture, FlushTakesEveryFrameBackWithoutCallback) {
  TriggerBy(camera, "Software");
  FrameRing ring(camera, 3);
  ring.Start();
  RunCommand(camera, "AcquisitionStart");

  EXPECT_EQ(VmbCaptureQueueFlush(camera), VmbErrorSuccess);

  RunCommand(camera, "TriggerSoftware");
  WaitIdle();
  EXPECT_EQ(ring.Arrived(), 0u);
  EXPECT_EQ(Queued(), 0u);
  EXPECT_EQ(ring.Queue(0), VmbErrorSuccess);
}

TEST_F(Capture, EndReturnsAfterTheRunningCallbackAndNoneFollows) {
  std::promise<void> entered;
  std::promise<void> released;
  std::atomic<bool> returned{false};
  FrameRing ring(camera, 3);
  ring.on_frame = [&](VmbFrame_t& frame) {
    if (frame.frameID != 0) return;
    entered.set_value();
    returned = released.get_future().wait_for(kDeadline) == std::future_status::ready;
  };
  ring.Start();
  RunCommand(camera, "AcquisitionStart");
  ASSERT_EQ(entered.get_future().wait_for(kDeadline), std::future_status::ready);

  auto callback_returned_first = std::async(std::launch::async, [&] {
    EXPECT_EQ(VmbCaptureEnd(camera), VmbErrorSuccess);
    return returned.load();
  });
  EXPECT_TRUE(Eventually([&] { return world.cameras.State()["capturing"] == false; }));
  released.set_value();

  EXPECT_TRUE(callback_returned_first.get());
  WaitIdle();
  EXPECT_EQ(ring.Arrived(), 1u);
  EXPECT_EQ(Queued(), 2u);
}

TEST_F(Capture, EndFromACallbackDoesNotWaitForItself) {
  VmbError_t answer = VmbErrorOther;
  FrameRing ring(camera, 3);
  ring.on_frame = [&](VmbFrame_t&) { answer = VmbCaptureEnd(camera); };
  ring.Start();

  RunCommand(camera, "AcquisitionStart");
  ring.WaitFor(1);
  WaitIdle();

  EXPECT_EQ(answer, VmbErrorSuccess);
  EXPECT_EQ(ring.Arrived(), 1u);
}

TEST_F(Capture, ShutDownFromACallbackDoesNothing) {
  FrameRing ring(camera, 1);
  ring.on_frame = [&](VmbFrame_t&) { VmbShutdown(); };
  ring.Start();

  RunCommand(camera, "AcquisitionStart");
  ring.WaitFor(1);

  EXPECT_EQ(IntOf(camera, "Width"), SimulatedCamera::kWidth);
}

TEST_F(Capture, ShutDownWaitsForTheRunningCallback) {
  std::promise<void> entered;
  std::atomic<bool> returned{false};
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
  // For the shut-down of the fixture.
  EXPECT_EQ(VmbStartup(), VmbErrorSuccess);
}

TEST_F(Capture, ABufferThatIsTooSmallIsNotOverrun) {
  constexpr std::uint32_t kBufferBytes = 100;
  constexpr unsigned char kUntouched = 0xA5;
  FrameRing ring(camera, 1, kBufferBytes + 1);
  ring.Frame(0).bufferSize = kBufferBytes;
  EXPECT_EQ(VmbFrameRevokeAll(camera), VmbErrorSuccess);
  EXPECT_EQ(VmbFrameAnnounce(camera, &ring.Frame(0), sizeof(VmbFrame_t)), VmbErrorSuccess);
  ring.Buffer(0)[kBufferBytes] = kUntouched;
  ring.Start();

  RunCommand(camera, "AcquisitionStart");
  const auto frames = ring.WaitFor(1);

  EXPECT_EQ(frames[0].receiveStatus, VmbFrameStatusTooSmall);
  EXPECT_EQ(frames[0].imageSize, kBufferBytes);
  EXPECT_EQ(ring.Buffer(0)[kBufferBytes], kUntouched);
}

TEST_F(Capture, ACompleteFrameSaysWhatItIs) {
  SetInt(camera, "Width", 40);
  SetInt(camera, "Height", 20);
  SetInt(camera, "OffsetX", 4);
  SetInt(camera, "OffsetY", 6);
  FrameRing ring(camera, 1);
  ring.Start();

  RunCommand(camera, "AcquisitionStart");
  const VmbFrame_t frame = ring.WaitFor(1).front();

  EXPECT_EQ(frame.receiveStatus, VmbFrameStatusComplete);
  EXPECT_EQ(frame.receiveFlags,
            VmbFrameFlagsDimension | VmbFrameFlagsOffset | VmbFrameFlagsFrameID | VmbFrameFlagsTimestamp);
  EXPECT_EQ(frame.imageSize, 800u);
  EXPECT_EQ(frame.ancillarySize, 0u);
  EXPECT_EQ(frame.pixelFormat, VmbPixelFormatMono8);
  EXPECT_THAT((std::vector{frame.width, frame.height, frame.offsetX, frame.offsetY}), ElementsAre(40, 20, 4, 6));
}

double MeanOf(const std::vector<unsigned char>& bytes) {
  return std::accumulate(bytes.begin(), bytes.end(), 0.0) / static_cast<double>(bytes.size());
}

TEST_F(Capture, LongerExposureMakesABrighterPicture) {
  FrameRing ring(camera, 2);
  TriggerBy(camera, "Software");
  ring.Start();
  RunCommand(camera, "AcquisitionStart");

  SetFloat(camera, "ExposureTimeAbs", 1000.0);
  RunCommand(camera, "TriggerSoftware");
  ring.WaitFor(1);
  SetFloat(camera, "ExposureTimeAbs", 8000.0);
  RunCommand(camera, "TriggerSoftware");
  ring.WaitFor(2);

  EXPECT_GT(MeanOf(ring.Buffer(1)), MeanOf(ring.Buffer(0)) + 20.0);
}

}  // namespace
