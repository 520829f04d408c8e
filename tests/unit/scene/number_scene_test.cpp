// scene/number_scene_test.cpp
// The scene that says which frame it is.
#include <gmock/gmock.h>

#include "unit/scene/shots.h"

namespace SceneTest {
namespace {

using Simulator::kNumberSceneBase;
using Simulator::kNumberSceneDark;
using testing::Each;

constexpr int kWidth = 4;
constexpr int kHeight = 4;

struct Halves {
  Bytes upper;
  Bytes lower;
};

Halves HalvesOf(VmbPixelFormat_t format, std::uint64_t frame_number) {
  Simulator::Shot shot = WholeShot(format, kWidth, kHeight);
  shot.frame_number = frame_number;
  const Bytes all = Take(*Simulator::MakeNumberScene(), shot);
  const auto middle = all.begin() + static_cast<std::ptrdiff_t>(all.size() / 2);
  return {{all.begin(), middle}, {middle, all.end()}};
}

TEST(NumberScene, HasTheDigitsOfTheFrameNumberAsGreyValues) {
  const Halves halves = HalvesOf(VmbPixelFormatMono8, 3 + 5 * kNumberSceneBase);

  EXPECT_THAT(halves.upper, Each(kNumberSceneDark + 3));
  EXPECT_THAT(halves.lower, Each(kNumberSceneDark + 5));
}

TEST(NumberScene, IsTheSameGreyInAMosaicAndInColour) {
  EXPECT_THAT(HalvesOf(VmbPixelFormatBayerGB8, 7).upper, Each(kNumberSceneDark + 7));
  EXPECT_THAT(HalvesOf(VmbPixelFormatRgb8, 7).upper, Each(kNumberSceneDark + 7));
}

TEST(NumberScene, HasNoColourInAYuvFrame) {
  constexpr int kNoColour = 128;
  const Bytes upper = HalvesOf(VmbPixelFormatYuv422, 7).upper;

  for (std::size_t i = 0; i < upper.size(); i += 2) {
    EXPECT_EQ(upper[i], kNoColour);
    EXPECT_EQ(upper[i + 1], kNumberSceneDark + 7);
  }
}

}  // namespace
}  // namespace SceneTest
