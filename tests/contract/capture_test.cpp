// capture_test.cpp
// Announced frames, the capture queue, and what frames say.
#include <algorithm>
#include <vector>

#include "camera_under_test.h"

namespace {

struct Capture : CameraTest {};
struct Frames : CameraTest {};

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
}

TEST_F(Capture, AFrameIsAnnouncedOnce) {
  FrameRing ring(camera, 1);

  EXPECT_EQ(VmbFrameAnnounce(camera, &ring.Frame(0), sizeof(VmbFrame_t)), VmbErrorBadParameter);
}

TEST_F(Capture, AFrameWithoutBufferIsNotAnnounced) {
  unsigned char byte = 0;
  VmbFrame_t no_buffer{};
  no_buffer.bufferSize = 1;
  VmbFrame_t no_size{};
  no_size.buffer = &byte;

  EXPECT_EQ(VmbFrameAnnounce(camera, &no_buffer, sizeof no_buffer), VmbErrorBadParameter);
  EXPECT_EQ(VmbFrameAnnounce(camera, &no_size, sizeof no_size), VmbErrorBadParameter);
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
}

TEST_F(Capture, ARevokedFrameIsUnknown) {
  FrameRing ring(camera, 1);
  EXPECT_EQ(VmbFrameRevokeAll(camera), VmbErrorSuccess);
  EXPECT_EQ(VmbCaptureStart(camera), VmbErrorSuccess);

  EXPECT_EQ(ring.Queue(0), VmbErrorBadParameter);

  EXPECT_EQ(VmbFrameAnnounce(camera, &ring.Frame(0), sizeof(VmbFrame_t)), VmbErrorSuccess);
  EXPECT_EQ(ring.Queue(0), VmbErrorSuccess);
}

TEST_F(Capture, FlushGivesQueuedFramesBack) {
  FrameRing ring(camera, 3);
  ring.Start();

  EXPECT_EQ(VmbCaptureQueueFlush(camera), VmbErrorSuccess);

  EXPECT_EQ(ring.Arrived(), 0u);
  EXPECT_EQ(ring.Queue(2), VmbErrorSuccess);
  RunCommand(camera, "AcquisitionStart");
  // The others would have come before it.
  EXPECT_EQ(ring.WaitFor(1).front().buffer, ring.Buffer(2).data());
}

TEST_F(Capture, KeepsFramesOverItsEndUntilTheyAreFlushed) {
  FrameRing ring(camera, 1);
  ring.Start();
  EXPECT_EQ(VmbCaptureEnd(camera), VmbErrorSuccess);
  EXPECT_EQ(VmbCaptureStart(camera), VmbErrorSuccess);
  EXPECT_EQ(ring.Queue(0), VmbErrorInvalidCall);

  EXPECT_EQ(VmbCaptureQueueFlush(camera), VmbErrorSuccess);

  EXPECT_EQ(ring.Queue(0), VmbErrorSuccess);
}

TEST_F(Capture, MayBeStartedAgain) {
  FrameRing ring(camera, 2);
  for (std::size_t round = 1; round <= 3; ++round) {
    ring.Start();
    RunCommand(camera, "AcquisitionStart");
    EXPECT_EQ(ring.WaitFor(2 * round).size(), 2 * round);
    RunCommand(camera, "AcquisitionStop");
    EXPECT_EQ(VmbCaptureEnd(camera), VmbErrorSuccess);
    EXPECT_EQ(VmbCaptureQueueFlush(camera), VmbErrorSuccess);
  }
}

TEST_F(Frames, ComeInTheOrderOfQueueing) {
  FrameRing ring(camera, 3);
  EXPECT_EQ(VmbCaptureStart(camera), VmbErrorSuccess);
  for (const std::size_t index : {2u, 0u, 1u}) EXPECT_EQ(ring.Queue(index), VmbErrorSuccess);

  RunCommand(camera, "AcquisitionStart");
  const auto frames = ring.WaitFor(3);

  EXPECT_EQ(frames[0].buffer, ring.Buffer(2).data());
  EXPECT_EQ(frames[1].buffer, ring.Buffer(0).data());
  EXPECT_EQ(frames[2].buffer, ring.Buffer(1).data());
  EXPECT_LT(frames[0].frameID, frames[1].frameID);
  EXPECT_LT(frames[1].frameID, frames[2].frameID);
}

TEST_F(Frames, ThatAreNotQueuedAreLeftAlone) {
  constexpr unsigned char kUntouched = 0xA5;
  FrameRing ring(camera, 2);
  std::ranges::fill(ring.Buffer(1), kUntouched);
  // The second one is announced, and never queued.
  ring.on_frame = [&](VmbFrame_t& frame) { std::ignore = ring.Queue(frame); };
  EXPECT_EQ(VmbCaptureStart(camera), VmbErrorSuccess);
  EXPECT_EQ(ring.Queue(0), VmbErrorSuccess);

  RunCommand(camera, "AcquisitionStart");
  const auto frames = ring.WaitFor(5);

  for (const VmbFrame_t& frame : frames) EXPECT_EQ(frame.buffer, ring.Buffer(0).data());
  EXPECT_TRUE(std::ranges::all_of(ring.Buffer(1), [](unsigned char byte) { return byte == kUntouched; }));
}

TEST_F(Frames, ThatAreTooSmallAreNotOverrun) {
  constexpr std::uint32_t kBufferBytes = 100;
  constexpr unsigned char kUntouched = 0xA5;
  FrameRing ring(camera, 1, 2 * kWidth * kHeight);
  ring.Frame(0).bufferSize = kBufferBytes;
  EXPECT_EQ(VmbFrameRevokeAll(camera), VmbErrorSuccess);
  EXPECT_EQ(VmbFrameAnnounce(camera, &ring.Frame(0), sizeof(VmbFrame_t)), VmbErrorSuccess);
  std::ranges::fill(ring.Buffer(0), kUntouched);
  ring.Start();

  RunCommand(camera, "AcquisitionStart");
  const VmbFrame_t frame = ring.WaitFor(1).front();

  EXPECT_EQ(frame.receiveStatus, VmbFrameStatusTooSmall);
  EXPECT_LE(frame.imageSize, kBufferBytes);
  EXPECT_TRUE(std::all_of(ring.Buffer(0).begin() + kBufferBytes, ring.Buffer(0).end(),
                          [](unsigned char byte) { return byte == kUntouched; }));
}

TEST_F(Frames, SayWhatTheyAre) {
  SetInt(camera, "OffsetX", 4);
  SetInt(camera, "OffsetY", 6);
  SetEnum(camera, "PixelFormat", "Mono8");
  FrameRing ring(camera, 1);
  void* const context = ring.Frame(0).context[0];
  ring.Start();

  RunCommand(camera, "AcquisitionStart");
  const VmbFrame_t frame = ring.WaitFor(1).front();

  EXPECT_EQ(frame.receiveStatus, VmbFrameStatusComplete);
  EXPECT_EQ(frame.receiveFlags,
            VmbFrameFlagsDimension | VmbFrameFlagsOffset | VmbFrameFlagsFrameID | VmbFrameFlagsTimestamp);
  EXPECT_EQ(frame.imageSize, static_cast<std::uint32_t>(kWidth * kHeight));
  EXPECT_EQ(frame.ancillarySize, 0u);
  EXPECT_EQ(frame.pixelFormat, VmbPixelFormatMono8);
  EXPECT_EQ((std::vector{frame.width, frame.height, frame.offsetX, frame.offsetY}),
            (std::vector<VmbUint32_t>{kWidth, kHeight, 4, 6}));
  EXPECT_EQ(frame.buffer, ring.Buffer(0).data());
  EXPECT_EQ(frame.bufferSize, ring.Buffer(0).size());
  EXPECT_EQ(frame.context[0], context);
}

TEST_F(Frames, ComeAtEachSoftwareTrigger) {
  FrameRing ring(camera, 4);
  ring.Start();
  SetEnum(camera, "TriggerSource", "Software");
  SetEnum(camera, "TriggerMode", "On");
  RunCommand(camera, "AcquisitionStart");

  RunCommand(camera, "TriggerSoftware");
  ring.WaitFor(1);
  RunCommand(camera, "TriggerSoftware");

  EXPECT_EQ(ring.WaitFor(2).size(), 2u);
}

}  // namespace
