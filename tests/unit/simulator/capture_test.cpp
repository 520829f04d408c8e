// capture_test.cpp
// What becomes of images.
#include <gmock/gmock.h>

#include <numeric>

#include "simulated_link.h"

namespace {

using testing::ElementsAre;

struct Capture : testing::Test {
  StartedCameras world;
  OpenedHandle camera;

  std::size_t Dropped() const { return world.cameras.State()["dropped"]; }
};

std::vector<std::uint64_t> IdsOf(const std::vector<VmbFrame_t>& frames) {
  std::vector<std::uint64_t> ids;
  ids.reserve(frames.size());
  for (const VmbFrame_t& frame : frames) ids.push_back(frame.frameID);
  return ids;
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
