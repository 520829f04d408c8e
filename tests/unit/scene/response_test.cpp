// scene/response_test.cpp
// How exposure, gain, white balance, noise and saturation act on the picture.
#include <gtest/gtest.h>

#include <cmath>
#include <future>

#include "unit/scene/shots.h"

namespace SceneTest {
namespace {

using Simulator::kDefaultExposure;
using Simulator::Shot;

// The chart's patches "neutral 6.5" and "neutral 5".
constexpr int kNeutral65 = 20;
constexpr int kNeutral5 = 21;
constexpr int kWidth = 320;
constexpr int kHeight = 240;

// A patch of the chart in linear light; by default the one of middle grey.
std::array<double, 3> GreyLight(const Shot& shot, int patch = kNeutral5) {
  static const auto kScene = ColourChart(kWidth, kHeight);
  const Rgb pixel = PatchAt(Take(*kScene, shot), shot, patch);
  return {Linear(pixel[0]), Linear(pixel[1]), Linear(pixel[2])};
}

Shot DefaultShot() { return WholeShot(VmbPixelFormatRgb8, kWidth, kHeight); }

// Mean and spread of the green samples within a patch.
struct Statistics {
  double mean = 0;
  double spread = 0;
};

Statistics GreenOf(const Shot& shot, int patch) {
  const Bytes picture = Take(*ColourChart(kWidth, kHeight), shot);
  const Simulator::PatchArea area = Simulator::ChartPatchArea(kWidth / shot.binning_x, kHeight / shot.binning_y, patch);
  double count = 0;
  double sum = 0;
  double squares = 0;
  for (int y = static_cast<int>(area.top) + 2; y < static_cast<int>(area.bottom) - 2; ++y) {
    for (int x = static_cast<int>(area.left) + 2; x < static_cast<int>(area.right) - 2; ++x) {
      const int green = PixelAt(picture, shot, x, y)[1];
      count += 1;
      sum += green;
      squares += green * green;
    }
  }
  const double mean = sum / count;
  return {mean, std::sqrt(squares / count - mean * mean)};
}

TEST(SensorResponse, ExposureActsInLinearLight) {
  Shot shot = DefaultShot();
  const double whole = GreyLight(shot)[1];

  shot.exposure = kDefaultExposure / 2;
  EXPECT_NEAR(GreyLight(shot)[1] / whole, 0.5, 0.01);

  shot.exposure = kDefaultExposure * 3;
  EXPECT_NEAR(GreyLight(shot)[1] / whole, 3.0, 0.03);
}

TEST(SensorResponse, TwentyDecibelAreAFactorOfTen) {
  Shot shot = DefaultShot();
  const double whole = GreyLight(shot)[1];

  shot.gain_db = 6.0206;
  EXPECT_NEAR(GreyLight(shot)[1] / whole, 2.0, 0.02);

  shot.exposure = kDefaultExposure / 10;
  shot.gain_db = 20.0;
  EXPECT_NEAR(GreyLight(shot)[1] / whole, 1.0, 0.01);
}

TEST(SensorResponse, RedBalanceActsOnRedAlone) {
  Shot shot = DefaultShot();
  const auto neutral = GreyLight(shot);

  shot.balance_red = 2.0;
  const auto red = GreyLight(shot);

  EXPECT_NEAR(red[0] / neutral[0], 2.0, 0.02);
  EXPECT_EQ(red[1], neutral[1]);
  EXPECT_EQ(red[2], neutral[2]);
}

TEST(SensorResponse, BlueBalanceActsOnBlueAlone) {
  Shot shot = DefaultShot();
  const auto neutral = GreyLight(shot);

  shot.balance_blue = 0.5;
  const auto blue = GreyLight(shot);

  EXPECT_EQ(blue[0], neutral[0]);
  EXPECT_EQ(blue[1], neutral[1]);
  EXPECT_NEAR(blue[2] / neutral[2], 0.5, 0.01);
}

TEST(SensorResponse, MonochromeSensorHasNoWhiteBalance) {
  const auto scene = MonoChart(64, 48);
  Shot shot = WholeShot(VmbPixelFormatMono8, 64, 48);
  const Bytes before = Take(*scene, shot);

  shot.balance_red = 3.0;
  shot.balance_blue = 0.1;

  EXPECT_EQ(Take(*scene, shot), before);
}

TEST(SensorResponse, TooMuchLightSaturatesAndNoneIsBlack) {
  Shot shot = DefaultShot();

  shot.exposure = std::chrono::minutes(17);
  EXPECT_EQ(GreyLight(shot)[1], 1.0);

  shot.exposure = std::chrono::seconds(0);
  EXPECT_EQ(GreyLight(shot)[1], 0.0);

  shot.exposure = Simulator::Microseconds(std::nan(""));
  EXPECT_EQ(GreyLight(shot)[1], 0.0);
}

TEST(SensorResponse, NoiseLeavesThePatchsMeanAndGrowsWithGain) {
  Shot shot = DefaultShot();
  shot.noise = true;
  const Statistics plain = GreenOf(shot, kNeutral65);

  shot.exposure = kDefaultExposure / 10;
  shot.gain_db = 20.0;
  const Statistics amplified = GreenOf(shot, kNeutral65);

  EXPECT_NEAR(plain.mean, 160.0, 0.5);
  EXPECT_NEAR(amplified.mean, 160.0, 1.0);
  EXPECT_GT(plain.spread, 0.5);
  EXPECT_LT(plain.spread, 3.0);
  EXPECT_NEAR(amplified.spread / plain.spread, 3.2, 0.8);
}

TEST(SensorResponse, BinningAveragesTheNoiseAway) {
  Shot shot = DefaultShot();
  shot.noise = true;
  shot.gain_db = 6.0;
  shot.exposure = kDefaultExposure / 2;
  const double single = GreenOf(shot, kNeutral65).spread;

  shot.binning_x = shot.binning_y = 2;
  shot.width = kWidth / 2;
  shot.height = kHeight / 2;

  EXPECT_NEAR(GreenOf(shot, kNeutral65).spread / single, 0.5, 0.12);
}

TEST(SensorResponse, NoiseDiffersByFrameAndBySeedOnly) {
  Shot shot = DefaultShot();
  shot.noise = true;
  shot.seed = 5;
  const auto scene = ColourChart(kWidth, kHeight);
  const Bytes first = Take(*scene, shot);
  Shot other_seed = shot;
  other_seed.seed = 6;
  // The counter's digits come round again, the noise does not.
  Shot other_frame = shot;
  other_frame.frame_number = 1'000'000;

  EXPECT_EQ(Take(*scene, shot), first);
  EXPECT_EQ(Take(*ColourChart(kWidth, kHeight), shot), first);
  EXPECT_NE(Take(*scene, other_seed), first);
  EXPECT_NE(Take(*scene, other_frame), first);
}

// The numbers hold for every platform and compiler. Whoever changes the chart or the sensor on purpose takes the new
// ones.
TEST(SensorResponse, SameShotGivesTheSameBytesEverywhere) {
  Shot shot = WholeShot(VmbPixelFormatRgb8, 200, 150);
  shot.noise = true;
  shot.seed = 42;
  shot.frame_number = 1234;
  shot.time = Simulator::Seconds(98.7654321);
  shot.exposure = Simulator::Microseconds(7321.5);
  shot.gain_db = 3.7;
  shot.balance_red = 1.13;
  shot.balance_blue = 0.87;
  const auto checksum = [&shot](const Simulator::Scene& scene, VmbPixelFormat_t format) {
    shot.pixel_format = format;
    return Checksum(Take(scene, shot));
  };

  EXPECT_EQ(checksum(*ColourChart(200, 150), VmbPixelFormatRgb8), 1014146275330628678u);
  EXPECT_EQ(checksum(*ColourChart(200, 150), VmbPixelFormatBayerGB8), 5745219934558314133u);
  EXPECT_EQ(checksum(*ColourChart(200, 150), VmbPixelFormatYuv422), 5984957616181923102u);
  EXPECT_EQ(checksum(*MonoChart(200, 150), VmbPixelFormatMono8), 5564104845129763522u);
}

TEST(SensorResponse, ThreadsTakePicturesOfOneSceneAtTheSameTime) {
  constexpr int kThreads = 12;
  const auto scene = ColourChart(kWidth, kHeight);
  const auto take = [&scene](int number) {
    const int binning = number % 3 + 1;
    Shot shot =
        WholeShot(number % 2 == 0 ? VmbPixelFormatBayerRG8 : VmbPixelFormatRgb8, kWidth / binning, kHeight / binning);
    shot.binning_x = shot.binning_y = binning;
    return Checksum(Take(*scene, shot));
  };
  std::vector<std::future<std::uint64_t>> taken;
  taken.reserve(kThreads);

  for (int i = 0; i < kThreads; ++i) taken.push_back(std::async(std::launch::async, take, i));

  for (int i = 0; i < kThreads; ++i) EXPECT_EQ(taken[static_cast<std::size_t>(i)].get(), take(i)) << i;
}

}  // namespace
}  // namespace SceneTest
