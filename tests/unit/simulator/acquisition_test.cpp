// acquisition_test.cpp
// Acquisition modes, trigger sources and edges, frame numbers and timestamps.
#include <gmock/gmock.h>

#include "simulated_link.h"

namespace {

struct Acquiring : testing::Test {
  StartedCameras world;
  OpenedHandle camera;
  FrameRing ring{camera, 8};

  void Start(const char* mode = "Continuous") {
    ring.Start();
    SetEnum(camera, "AcquisitionMode", mode);
    RunCommand(camera, "AcquisitionStart");
  }
  void Rise(int line) { EXPECT_EQ(VimbaSimSetLine(SimulatedCamera::kId, line, 1), kAccepted); }
  void Fall(int line) { EXPECT_EQ(VimbaSimSetLine(SimulatedCamera::kId, line, 0), kAccepted); }
  bool Runs() const { return world.cameras.State()["acquiring"]; }
  // How many have come once nothing more is due.
  std::size_t Frames() {
    WaitIdle();
    return ring.Arrived();
  }
};

TEST_F(Acquiring, SingleFrameEndsAfterOneFrame) {
  Start("SingleFrame");

  EXPECT_EQ(Frames(), 1u);
  EXPECT_FALSE(Runs());
}

TEST_F(Acquiring, MultiFrameEndsAfterItsCount) {
  SetInt(camera, "AcquisitionFrameCount", 5);

  Start("MultiFrame");

  EXPECT_EQ(Frames(), 5u);
  EXPECT_FALSE(Runs());
}

TEST_F(Acquiring, ContinuousGoesOnUntilItIsStopped) {
  ring.KeepQueued();
  Start();
  ring.WaitFor(30);
  EXPECT_TRUE(Runs());

  RunCommand(camera, "AcquisitionStop");
  const std::size_t stopped = Frames();

  EXPECT_FALSE(Runs());
  EXPECT_EQ(Frames(), stopped);
}

TEST_F(Acquiring, ACallbackMayStartTheNextSingleFrame) {
  ring.on_frame = [&](VmbFrame_t&) { RunCommand(camera, "AcquisitionStart"); };

  Start("SingleFrame");

  EXPECT_EQ(Frames(), 8u);
}

TEST_F(Acquiring, FrameNumbersBeginWithEachStart) {
  Start("SingleFrame");
  ring.WaitFor(1);
  WaitIdle();
  SetInt(camera, "AcquisitionFrameCount", 2);
  SetEnum(camera, "AcquisitionMode", "MultiFrame");
  RunCommand(camera, "AcquisitionStart");

  const auto frames = ring.WaitFor(3);

  EXPECT_EQ(frames[1].frameID, 0u);
  EXPECT_EQ(frames[2].frameID, 1u);
}

TEST_F(Acquiring, TimestampsAreOfTheCamerasClock) {
  RunCommand(camera, "GevTimestampControlLatch");
  const std::int64_t before = IntOf(camera, "GevTimestampValue");
  Start("SingleFrame");
  const auto frames = ring.WaitFor(1);
  RunCommand(camera, "GevTimestampControlLatch");

  EXPECT_GE(frames[0].timestamp, static_cast<std::uint64_t>(before));
  EXPECT_LE(frames[0].timestamp, static_cast<std::uint64_t>(IntOf(camera, "GevTimestampValue")));
}

TEST_F(Acquiring, EachSoftwareTriggerExposesOneFrame) {
  TriggerBy(camera, "Software");
  Start();
  EXPECT_EQ(Frames(), 0u);

  for (int i = 0; i < 3; ++i) RunCommand(camera, "TriggerSoftware");

  EXPECT_EQ(Frames(), 3u);
}

TEST_F(Acquiring, ASoftwareTriggerIsDoneAtOnce) {
  TriggerBy(camera, "Software");
  Start();
  VmbBool_t done = 0;

  RunCommand(camera, "TriggerSoftware");

  EXPECT_EQ(VmbFeatureCommandIsDone(camera, "TriggerSoftware", &done), VmbErrorSuccess);
  EXPECT_EQ(done, 1);
}

TEST_F(Acquiring, ASoftwareTriggerWithoutAcquisitionIsLost) {
  TriggerBy(camera, "Software");
  RunCommand(camera, "TriggerSoftware");

  Start();

  EXPECT_EQ(Frames(), 0u);
}

TEST_F(Acquiring, ASoftwareTriggerOfAnotherSourceIsIgnored) {
  TriggerBy(camera, "Line2");
  Start();

  RunCommand(camera, "TriggerSoftware");

  EXPECT_EQ(Frames(), 0u);
}

TEST_F(Acquiring, ALineTriggersOnItsRisingEdge) {
  TriggerBy(camera, "Line2");
  Start();

  Rise(2);
  Fall(2);
  Rise(1);

  EXPECT_EQ(Frames(), 1u);
}

TEST_F(Acquiring, ALineTriggersOnItsFallingEdge) {
  TriggerBy(camera, "Line4");
  SetEnum(camera, "TriggerActivation", "FallingEdge");
  Start();
  Rise(4);
  EXPECT_EQ(Frames(), 0u);

  Fall(4);

  EXPECT_EQ(Frames(), 1u);
}

TEST_F(Acquiring, ALineTriggersOnBothEdges) {
  TriggerBy(camera, "Line1");
  SetEnum(camera, "TriggerActivation", "AnyEdge");
  Start();

  Rise(1);
  Fall(1);

  EXPECT_EQ(Frames(), 2u);
}

TEST_F(Acquiring, ALineTriggersAsLongAsItsLevelHolds) {
  TriggerBy(camera, "Line3");
  SetEnum(camera, "TriggerActivation", "LevelHigh");
  Start();
  EXPECT_EQ(Frames(), 0u);

  Rise(3);

  EXPECT_EQ(Frames(), 8u);
}

TEST_F(Acquiring, FreerunDeliversWithoutTrigger) {
  TriggerBy(camera, "Freerun");

  Start();

  EXPECT_EQ(Frames(), 8u);
}

TEST_F(Acquiring, WithTriggerModeOffTheSourceDoesNotMatter) {
  TriggerBy(camera, "Software");
  SetEnum(camera, "TriggerMode", "Off");

  Start();

  EXPECT_EQ(Frames(), 8u);
}

TEST_F(Acquiring, ANewSourceForgetsTheTriggersOfTheOldOne) {
  constexpr double kMinuteUs = 60e6;
  TriggerBy(camera, "Software");
  SetFloat(camera, "TriggerDelayAbs", kMinuteUs);
  Start();
  RunCommand(camera, "TriggerSoftware");

  SetEnum(camera, "TriggerSource", "Line1");
  SetFloat(camera, "TriggerDelayAbs", 0.0);
  SetEnum(camera, "TriggerSource", "Software");

  EXPECT_EQ(Frames(), 0u);
}

TEST_F(Acquiring, AFrameDeliveredByHandNeedsNoAcquisition) {
  ring.Start();

  world.cameras.Deliver({{"status", VmbFrameStatusIncomplete},
                         {"flags", VmbFrameFlagsDimension | VmbFrameFlagsOffset},
                         {"imageSize", 7},
                         {"ancillarySize", 9},
                         {"pixelFormat", VmbPixelFormatRgb8},
                         {"width", 1},
                         {"height", 2},
                         {"offsetX", 3},
                         {"offsetY", 4},
                         {"frameID", 77},
                         {"timestamp", 5}});

  ASSERT_EQ(ring.Arrived(), 1u);
  const VmbFrame_t frame = ring.WaitFor(1).front();
  EXPECT_EQ(frame.receiveStatus, VmbFrameStatusIncomplete);
  EXPECT_EQ(frame.receiveFlags, VmbFrameFlagsDimension | VmbFrameFlagsOffset);
  EXPECT_EQ(frame.pixelFormat, VmbPixelFormatRgb8);
  EXPECT_THAT((std::vector<std::uint64_t>{frame.imageSize, frame.ancillarySize, frame.width, frame.height,
                                          frame.offsetX, frame.offsetY, frame.frameID, frame.timestamp}),
              testing::ElementsAre(7, 9, 1, 2, 3, 4, 77, 5));
}

TEST_F(Acquiring, AFrameDeliveredByHandNeedsAQueuedFrame) {
  EXPECT_EQ(VimbaSimDeliverFrame(SimulatedCamera::kId, nullptr), kRefused);

  EXPECT_STREQ(VimbaSimLastError(), "camera DEV_000F31000001 has no frame queued");
}

}  // namespace
