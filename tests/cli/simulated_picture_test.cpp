// simulated_picture_test.cpp
// What is on the pictures that kelcam takes of the simulated cameras' chart.
#include <cmath>

#include "scene/chart_patches.h"
#include "simulated_kelcam_test.h"

namespace {

// Channels of a picture.
constexpr int kRed = 0;
constexpr int kGreen = 1;
constexpr int kBlue = 2;
constexpr int kGrey = 0;

// Patches of the chart.
constexpr int kPatches = static_cast<int>(Simulator::kChartPatches.size());
constexpr int kRedPatch = 14;
constexpr int kWhitePatch = 18;
constexpr int kBlackPatch = 23;

// How far a patch may be off its colour, in values of 0 to 255: noise, and for YUV the colours that pixels share.
constexpr double kTolerance = 6.0;
constexpr double kYuvTolerance = 8.0;
// What nobody takes for noise.
constexpr double kClearly = 20.0;

const std::string kUnconverted =
    "error: the driver reports success but wrote no picture: it does not convert the frame's pixel format to this kind "
    "of picture\n";

const Simulator::ChartPatch& Patch(int number) { return Simulator::kChartPatches[static_cast<std::size_t>(number)]; }

// The middle half of a patch, well inside its edges.
double PatchMean(const DecodedPicture& picture, int patch, int channel) {
  const Simulator::PatchArea area = Simulator::ChartPatchArea(picture.width, picture.height, patch);
  const double x = (area.right - area.left) / 4;
  const double y = (area.bottom - area.top) / 4;
  return Mean(picture, channel, area.left + x, area.top + y, area.right - x, area.bottom - y);
}

class SimulatedPictures : public SimulatedKelcamTest {
 protected:
  SimulatedPictures() { Simulate(); }

  static void ExpectColours(const DecodedPicture& picture, double tolerance) {
    ASSERT_EQ(picture.channels, 3);
    for (int patch = 0; patch < kPatches; ++patch) {
      EXPECT_NEAR(PatchMean(picture, patch, kRed), Patch(patch).red, tolerance) << Patch(patch).name;
      EXPECT_NEAR(PatchMean(picture, patch, kGreen), Patch(patch).green, tolerance) << Patch(patch).name;
      EXPECT_NEAR(PatchMean(picture, patch, kBlue), Patch(patch).blue, tolerance) << Patch(patch).name;
    }
  }
};

TEST_F(SimulatedPictures, TheColourCameraShowsThePatchesInTheirColours) {
  ExpectColours(Picture(Profile("colour")), kTolerance);
}

TEST_F(SimulatedPictures, TheYuvCameraShowsThemInColourModeToo) {
  ExpectColours(Picture(Profile("yuv"), {"--color", "on"}), kYuvTolerance);
}

TEST_F(SimulatedPictures, TheMonochromeCameraShowsTheGreyPatchesInTheirGrey) {
  const DecodedPicture picture = Picture(Profile("mono"));

  ASSERT_EQ(picture.channels, 1);
  for (int grey = kWhitePatch; grey <= kBlackPatch; ++grey) {
    EXPECT_NEAR(PatchMean(picture, grey, kGrey), Patch(grey).green, kTolerance) << Patch(grey).name;
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

  EXPECT_LT(dark, normal - kClearly);
  EXPECT_GT(bright, normal + kClearly);
}

TEST_F(SimulatedPictures, GainMakesThemBrighter) {
  const std::string profile = Profile("mono");

  const double dark = Mean(Picture(profile, {"--set", "gain=0", "--set", "exposure=2ms"}));
  const double bright = Mean(Picture(profile, {"--set", "gain=5x", "--set", "exposure=2ms"}));

  EXPECT_GT(bright, dark + kClearly);
}

TEST_F(SimulatedPictures, WhiteBalanceShiftsTheColours) {
  const std::string profile = Profile("colour");

  const DecodedPicture red = Picture(profile, {"--set", "wbred=200", "--set", "exposure=4ms"});
  const DecodedPicture blue = Picture(profile, {"--set", "wbblue=200", "--set", "exposure=4ms"});

  EXPECT_GT(PatchMean(red, kWhitePatch, kRed), PatchMean(red, kWhitePatch, kBlue) + kClearly);
  EXPECT_GT(PatchMean(blue, kWhitePatch, kBlue), PatchMean(blue, kWhitePatch, kRed) + kClearly);
}

TEST_F(SimulatedPictures, TheProfileTurnsTheMonochromePictureClockwise) {
  const DecodedPicture upright = Picture(Profile("mono"));
  const DecodedPicture turned = Picture(Profile("mono", "\nRotateBy90Degree = 1\n"));

  // Pixels from a patch's edge; what the noise of two pictures comes to.
  constexpr double kMargin = 4.0;
  constexpr double kTurnedTolerance = 3.0;
  ASSERT_EQ(turned.width, upright.height);
  ASSERT_EQ(turned.height, upright.width);
  for (int patch = 0; patch < kPatches; ++patch) {
    const Simulator::PatchArea area = Simulator::ChartPatchArea(upright.width, upright.height, patch);
    // Clockwise: the lower edge becomes the left one.
    const double left = upright.height - area.bottom;
    const double right = upright.height - area.top;
    EXPECT_NEAR(
        Mean(turned, kGrey, left + kMargin, area.left + kMargin, right - kMargin, area.right - kMargin),
        Mean(upright, kGrey, area.left + kMargin, area.top + kMargin, area.right - kMargin, area.bottom - kMargin),
        kTurnedTolerance)
        << patch;
  }
}

TEST_F(SimulatedPictures, AColourCameraGivesAMonochromePictureOnRequest) {
  const DecodedPicture picture = Picture(Profile("colour"), {"--kind", "mono", "--area", "[p]"});

  EXPECT_EQ(picture.channels, 1);
  EXPECT_GT(PatchMean(picture, kWhitePatch, kGrey), PatchMean(picture, kBlackPatch, kGrey) + 100.0);
}

TEST_F(SimulatedPictures, TheFastConversionShowsTheSameColours) {
  const DecodedPicture fast = Picture(Profile("colour"), {"--area", "[l]"});

  EXPECT_NEAR(PatchMean(fast, kRedPatch, kRed), Patch(kRedPatch).red, kTolerance);
  EXPECT_NEAR(PatchMean(fast, kRedPatch, kBlue), Patch(kRedPatch).blue, kTolerance);
}

// The example's colour camera with another colour format.
TEST_F(SimulatedPictures, AFormatThatTheDriverDoesNotConvertIsAFailedImage) {
  Profile("yuv");
  std::string text = Text("yuv.ini");
  text.replace(text.find("COLORCODEcolor = YUV"), 20, "COLORCODEcolor = RGB");
  const std::string profile = Write("rgb.ini", text);

  const ProcessResult result = Run("snap", profile, {"--color", "on", "-o", In("x.png")});

  EXPECT_EQ(result.err, kUnconverted + "0 of 1 image taken\n");
  EXPECT_FALSE(std::filesystem::exists(PathOf("x.png")));
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(SimulatedPictures, AGreyPictureOfYuvFramesIsAFailedImage) {
  const ProcessResult result = Run("snap", Profile("yuv"), {"--color", "on", "--kind", "mono", "-o", In("x.png")});

  EXPECT_EQ(result.err, kUnconverted + "0 of 1 image taken\n");
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(SimulatedPictures, AFrameOfOneGreyIsAPicture) {
  const DecodedPicture picture = Picture(Profile("mono"), {"--set", "exposure=0.1ms", "--set", "gain=0"});

  EXPECT_LT(Mean(picture), kClearly);
}

TEST_F(SimulatedPictures, WhatATurnedColourCameraLeavesOutOfAGreyPictureIsBlack) {
  const DecodedPicture picture = Picture(Profile("colour", "\nRotateBy90Degree = 1\n"), {"--kind", "mono"});

  const int missing_from = picture.width;
  ASSERT_LT(missing_from, picture.height);
  EXPECT_EQ(Mean(picture, kGrey, 0, missing_from, picture.width, picture.height), 0.0);
  EXPECT_GT(Mean(picture, kGrey, 0, 0, picture.width, missing_from), kClearly);
}

}  // namespace
