// loss_test.cpp
// Packets that are lost on the wire, and frames that are larger than what waits for them.
#include <algorithm>

#include "bridge/camera_host.h"
#include "bridge/picture_check.h"
#include "bridge/wire_device.h"

namespace {

// Of 188 packets in a frame of 512 x 512. More than half of the frames lack one.
constexpr double kLostPermille = 5.0;

std::ptrdiff_t CountOf(const std::vector<SeenFrame>& frames, VmbFrameStatus_t status) {
  return std::count_if(frames.begin(), frames.end(), [&](const SeenFrame& frame) { return frame.status == status; });
}

TEST(Losses, MakeFramesIncompleteAndNothingElse) {
  const RunningCamera camera(WireCamera().Loses(kLostPermille));
  const StartedVimba vimba;
  CameraHost host(WireCamera::kId);
  host.SetSize(512, 512);
  host.Set("AcquisitionFrameRateAbs", 50.0);
  host.Start();
  ASSERT_TRUE(host.WaitForFrames(100));
  host.Stop();

  const std::vector<SeenFrame> frames = host.Seen();
  const std::ptrdiff_t complete = CountOf(frames, VmbFrameStatusComplete);
  const std::ptrdiff_t incomplete = CountOf(frames, VmbFrameStatusIncomplete);
  EXPECT_GT(complete, 0);
  EXPECT_GT(incomplete, 0);
  EXPECT_EQ(complete + incomplete, std::ssize(frames));
  EXPECT_EQ(std::count_if(frames.begin(), frames.end(), [](const SeenFrame& frame) { return frame.right_picture; }),
            complete)
      << "a complete frame has every pixel";
}

TEST(Losses, ABufferOfHalfTheSizeIsTooSmallForEveryFrameAndNothingIsWrittenBehindIt) {
  const RunningCamera camera;
  const StartedVimba vimba;
  CameraHost host(WireCamera::kId);
  host.SetSize(512, 512);
  host.Start(512 * 512 / 2);
  ASSERT_TRUE(host.WaitForFrames(20));
  host.Stop();
  EXPECT_EQ(CountOf(host.Seen(), VmbFrameStatusTooSmall), std::ssize(host.Seen()));
}

struct LossyModule : WireDevice {
  LossyModule() { TakeArea(0, 0, kArea.width, kArea.height); }
  // Snaps until one has this code; false when none of many has.
  bool SnapsUntil(int code, BBaseAoi& aoi) {
    constexpr int kMostSnaps = 60;
    for (int snap = 0; snap < kMostSnaps; ++snap) {
      rate_before = Device().GetBandwidth();
      const BError error = SnapOnce(&aoi);
      if (error.ErrorCode() == code) return true;
      EXPECT_THAT(error.ErrorCode(), testing::AnyOf(BError::eSuccess, BError::eAcquisitionFailed));
    }
    return false;
  }
  static constexpr BSize kArea{512, 512};
  // Of the last snap.
  std::int64_t rate_before = 0;
};

TEST_F(LossyModule, ASnapFailsTheRateFallsAndTheNextGoodPictureIsRight) {
  ASSERT_TRUE(Open(WireCamera().Loses(kLostPermille)));
  BBaseAoi aoi(BBaseAoi::eMono8);
  ASSERT_TRUE(SnapsUntil(BError::eAcquisitionFailed, aoi));
  EXPECT_LT(Device().GetBandwidth(), rate_before);
  ASSERT_TRUE(SnapsUntil(BError::eSuccess, aoi));
  EXPECT_GT(Device().GetBandwidth(), rate_before);
  EXPECT_TRUE(ShowsGrey(aoi, kArea));
}

}  // namespace
