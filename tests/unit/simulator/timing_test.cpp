// timing_test.cpp
// Real timing: exposure, read-out, stream, link. Lower bounds are the camera's; upper ones leave room for a busy
// machine.
#include <algorithm>
#include <chrono>

#include "simulated_link.h"

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;
using Microseconds = std::chrono::duration<double, std::micro>;

constexpr seconds kRoom{5};
// Clock readings are whole ticks.
constexpr Seconds kTick{1e-6};

// At 1,000,000 bytes/s and 100 us a line, the 100 x 100 pixels take 10 ms to read out and 10 ms to send.
constexpr int kStreamBytesPerSecond = 1'000'000;
constexpr milliseconds kStream{10};
SimulatedCamera SlowCamera() {
  return SimulatedCamera()
      .RealTiming()
      .Sensor(100, 100)
      .With("lineTime_us", 100.0)
      .Feature("StreamBytesPerSecond", kStreamBytesPerSecond)
      .Feature("ExposureTimeAbs", 1000.0);
}

struct Timing : testing::Test {
  explicit Timing(const SimulatedCamera& configuration = SlowCamera()) : world(configuration) {}

  StartedCameras world;
  OpenedHandle camera;
  FrameRing ring{camera, 4};

  void SetExposure(Microseconds exposure) { SetFloat(camera, "ExposureTimeAbs", exposure.count()); }
  Seconds TimeUntil(std::size_t frames) {
    const auto begin = steady_clock::now();
    RunCommand(camera, "AcquisitionStart");
    ring.WaitFor(frames);
    return steady_clock::now() - begin;
  }
  // Since the camera's clock began.
  Seconds TimeOf(std::uint64_t ticks) const {
    return Seconds(static_cast<double>(ticks) / static_cast<double>(IntOf(camera, "GevTimestampTickFrequency")));
  }
  Seconds CameraTime() const {
    RunCommand(camera, "GevTimestampControlLatch");
    return TimeOf(static_cast<std::uint64_t>(IntOf(camera, "GevTimestampValue")));
  }
  bool WaitUntilExposed() const {
    return Eventually([&] { return world.cameras.State()["exposed"] > 0; });
  }
};

TEST_F(Timing, AFrameTakesExposureAndStream) {
  constexpr milliseconds kExposure{30};
  SetExposure(kExposure);
  ring.Start();

  const Seconds time = TimeUntil(1);

  EXPECT_GE(time, kExposure + kStream);
  EXPECT_LT(time, kExposure + kStream + kRoom);
}

TEST_F(Timing, AFrameTakesAtLeastPayloadByStreamRate) {
  SetExposure(Microseconds(30));
  ring.Start();

  EXPECT_GE(TimeUntil(4), 4 * kStream);
}

TEST_F(Timing, TheTimestampIsTheStartOfExposure) {
  constexpr milliseconds kExposure{50};
  SetExposure(kExposure);
  ring.Start();
  TimeUntil(1);

  const Seconds now = CameraTime();

  EXPECT_GE(now - TimeOf(ring.WaitFor(1).front().timestamp), kExposure + kStream);
}

TEST_F(Timing, AFreeRunKeepsToTheFrameRateLimit) {
  ring.KeepQueued();
  ring.Start();
  TimeUntil(11);
  RunCommand(camera, "AcquisitionStop");

  const auto frames = ring.WaitFor(11);

  const Seconds period = (TimeOf(frames[10].timestamp) - TimeOf(frames[0].timestamp)) / 10;
  EXPECT_DOUBLE_EQ(FloatOf(camera, "AcquisitionFrameRateLimit"), 100.0);
  EXPECT_GE(period, kStream - kTick);
  EXPECT_LT(period, kStream + Seconds(kRoom) / 10);
}

TEST_F(Timing, FixedRateKeepsItsRate) {
  constexpr milliseconds kPeriod{40};
  TriggerBy(camera, "FixedRate");
  SetFloat(camera, "AcquisitionFrameRateAbs", 25.0);
  ring.KeepQueued();
  ring.Start();
  TimeUntil(5);
  RunCommand(camera, "AcquisitionStop");

  const auto frames = ring.WaitFor(5);

  EXPECT_GE(TimeOf(frames[4].timestamp) - TimeOf(frames[0].timestamp), 4 * kPeriod - kTick);
}

struct TimingOfASignalOnTheLines : Timing {
  static constexpr milliseconds kPeriod{40};

  TimingOfASignalOnTheLines() : Timing(SlowCamera().With("linePeriod_ms", kPeriod.count())) {}
};

TEST_F(TimingOfASignalOnTheLines, ItTriggersAtItsPeriod) {
  TriggerBy(camera, "Line2");
  ring.KeepQueued();
  ring.Start();
  TimeUntil(5);
  RunCommand(camera, "AcquisitionStop");

  const auto frames = ring.WaitFor(5);

  EXPECT_GE(TimeOf(frames[4].timestamp) - TimeOf(frames[0].timestamp), 4 * kPeriod - kTick);
}

TEST_F(Timing, ATriggerDelayPassesBeforeTheExposure) {
  constexpr milliseconds kDelay{50};
  TriggerBy(camera, "Software");
  SetFloat(camera, "TriggerDelayAbs", Microseconds(kDelay).count());
  ring.Start();
  RunCommand(camera, "AcquisitionStart");
  const Seconds before = CameraTime();

  RunCommand(camera, "TriggerSoftware");

  EXPECT_GE(TimeOf(ring.WaitFor(1).front().timestamp) - before, kDelay);
}

TEST_F(Timing, StopLetsTheRunningFrameArrive) {
  SetExposure(milliseconds(100));
  TriggerBy(camera, "Software");
  ring.Start();
  RunCommand(camera, "AcquisitionStart");
  RunCommand(camera, "TriggerSoftware");
  ASSERT_TRUE(WaitUntilExposed());

  RunCommand(camera, "AcquisitionStop");
  WaitIdle();

  EXPECT_EQ(ring.Arrived(), 1u);
}

TEST_F(Timing, AbortDropsTheRunningFrameAtOnce) {
  SetExposure(seconds(60));
  ring.Start();
  RunCommand(camera, "AcquisitionStart");
  ASSERT_TRUE(WaitUntilExposed());

  RunCommand(camera, "AcquisitionAbort");
  WaitIdle();

  EXPECT_EQ(ring.Arrived(), 0u);
  EXPECT_EQ(world.cameras.State()["queued"], 4);
}

TEST_F(Timing, ClosingDoesNotWaitForALongExposure) {
  SetExposure(seconds(60));
  ring.Start();
  RunCommand(camera, "AcquisitionStart");
  ASSERT_TRUE(WaitUntilExposed());
  const auto begin = steady_clock::now();

  EXPECT_EQ(VmbCameraClose(camera), VmbErrorSuccess);

  EXPECT_LT(steady_clock::now() - begin, kRoom);
}

TEST_F(Timing, AFreeRunWithoutQueuedFramesDropsThem) {
  ring.Start();
  TimeUntil(4);

  EXPECT_TRUE(Eventually([&] { return world.cameras.State()["dropped"] >= 2; }));

  EXPECT_EQ(ring.Arrived(), 4u);
}

TEST_F(Timing, StatisticsCountWhatCame) {
  // 10,000 bytes in packets of 1500 less 36 bytes of headers.
  constexpr int kPacketsOfAFrame = 7;
  SetInt(camera, "AcquisitionFrameCount", 3);
  SetEnum(camera, "AcquisitionMode", "MultiFrame");
  ring.Start();

  TimeUntil(3);

  EXPECT_EQ(IntOf(camera, "StatFrameDelivered"), 3);
  EXPECT_EQ(IntOf(camera, "StatFrameDropped"), 0);
  EXPECT_EQ(IntOf(camera, "StatPacketReceived"), 3 * kPacketsOfAFrame);
  EXPECT_EQ(IntOf(camera, "StatPacketMissed"), 0);
  EXPECT_GT(FloatOf(camera, "StatFrameRate"), 0.0);
}

struct LinkLoss : testing::Test {
  static constexpr int kCapacityBytesPerSecond = 3'000'000;
  static constexpr int kSide = 1000;
  static constexpr std::uint32_t kImageBytes = kSide * kSide;

  // A camera's frame takes half a second or more, so that the transfers of two overlap on any machine.
  static SimulatedCamera Camera(int number, int bytes_per_s) {
    return SimulatedCamera(number)
        .RealTiming()
        .Sensor(kSide, kSide)
        .With("lineTime_us", 0.0)
        .Feature("StreamBytesPerSecond", bytes_per_s)
        .Feature("ExposureTimeAbs", 30.0)
        .Feature("AcquisitionMode", "SingleFrame");
  }
  static std::vector<VmbFrame_t> FramesOfBoth(int bytes_per_s) {
    const nlohmann::json configuration{
        {"cameras", {Camera(1, bytes_per_s).Configuration(), Camera(2, bytes_per_s).Configuration()}},
        {"link", {{"capacity", kCapacityBytesPerSecond}}}};
    EXPECT_EQ(VimbaSimConfigure(configuration.dump().c_str()), kAccepted) << VimbaSimLastError();
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
  for (const VmbFrame_t& frame : FramesOfBoth(kCapacityBytesPerSecond * 2 / 3)) {
    EXPECT_EQ(frame.receiveStatus, VmbFrameStatusIncomplete);
    EXPECT_GT(frame.imageSize, kImageBytes / 2);
    EXPECT_LT(frame.imageSize, kImageBytes);
  }
}

TEST_F(LinkLoss, RatesThatTheLinkCarriesLoseNone) {
  for (const VmbFrame_t& frame : FramesOfBoth(kCapacityBytesPerSecond / 2)) {
    EXPECT_EQ(frame.receiveStatus, VmbFrameStatusComplete);
    EXPECT_EQ(frame.imageSize, kImageBytes);
  }
}

// The bytes of those packets of a buffer that are not all zero.
std::size_t BytesOfPacketsThatCame(const std::vector<unsigned char>& buffer, std::size_t packet_bytes) {
  std::size_t arrived = 0;
  for (std::size_t begin = 0; begin < buffer.size(); begin += packet_bytes) {
    const std::size_t end = std::min(begin + packet_bytes, buffer.size());
    const bool came =
        std::any_of(buffer.begin() + static_cast<std::ptrdiff_t>(begin),
                    buffer.begin() + static_cast<std::ptrdiff_t>(end), [](auto byte) { return byte != 0; });
    if (came) arrived += end - begin;
  }
  return arrived;
}

TEST(PacketLoss, LeavesTheBytesOfLostPacketsAlone) {
  constexpr std::size_t kPacketBytes = 500;
  constexpr std::size_t kHeaderBytes = 36;
  const StartedCameras world{SimulatedCamera().With("packetLoss", 0.5).Feature("GVSPPacketSize", kPacketBytes)};
  const OpenedHandle camera;
  FrameRing ring(camera, 1);
  std::fill(ring.Buffer(0).begin(), ring.Buffer(0).end(), static_cast<unsigned char>(0));
  ring.Start();

  RunCommand(camera, "AcquisitionStart");
  const VmbFrame_t frame = ring.WaitFor(1).front();

  EXPECT_EQ(frame.receiveStatus, VmbFrameStatusIncomplete);
  EXPECT_EQ(frame.imageSize, BytesOfPacketsThatCame(ring.Buffer(0), kPacketBytes - kHeaderBytes));
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
