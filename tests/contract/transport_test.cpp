// transport_test.cpp
// Features of the network side.
#include "camera_under_test.h"

namespace {

struct Transport : CameraTest {
  void TearDown() override {
    RunCommand(camera, "AcquisitionStop");
    std::ignore = VmbCaptureEnd(camera);
  }
};

TEST_F(Transport, RateIsTheOneThatWasSet) {
  for (const std::int64_t rate_bytes_per_s : {5'000'000, 60'000'000, 115'000'000}) {
    SetInt(camera, "StreamBytesPerSecond", rate_bytes_per_s);

    EXPECT_EQ(IntOf(camera, "StreamBytesPerSecond"), rate_bytes_per_s);
  }
}

TEST_F(Transport, RateStaysWhenThePacketSizeChanges) {
  SetInt(camera, "StreamBytesPerSecond", 60'000'000);

  SetInt(camera, "GVSPPacketSize", 1000);

  EXPECT_EQ(IntOf(camera, "StreamBytesPerSecond"), 60'000'000);
  SetInt(camera, "GVSPPacketSize", 1400);
}

TEST_F(Transport, RateOutsideItsRangeIsRefused) {
  VmbInt64_t slowest = 0;
  VmbInt64_t fastest = 0;
  EXPECT_EQ(VmbFeatureIntRangeQuery(camera, "StreamBytesPerSecond", &slowest, &fastest), VmbErrorSuccess);
  const std::int64_t before = IntOf(camera, "StreamBytesPerSecond");

  EXPECT_EQ(VmbFeatureIntSet(camera, "StreamBytesPerSecond", slowest - 1), VmbErrorInvalidValue);
  EXPECT_EQ(VmbFeatureIntSet(camera, "StreamBytesPerSecond", fastest + 1), VmbErrorInvalidValue);

  EXPECT_EQ(IntOf(camera, "StreamBytesPerSecond"), before);
}

TEST_F(Transport, RateLimitsTheFrameRate) {
  constexpr std::int64_t kRateBytesPerS = 1'000'000;
  SetInt(camera, "StreamBytesPerSecond", kRateBytesPerS);

  EXPECT_LE(FloatOf(camera, "AcquisitionFrameRateLimit"), static_cast<double>(kRateBytesPerS) / (kWidth * kHeight));
  EXPECT_GT(FloatOf(camera, "AcquisitionFrameRateLimit"), 0.0);

  SetInt(camera, "StreamBytesPerSecond", 115'000'000);
}

TEST_F(Transport, PacketSizeIsFixedWhileTheCameraStreams) {
  EXPECT_EQ(VmbCaptureStart(camera), VmbErrorSuccess);
  RunCommand(camera, "AcquisitionStart");

  EXPECT_EQ(VmbFeatureIntSet(camera, "GVSPPacketSize", 1000), VmbErrorInvalidAccess);

  RunCommand(camera, "AcquisitionStop");
  EXPECT_EQ(VmbCaptureEnd(camera), VmbErrorSuccess);
  SetInt(camera, "GVSPPacketSize", 1000);
  SetInt(camera, "GVSPPacketSize", 1400);
}

TEST_F(Transport, PacketSizeCanBeAdjusted) {
  VmbInt64_t smallest = 0;
  VmbInt64_t largest = 0;
  EXPECT_EQ(VmbFeatureIntRangeQuery(camera, "GVSPPacketSize", &smallest, &largest), VmbErrorSuccess);

  RunCommand(camera, "GVSPAdjustPacketSize");
  EXPECT_TRUE(Eventually([&] {
    VmbBool_t done = 0;
    EXPECT_EQ(VmbFeatureCommandIsDone(camera, "GVSPAdjustPacketSize", &done), VmbErrorSuccess);
    return done != 0;
  }));

  EXPECT_GE(IntOf(camera, "GVSPPacketSize"), smallest);
  EXPECT_LE(IntOf(camera, "GVSPPacketSize"), largest);
  SetInt(camera, "GVSPPacketSize", 1400);
}

TEST_F(Transport, HeartbeatIsTheOneThatWasSet) {
  const std::int64_t before = IntOf(camera, "GevHeartbeatTimeout");
  SetInt(camera, "GevHeartbeatTimeout", 5'000);

  EXPECT_EQ(IntOf(camera, "GevHeartbeatTimeout"), 5'000);

  EXPECT_EQ(VmbFeatureIntSet(camera, "GevHeartbeatTimeout", 0), VmbErrorInvalidValue);
  SetInt(camera, "GevHeartbeatTimeout", before);
}

}  // namespace
