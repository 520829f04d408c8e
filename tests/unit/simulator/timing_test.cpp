// timing_test.cpp
// Real timing: exposure, read-out, stream, link. Lower bounds are the camera's; upper ones leave room for a busy
// machine.
#include <algorithm>
#include <thread>

#include "frame_ring.h"

namespace {

using std::chrono::duration;
using std::chrono::steady_clock;

constexpr double kRoom_s = 5.0;

// 100 lines of 100 us and 10,000 bytes at 1,000,000 bytes/s: read-out and stream take 10 ms each.
SimulatedCamera SlowCamera(int number = 1) {
  return SimulatedCamera(number)
      .RealTiming()
      .Sensor(100, 100)
      .With("lineTime_us", 100.0)
      .With("features", {{"StreamBytesPerSecond", 1'000'000}, {"ExposureTimeAbs", 1000.0}});
}

struct Timing : testing::Test {
  StartedCameras world{SlowCamera()};
  OpenedHandle camera;
  FrameRing ring{camera, 4};

  double SecondsUntil(std::size_t frames) {
    const auto begin = steady_clock::now();
    RunCommand(camera, "AcquisitionStart");
    ring.WaitFor(frames);
    return duration<double>(steady_clock::now() - begin).count();
  }
  double SecondsBetween(const VmbFrame_t& first, const VmbFrame_t& second) const {
    return static_cast<double>(second.timestamp - first.timestamp) /
           static_cast<double>(IntOf(camera, "GevTimestampTickFrequency"));
  }
  void KeepQueued() {
    ring.on_frame = [&](VmbFrame_t& frame) { ring.Queue(frame); };
  }
};

TEST_F(Timing, AFrameTakesExposureAndStream) {
  SetFloat(camera, "ExposureTimeAbs", 30'000.0);
  ring.Start();

  const double seconds = SecondsUntil(1);

  EXPECT_GE(seconds, 0.040);
  EXPECT_LT(seconds, 0.040 + kRoom_s);
}

TEST_F(Timing, AFrameTakesAtLeastPayloadByStreamRate) {
  SetFloat(camera, "ExposureTimeAbs", 30.0);
  ring.Start();

  EXPECT_GE(SecondsUntil(4), 4 * 0.010);
}

TEST_F(Timing, TheTimestampIsTheStartOfExposure) {
  SetFloat(camera, "ExposureTimeAbs", 50'000.0);
  ring.Start();
  SecondsUntil(1);
  RunCommand(camera, "GevTimestampControlLatch");
  VmbFrame_t now{};
  now.timestamp = static_cast<std::uint64_t>(IntOf(camera, "GevTimestampValue"));

  EXPECT_GE(SecondsBetween(ring.WaitFor(1).front(), now), 0.060);
}

TEST_F(Timing, AFreeRunKeepsToTheFrameRateLimit) {
  KeepQueued();
  ring.Start();
  SecondsUntil(11);
  RunCommand(camera, "AcquisitionStop");

  const auto frames = ring.WaitFor(11);

  const double period = SecondsBetween(frames[0], frames[10]) / 10.0;
  EXPECT_DOUBLE_EQ(FloatOf(camera, "AcquisitionFrameRateLimit"), 100.0);
  // Clock readings are whole ticks.
  EXPECT_GE(period, 0.010 - 1e-6);
  EXPECT_LT(period, 0.010 + kRoom_s / 10);
}

TEST_F(Timing, FixedRateKeepsItsRate) {
  TriggerBy(camera, "FixedRate");
  SetFloat(camera, "AcquisitionFrameRateAbs", 25.0);
  KeepQueued();
  ring.Start();
  SecondsUntil(5);
  RunCommand(camera, "AcquisitionStop");

  const auto frames = ring.WaitFor(5);

  EXPECT_GE(SecondsBetween(frames[0], frames[4]), 4 * 0.040 - 1e-6);
}

TEST_F(Timing, ATriggerDelayPassesBeforeTheExposure) {
  TriggerBy(camera, "Software");
  SetFloat(camera, "TriggerDelayAbs", 50'000.0);
  ring.Start();
  RunCommand(camera, "AcquisitionStart");
  RunCommand(camera, "GevTimestampControlLatch");
  VmbFrame_t triggered{};
  triggered.timestamp = static_cast<std::uint64_t>(IntOf(camera, "GevTimestampValue"));

  RunCommand(camera, "TriggerSoftware");

  EXPECT_GE(SecondsBetween(triggered, ring.WaitFor(1).front()), 0.050);
}

TEST_F(Timing, StopLetsTheRunningFrameArrive) {
  SetFloat(camera, "ExposureTimeAbs", 100'000.0);
  ring.Start();
  RunCommand(camera, "AcquisitionStart");
  while (world.cameras.State()["exposed"] == 0) std::this_thread::yield();

  RunCommand(camera, "AcquisitionStop");
  WaitIdle();

  EXPECT_EQ(ring.Arrived(), 1u);
}

TEST_F(Timing, AbortDropsTheRunningFrameAtOnce) {
  SetFloat(camera, "ExposureTimeAbs", 60e6);
  ring.Start();
  RunCommand(camera, "AcquisitionStart");
  while (world.cameras.State()["exposed"] == 0) std::this_thread::yield();

  RunCommand(camera, "AcquisitionAbort");
  WaitIdle();

  EXPECT_EQ(ring.Arrived(), 0u);
  EXPECT_EQ(world.cameras.State()["queued"], 4);
}

TEST_F(Timing, ClosingDoesNotWaitForALongExposure) {
  SetFloat(camera, "ExposureTimeAbs", 60e6);
  ring.Start();
  RunCommand(camera, "AcquisitionStart");
  const auto begin = steady_clock::now();

  EXPECT_EQ(VmbCameraClose(camera), VmbErrorSuccess);

  EXPECT_LT(duration<double>(steady_clock::now() - begin).count(), kRoom_s);
}

TEST_F(Timing, AFreeRunWithoutQueuedFramesDropsThem) {
  ring.Start();
  SecondsUntil(4);
  const auto deadline = steady_clock::now() + kDeadline;

  while (world.cameras.State()["dropped"] < 2 && steady_clock::now() < deadline) std::this_thread::yield();

  EXPECT_GE(world.cameras.State()["dropped"], 2);
  EXPECT_EQ(ring.Arrived(), 4u);
}

TEST_F(Timing, StatisticsCountWhatCame) {
  ring.Start();
  SetInt(camera, "AcquisitionFrameCount", 3);
  SetEnum(camera, "AcquisitionMode", "MultiFrame");
  SecondsUntil(3);

  EXPECT_EQ(IntOf(camera, "StatFrameDelivered"), 3);
  EXPECT_EQ(IntOf(camera, "StatFrameDropped"), 0);
  // 10,000 bytes in packets of 1500 less 36 bytes of headers.
  EXPECT_EQ(IntOf(camera, "StatPacketReceived"), 3 * 7);
  EXPECT_EQ(IntOf(camera, "StatPacketMissed"), 0);
  EXPECT_GT(FloatOf(camera, "StatFrameRate"), 0.0);
}

struct LinkLoss : testing::Test {
  // Each camera's frame takes half a second of the link, so that the transfers overlap on any machine.
  static SimulatedCamera Camera(int number, int bytes_per_s) {
    return SimulatedCamera(number)
        .RealTiming()
        .Sensor(1000, 1000)
        .With("lineTime_us", 0.0)
        .With("features",
              {{"StreamBytesPerSecond", bytes_per_s}, {"ExposureTimeAbs", 30.0}, {"AcquisitionMode", "SingleFrame"}});
  }
  static std::vector<VmbFrame_t> FramesOfBoth(int bytes_per_s) {
    const nlohmann::json configuration{
        {"cameras", {Camera(1, bytes_per_s).Configuration(), Camera(2, bytes_per_s).Configuration()}},
        {"link", {{"capacity", 3'000'000}}}};
    EXPECT_EQ(VimbaSimConfigure(configuration.dump().c_str()), 0) << VimbaSimLastError();
    const StartedApi api;
    const OpenedHandle first("DEV_000F31000001");
    const OpenedHandle second("DEV_000F31000002");
    FrameRing first_ring(first, 1);
    FrameRing second_ring(second, 1);
    first_ring.Start();
    second_ring.Start();
    RunCommand(first, "AcquisitionStart");
    RunCommand(second, "AcquisitionStart");
    return {first_ring.WaitFor(1).front(), second_ring.WaitFor(1).front()};
  }
};

TEST_F(LinkLoss, RatesThatAddUpToMoreThanTheLinkLosePackets) {
  for (const VmbFrame_t& frame : FramesOfBoth(2'000'000)) {
    EXPECT_EQ(frame.receiveStatus, VmbFrameStatusIncomplete);
    EXPECT_GT(frame.imageSize, 500'000u);
    EXPECT_LT(frame.imageSize, 1'000'000u);
  }
}

TEST_F(LinkLoss, RatesThatTheLinkCarriesLoseNone) {
  for (const VmbFrame_t& frame : FramesOfBoth(1'500'000)) {
    EXPECT_EQ(frame.receiveStatus, VmbFrameStatusComplete);
    EXPECT_EQ(frame.imageSize, 1'000'000u);
  }
}

TEST(PacketLoss, LeavesTheBytesOfLostPacketsAlone) {
  const StartedCameras world{SimulatedCamera().With("packetLoss", 0.5).With("features", {{"GVSPPacketSize", 500}})};
  const OpenedHandle camera;
  FrameRing ring(camera, 1);
  std::fill(ring.Buffer(0).begin(), ring.Buffer(0).end(), 0);
  ring.Start();
  RunCommand(camera, "AcquisitionStart");
  const VmbFrame_t frame = ring.WaitFor(1).front();

  const auto& bytes = ring.Buffer(0);
  const auto packet_bytes = std::size_t{500 - 36};
  std::size_t arrived = 0;
  for (std::size_t begin = 0; begin < bytes.size(); begin += packet_bytes) {
    const std::size_t end = std::min(begin + packet_bytes, bytes.size());
    const bool came =
        std::any_of(bytes.begin() + static_cast<std::ptrdiff_t>(begin),
                    bytes.begin() + static_cast<std::ptrdiff_t>(end), [](auto byte) { return byte != 0; });
    if (came) arrived += end - begin;
  }
  EXPECT_EQ(frame.receiveStatus, VmbFrameStatusIncomplete);
  EXPECT_EQ(frame.imageSize, arrived);
}

TEST(PacketLoss, IsTheSameForTheSameSeed) {
  std::vector<std::uint32_t> sizes;
  for (const int seed : {5, 5, 6}) {
    const StartedCameras world{SimulatedCamera().Sensor(1000, 1000).With("packetLoss", 0.3).With("seed", seed)};
    const OpenedHandle camera;
    FrameRing ring(camera, 1);
    ring.Start();
    RunCommand(camera, "AcquisitionStart");
    sizes.push_back(ring.WaitFor(1).front().imageSize);
  }

  EXPECT_EQ(sizes[0], sizes[1]);
  EXPECT_NE(sizes[0], sizes[2]);
}

}  // namespace
