// scene/chart_test.cpp
// What the built-in chart shows: patches, counter, hand, marks, on sensors of any size.
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <utility>

#include "unit/scene/shots.h"

namespace SceneTest {
namespace {

using Simulator::BayerOrder;
using Simulator::ChartPatch;
using Simulator::kChartPatches;
using Simulator::PatchArea;
using Simulator::Shot;

constexpr int kPatches = static_cast<int>(kChartPatches.size());

// Every place at which two pictures of one shot differ.
std::vector<std::pair<int, int>> Differences(const Bytes& a, const Bytes& b, int width) {
  std::vector<std::pair<int, int>> places;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (a[i] != b[i]) places.emplace_back(static_cast<int>(i) % width, static_cast<int>(i) / width);
  }
  return places;
}

class ChartOfAnySize : public testing::TestWithParam<std::pair<int, int>> {};

TEST_P(ChartOfAnySize, HasPatchesOfTheirPublishedColoursAtTheDefaultExposure) {
  const auto [width, height] = GetParam();
  const Shot shot = WholeShot(VmbPixelFormatRgb8, width, height);

  const Bytes picture = Take(*ColourChart(width, height), shot);

  for (int i = 0; i < kPatches; ++i) {
    const ChartPatch& patch = kChartPatches[static_cast<std::size_t>(i)];
    EXPECT_EQ(PatchAt(picture, shot, i), (Rgb{patch.red, patch.green, patch.blue})) << patch.name;
  }
}

INSTANTIATE_TEST_SUITE_P(Chart, ChartOfAnySize,
                         testing::Values(std::pair{640, 480}, std::pair{1936, 1216}, std::pair{480, 640},
                                         std::pair{900, 300}));

TEST(Chart, PatchesAreFlatUpToTheirEdges) {
  const Shot shot = WholeShot(VmbPixelFormatRgb8, 800, 600);

  const Bytes picture = Take(*ColourChart(800, 600), shot);

  for (int i = 0; i < kPatches; ++i) {
    const PatchArea area = Simulator::ChartPatchArea(800, 600, i);
    const Rgb middle = PatchAt(picture, shot, i);
    EXPECT_EQ(PixelAt(picture, shot, static_cast<int>(area.left) + 1, static_cast<int>(area.top) + 1), middle) << i;
    EXPECT_EQ(PixelAt(picture, shot, static_cast<int>(area.right) - 2, static_cast<int>(area.bottom) - 2), middle) << i;
  }
}

TEST(Chart, MonochromeSensorSeesThePatchesLuminance) {
  const Shot shot = WholeShot(VmbPixelFormatMono8, 640, 480);

  const Bytes picture = Take(*MonoChart(640, 480), shot);

  for (int i = 0; i < kPatches; ++i) {
    const ChartPatch& patch = kChartPatches[static_cast<std::size_t>(i)];
    const double luminance = 0.2126 * Linear(patch.red) + 0.7152 * Linear(patch.green) + 0.0722 * Linear(patch.blue);
    const PatchArea area = Simulator::ChartPatchArea(640, 480, i);
    const int x = static_cast<int>((area.left + area.right) / 2);
    const int y = static_cast<int>((area.top + area.bottom) / 2);
    EXPECT_NEAR(Linear(picture[static_cast<std::size_t>(y * 640 + x)]), luminance, 0.005) << patch.name;
  }
}

TEST(Chart, CounterChangesOnlyInItsChangedDigits) {
  const auto scene = MonoChart(640, 480);
  const auto picture = [&](std::uint64_t frame_number) {
    Shot shot = WholeShot(VmbPixelFormatMono8, 640, 480);
    shot.frame_number = frame_number;
    return Take(*scene, shot);
  };

  const auto last_digit = Differences(picture(12), picture(13), 640);
  const auto tens_digit = Differences(picture(12), picture(22), 640);

  ASSERT_FALSE(last_digit.empty());
  ASSERT_FALSE(tens_digit.empty());
  // Right half, near the lower edge; the tens are left of the ones.
  for (const auto& [x, y] : last_digit) EXPECT_TRUE(x > 320 && y > 400) << x << ", " << y;
  EXPECT_LT(std::max_element(tens_digit.begin(), tens_digit.end())->first,
            std::min_element(last_digit.begin(), last_digit.end())->first);
}

TEST(Chart, CounterStartsAnewAfterAMillionFrames) {
  const auto scene = MonoChart(320, 240);
  Shot shot = WholeShot(VmbPixelFormatMono8, 320, 240);
  shot.frame_number = 7;
  const Bytes seven = Take(*scene, shot);

  shot.frame_number = 18446744073709000007u;

  EXPECT_EQ(Take(*scene, shot), seven);
}

TEST(Chart, HandTurnsClockwiseOnceInASecond) {
  const auto scene = ColourChart(600, 600);
  Shot shot = WholeShot(VmbPixelFormatRgb8, 600, 600);
  const auto hand_at = [&](double seconds, int x, int y) {
    shot.time = Simulator::Seconds(seconds);
    const Rgb pixel = PixelAt(Take(*scene, shot), shot, x, y);
    return pixel[0] > 200 && pixel[2] < 80;
  };
  // Middle of the ring: 24 hundredths of the content's 528 rows away from the picture's middle.
  const int away = 124;

  EXPECT_TRUE(hand_at(0.0, 300, 300 - away));
  EXPECT_TRUE(hand_at(0.25, 300 + away, 300));
  EXPECT_TRUE(hand_at(0.5, 300, 300 + away));
  EXPECT_TRUE(hand_at(0.75, 300 - away, 300));
  EXPECT_TRUE(hand_at(86400.0, 300, 300 - away));
  EXPECT_FALSE(hand_at(0.5, 300, 300 - away));
}

TEST(Chart, MirroredOrTurnedPicturesDifferFromTheChart) {
  const Bytes picture = Take(*MonoChart(480, 480), WholeShot(VmbPixelFormatMono8, 480, 480));

  Bytes mirrored;
  for (std::size_t row = 0; row < 480; ++row) {
    const auto start = picture.begin() + static_cast<std::ptrdiff_t>(row * 480);
    std::reverse_copy(start, start + 480, std::back_inserter(mirrored));
  }
  const Bytes turned(picture.rbegin(), picture.rend());

  EXPECT_GT(Differences(picture, mirrored, 480).size(), 5000u);
  EXPECT_GT(Differences(picture, turned, 480).size(), 5000u);
}

TEST(Chart, FillsTheSensorToItsCorners) {
  const Shot shot = WholeShot(VmbPixelFormatRgb8, 641, 487);

  const Bytes picture = Take(*ColourChart(641, 487), shot);

  const Rgb paper{243, 243, 242};
  for (const int x : {0, 640}) {
    for (const int y : {0, 486}) EXPECT_EQ(PixelAt(picture, shot, x, y), paper) << x << ", " << y;
  }
}

TEST(Chart, TinySensorsHavePicturesToo) {
  for (int side = 1; side <= 24; ++side) {
    for (const VmbPixelFormat_t format : {VmbPixelFormatMono8, VmbPixelFormatBayerRG8, VmbPixelFormatRgb8}) {
      const Shot shot = WholeShot(format, side, 25 - side);
      const Bytes picture = Take(*ColourChart(side, 25 - side), shot);
      EXPECT_GT(*std::max_element(picture.begin(), picture.end()), 40) << side << " x " << 25 - side;
    }
  }
}

TEST(Chart, SizesOutOfRangeAreRefused) {
  EXPECT_THROW(Simulator::MakeChartScene(0, 480, true, BayerOrder::kRggb), std::invalid_argument);
  EXPECT_THROW(Simulator::MakeChartScene(640, -1, true, BayerOrder::kRggb), std::invalid_argument);
  EXPECT_THROW(Simulator::MakeChartScene(32769, 480, true, BayerOrder::kRggb), std::invalid_argument);
}

}  // namespace
}  // namespace SceneTest
