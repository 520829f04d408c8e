// stream_test.cpp
// How fast and how completely frames come over the wire. Nothing else may run meanwhile.
#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <memory>
#include <thread>

#include "bridge/camera_host.h"
#include "bridge/picture_check.h"
#include "bridge/wire_camera.h"

namespace {

using std::chrono::seconds;
using std::chrono::steady_clock;

// Sockets that read packets before the system's UDP layer, in this network. Behind a line of titles.
std::ptrdiff_t CountPacketSockets() {
  std::ifstream sockets("/proc/net/packet");
  return std::count(std::istreambuf_iterator<char>(sockets), {}, '\n') - 1;
}

// How many of the frames came within this time after the first.
std::ptrdiff_t CountWithin(const std::vector<SeenFrame>& frames, seconds time) {
  return std::count_if(frames.begin(), frames.end(),
                       [&](const SeenFrame& frame) { return frame.time < frames.front().time + time; });
}

void ExpectAllGood(const std::vector<SeenFrame>& frames) {
  for (std::size_t i = 0; i < frames.size(); ++i) {
    ASSERT_EQ(frames[i].status, VmbFrameStatusComplete) << "frame " << i << " of " << frames.size();
    ASSERT_TRUE(frames[i].right_picture) << "frame " << i << " of " << frames.size();
    ASSERT_EQ(frames[i].id, frames.front().id + i) << "a gap before frame " << i;
    ASSERT_GE(frames[i].timestamp_ns, frames[i > 0 ? i - 1 : 0].timestamp_ns);
  }
}

struct Stream : testing::Test {
  RunningCamera camera;
  StartedVimba vimba;
};

TEST_F(Stream, SmallFramesComeAtTheirRateWithoutAGapAndAreYoungerThanTheLatch) {
  constexpr seconds kTime{10};
  CameraHost host(WireCamera::kId);
  host.SetSize(512, 512);
  host.Set("AcquisitionFrameRateAbs", 100.0);
  host.Run("GevTimestampControlLatch");
  const auto latched_ns = static_cast<std::uint64_t>(host.Integer("GevTimestampValue"));
  host.Start();
  ASSERT_TRUE(host.WaitForFrames(1'000));
  host.Stop();

  const std::vector<SeenFrame> frames = host.Seen();
  EXPECT_GE(CountWithin(frames, kTime), 960);
  EXPECT_GE(frames.front().timestamp_ns, latched_ns);
  ExpectAllGood(frames);
}

TEST_F(Stream, LargeFramesAreCompleteFromTheFirstOn) {
  constexpr seconds kTime{5};
  CameraHost host(WireCamera::kId);
  host.SetSize(WireCamera::kSensorWidth, WireCamera::kSensorHeight);
  host.Set("AcquisitionFrameRateAbs", 25.0);
  host.Start();
  ASSERT_TRUE(host.WaitForFrames(125));
  host.Stop();

  const std::vector<SeenFrame> frames = host.Seen();
  EXPECT_GE(CountWithin(frames, kTime), 22 * kTime.count());
  ExpectAllGood(frames);
}

TEST_F(Stream, APacketSocketIsUsedWhereTheEnvironmentAsksForItAndLosesNothing) {
  KEL_NEEDS_OWN_NETWORK();
  for (const bool wanted : {false, true}) {
    setenv("VIMBA_ARAVIS_PACKET_SOCKET", wanted ? "1" : "0", 1);
    CameraHost host(WireCamera::kId);
    host.SetSize(WireCamera::kSensorWidth, WireCamera::kSensorHeight);
    host.Start();
    ASSERT_TRUE(host.WaitForFrames(10));
    EXPECT_EQ(CountPacketSockets(), wanted ? 1 : 0);
    host.Stop();
    ExpectAllGood(host.Seen());
  }
  unsetenv("VIMBA_ARAVIS_PACKET_SOCKET");
}

TEST(Streams, ThreeCamerasInOneProcessKeepTheirRates) {
  KEL_NEEDS_OWN_NETWORK();
  constexpr seconds kTime{4};
  std::vector<std::unique_ptr<RunningCamera>> cameras;
  for (const int number : {1, 2, 3}) cameras.push_back(std::make_unique<RunningCamera>(WireCamera(number)));
  const StartedVimba vimba;
  std::vector<std::unique_ptr<CameraHost>> hosts;
  for (const int number : {1, 2, 3}) {
    hosts.push_back(std::make_unique<CameraHost>(WireCamera(number).Id()));
    hosts.back()->SetSize(512, 512);
    hosts.back()->Set("AcquisitionFrameRateAbs", 25.0);
  }
  for (const auto& host : hosts) host->Start();
  for (const auto& host : hosts) ASSERT_TRUE(host->WaitForFrames(100));
  for (const auto& host : hosts) host->Stop();

  for (const auto& host : hosts) {
    EXPECT_GE(CountWithin(host->Seen(), kTime), 23 * kTime.count());
    ExpectAllGood(host->Seen());
  }
}

TEST_F(Stream, FramesOfColourAreAsTheCameraDrewThem) {
  CameraHost host(WireCamera::kId);
  host.SetSize(512, 512);
  host.Set("PixelFormat", "RGB8Packed");
  host.Start();
  ASSERT_TRUE(host.WaitForFrames(3));
  host.Stop();
  const std::vector<std::uint8_t> rgb = host.LastPicture();
  ASSERT_EQ(rgb.size(), std::size_t{3} * 512 * 512);
  EXPECT_TRUE(ShowsColour(rgb));

  host.Set("PixelFormat", "BayerRG8");
  host.Start();
  ASSERT_TRUE(host.WaitForFrames(3));
  host.Stop();
  const std::vector<std::uint8_t> mosaic = host.LastPicture();
  ASSERT_EQ(mosaic.size(), std::size_t{512} * 512);
  EXPECT_TRUE(ShowsMosaic(mosaic, 512));
}

}  // namespace
