// simulated_picture_test.cpp
// What is on the pictures that kelcam takes of the simulated cameras' chart.
#include <cmath>

#include "scene/chart_patches.h"
#include "simulated_kelcam_test.h"

namespace {

class SimulatedPictures : public SimulatedKelcamTest {
 protected:
  SimulatedPictures() { Simulate(); }
};

// The middle half of a patch, well inside its edges.
double PatchMean(const DecodedPicture& picture, int patch, int channel) {
  const Simulator::PatchArea area = Simulator::ChartPatchArea(picture.width, picture.height, patch);
  const double x = (area.right - area.left) / 4;
  const double y = (area.bottom - area.top) / 4;
  return Mean(picture, channel, area.left + x, area.top + y, area.right - x, area.bottom - y);
}

TEST_F(SimulatedPictures, TheColourCameraShowsThePatchesInTheirColours) {
  const DecodedPicture picture = Picture(Profile("colour"));

  ASSERT_EQ(picture.channels, 3);
  for (std::size_t i = 0; i < Simulator::kChartPatches.size(); ++i) {
    const Simulator::ChartPatch& patch = Simulator::kChartPatches[i];
    const int patch_number = static_cast<int>(i);
    EXPECT_NEAR(PatchMean(picture, patch_number, 0), patch.red, 6.0) << patch.name;
    EXPECT_NEAR(PatchMean(picture, patch_number, 1), patch.green, 6.0) << patch.name;
    EXPECT_NEAR(PatchMean(picture, patch_number, 2), patch.blue, 6.0) << patch.name;
  }
}

TEST_F(SimulatedPictures, TheYuvCameraShowsThemInColourModeToo) {
  const DecodedPicture picture = Picture(Profile("yuv"), {"--color", "on"});

  ASSERT_EQ(picture.channels, 3);
  for (std::size_t i = 0; i < Simulator::kChartPatches.size(); ++i) {
    const Simulator::ChartPatch& patch = Simulator::kChartPatches[i];
    const int patch_number = static_cast<int>(i);
    EXPECT_NEAR(PatchMean(picture, patch_number, 0), patch.red, 8.0) << patch.name;
    EXPECT_NEAR(PatchMean(picture, patch_number, 1), patch.green, 8.0) << patch.name;
    EXPECT_NEAR(PatchMean(picture, patch_number, 2), patch.blue, 8.0) << patch.name;
  }
}

TEST_F(SimulatedPictures, TheMonochromeCameraShowsTheGreyPatchesInTheirGrey) {
  const DecodedPicture picture = Picture(Profile("mono"));

  ASSERT_EQ(picture.channels, 1);
  for (int grey = 18; grey < 24; ++grey) {
    const Simulator::ChartPatch& patch = Simulator::kChartPatches[static_cast<std::size_t>(grey)];
    EXPECT_NEAR(PatchMean(picture, grey, 0), patch.green, 6.0) << patch.name;
  }
}

TEST_F(SimulatedPictures, HoldTheWholeSensor) {
  const std::string profile = Profile("mono");

  const nlohmann::json info = Info(profile);
  const DecodedPicture picture = Picture(profile);

  EXPECT_EQ(picture.width, info["width"]);
  EXPECT_EQ(picture.height, info["height"]);
}

TEST_F(SimulatedPictures, ExposureMakesThemBrighter) {
  const std::string profile = Profile("mono");

  const double dark = Mean(Picture(profile, {"--set", "exposure=2ms"}));
  const double normal = Mean(Picture(profile, {"--set", "exposure=10ms"}));
  const double bright = Mean(Picture(profile, {"--set", "exposure=500"}));

  EXPECT_LT(dark, normal - 20.0);
  EXPECT_GT(bright, normal + 20.0);
}

TEST_F(SimulatedPictures, GainMakesThemBrighter) {
  const std::string profile = Profile("mono");

  const double dark = Mean(Picture(profile, {"--set", "gain=0", "--set", "exposure=2ms"}));
  const double bright = Mean(Picture(profile, {"--set", "gain=5x", "--set", "exposure=2ms"}));

  EXPECT_GT(bright, dark + 20.0);
}

TEST_F(SimulatedPictures, WhiteBalanceShiftsTheColours) {
  const std::string profile = Profile("colour");
  const int white = 18;

  const DecodedPicture red = Picture(profile, {"--set", "wbred=200", "--set", "exposure=4ms"});
  const DecodedPicture blue = Picture(profile, {"--set", "wbblue=200", "--set", "exposure=4ms"});

  EXPECT_GT(PatchMean(red, white, 0), PatchMean(red, white, 2) + 20.0);
  EXPECT_GT(PatchMean(blue, white, 2), PatchMean(blue, white, 0) + 20.0);
}

TEST_F(SimulatedPictures, TheProfileTurnsTheMonochromePictureClockwise) {
  const DecodedPicture upright = Picture(Profile("mono"));
  const DecodedPicture turned = Picture(Profile("mono", "\nRotateBy90Degree = 1\n"));

  ASSERT_EQ(turned.width, upright.height);
  ASSERT_EQ(turned.height, upright.width);
  for (int patch = 0; patch < 24; ++patch) {
    const Simulator::PatchArea area = Simulator::ChartPatchArea(upright.width, upright.height, patch);
    const double left = upright.height - area.bottom;  // clockwise: the lower edge comes to lie on the left
    EXPECT_NEAR(Mean(turned, 0, left + 4, area.left + 4, upright.height - area.top - 4, area.right - 4),
                Mean(upright, 0, area.left + 4, area.top + 4, area.right - 4, area.bottom - 4), 3.0)
        << patch;
  }
}

TEST_F(SimulatedPictures, AColourCameraGivesAMonochromePictureOnRequest) {
  const DecodedPicture picture = Picture(Profile("colour"), {"--kind", "mono", "--area", "[p]"});

  EXPECT_EQ(picture.channels, 1);
  EXPECT_GT(PatchMean(picture, 18, 0), PatchMean(picture, 23, 0) + 100.0);  // white over black
}

TEST_F(SimulatedPictures, TheFastConversionShowsTheSameColours) {
  const DecodedPicture fast = Picture(Profile("colour"), {"--area", "[l]"});

  EXPECT_NEAR(PatchMean(fast, 14, 0), Simulator::kChartPatches[14].red, 6.0);
  EXPECT_NEAR(PatchMean(fast, 14, 2), Simulator::kChartPatches[14].blue, 6.0);
}

}  // namespace
