// capture_test.cpp
// Announced frames, the capture queue and its callbacks.
#include <gmock/gmock.h>

#include <atomic>
#include <future>
#include <set>
#include <thread>

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

TEST_F(Capture, QueueingWithoutARunningEngineIsAnInvalidCall) {
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
  VmbFrame_t empty{};

  EXPECT_EQ(VmbFrameAnnounce(camera, &ring.Frame(0), sizeof(VmbFrame_t)), VmbErrorBadParameter);
  EXPECT_EQ(VmbFrameAnnounce(camera, &empty, sizeof empty), VmbErrorBadParameter);
}

TEST_F(Capture, StartsOnce) {
  EXPECT_EQ(VmbCaptureStart(camera), VmbErrorSuccess);
  EXPECT_EQ(VmbCaptureStart(camera), VmbErrorInvalidCall);
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
  for (const std::size_t index : {2u, 0u, 1u}) ring.Queue(index);

  RunCommand(camera, "AcquisitionStart");
  const auto frames = ring.WaitFor(3);

  EXPECT_THAT(IdsOf(frames), ElementsAre(0, 1, 2));
  EXPECT_EQ(frames[0].buffer, ring.Buffer(2).data());
  EXPECT_EQ(frames[2].buffer, ring.Buffer(1).data());
}

TEST_F(Capture, ACallbackMayQueueItsFrameAgain) {
  FrameRing ring(camera, 2);
  ring.on_frame = [&](VmbFrame_t& frame) { ring.Queue(frame); };
  ring.Start();

  RunCommand(camera, "AcquisitionStart");

  EXPECT_GE(ring.WaitFor(50).size(), 50u);
}

TEST_F(Capture, CallbacksOfOneCameraComeOneAfterAnotherOnOneThread) {
  FrameRing ring(camera, 4);
  std::atomic<int> running{0};
  std::atomic<int> most{0};
  std::set<std::thread::id> threads;
  ring.on_frame = [&](VmbFrame_t& frame) {
    most = std::max(most.load(), ++running);
    threads.insert(std::this_thread::get_id());
    ring.Queue(frame);
    std::this_thread::yield();
    --running;
  };
  ring.Start();

  RunCommand(camera, "AcquisitionStart");
  ring.WaitFor(40);
  EXPECT_EQ(VmbCaptureEnd(camera), VmbErrorSuccess);

  EXPECT_EQ(most, 1);
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

  EXPECT_THAT(IdsOf(ring.WaitFor(1)), ElementsAre(0));
  EXPECT_EQ(Dropped(), 2u);
  ring.Queue(0);
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
  FrameRing ring(camera, 3);
  std::promise<void> entered;
  std::promise<void> released;
  std::atomic<bool> returned{false};
  ring.on_frame = [&](VmbFrame_t& frame) {
    if (frame.frameID != 0) return;
    entered.set_value();
    released.get_future().wait();
    returned = true;
  };
  ring.Start();
  RunCommand(camera, "AcquisitionStart");
  entered.get_future().wait();

  auto ending = std::async(std::launch::async, [&] {
    VmbCaptureEnd(camera);
    return returned.load();
  });
  while (world.cameras.State()["capturing"] == true) std::this_thread::yield();
  released.set_value();

  EXPECT_TRUE(ending.get());
  WaitIdle();
  EXPECT_EQ(ring.Arrived(), 1u);
  EXPECT_EQ(Queued(), 2u);
}

TEST_F(Capture, EndFromACallbackDoesNotWaitForItself) {
  FrameRing ring(camera, 3);
  ring.on_frame = [&](VmbFrame_t&) { EXPECT_EQ(VmbCaptureEnd(camera), VmbErrorSuccess); };
  ring.Start();

  RunCommand(camera, "AcquisitionStart");
  ring.WaitFor(1);
  WaitIdle();

  EXPECT_EQ(ring.Arrived(), 1u);
}

TEST_F(Capture, ShutDownWaitsForTheRunningCallback) {
  FrameRing ring(camera, 1);
  std::promise<void> entered;
  std::atomic<bool> returned{false};
  ring.on_frame = [&](VmbFrame_t&) {
    entered.set_value();
    // As long as the API is up the shut-down has not come as far as this callback.
    const auto deadline = std::chrono::steady_clock::now() + kDeadline;
    VmbInt64_t width = 0;
    while (!VmbFeatureIntGet(camera, "Width", &width) && std::chrono::steady_clock::now() < deadline)
      std::this_thread::yield();
    returned = true;
  };
  ring.Start();
  RunCommand(camera, "AcquisitionStart");
  entered.get_future().wait();

  VmbShutdown();

  EXPECT_TRUE(returned);
  VmbStartup();
}

TEST_F(Capture, ABufferThatIsTooSmallIsNotOverrun) {
  constexpr std::uint32_t kSize = 100;
  FrameRing ring(camera, 1, kSize + 1);
  ring.Frame(0).bufferSize = kSize;
  VmbFrameRevokeAll(camera);
  EXPECT_EQ(VmbFrameAnnounce(camera, &ring.Frame(0), sizeof(VmbFrame_t)), VmbErrorSuccess);
  ring.Buffer(0)[kSize] = 0xA5;
  ring.Start();

  RunCommand(camera, "AcquisitionStart");
  const auto frames = ring.WaitFor(1);

  EXPECT_EQ(frames[0].receiveStatus, VmbFrameStatusTooSmall);
  EXPECT_EQ(frames[0].imageSize, kSize);
  EXPECT_EQ(ring.Buffer(0)[kSize], 0xA5);
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
  EXPECT_EQ(frame.receiveFlags, 15u);
  EXPECT_EQ(frame.imageSize, 800u);
  EXPECT_EQ(frame.ancillarySize, 0u);
  EXPECT_EQ(frame.pixelFormat, static_cast<VmbPixelFormat_t>(VmbPixelFormatMono8));
  EXPECT_THAT((std::vector{frame.width, frame.height, frame.offsetX, frame.offsetY}), ElementsAre(40, 20, 4, 6));
}

TEST_F(Capture, LongerExposureMakesABrighterPicture) {
  FrameRing ring(camera, 2);
  TriggerBy(camera, "Software");
  ring.Start();
  RunCommand(camera, "AcquisitionStart");
  const auto mean = [&](std::size_t index) {
    double sum = 0.0;
    for (const unsigned char value : ring.Buffer(index)) sum += value;
    return sum / static_cast<double>(ring.Buffer(index).size());
  };
  SetFloat(camera, "ExposureTimeAbs", 1000.0);
  RunCommand(camera, "TriggerSoftware");
  ring.WaitFor(1);
  SetFloat(camera, "ExposureTimeAbs", 8000.0);
  RunCommand(camera, "TriggerSoftware");
  ring.WaitFor(2);

  EXPECT_GT(mean(1), mean(0) + 20.0);
}

}  // namespace
