// automatics_test.cpp
// Automatic exposure, gain and white balance.
#include <cstdlib>
#include <filesystem>
#include <random>

#include "simulated_link.h"
#include "support/picture_file.h"

namespace {

// Frames by software trigger, one after another.
struct Automatics : testing::TestWithParam<const char*> {
  static constexpr int kWidth = 320;
  static constexpr int kHeight = 240;
  static constexpr int kPixels = kWidth * kHeight;

  StartedCameras world{SimulatedCamera().Colour("RGGB").Sensor(kWidth, kHeight)};
  OpenedHandle camera;
  // Room for RGB.
  FrameRing ring{camera, 1, 3 * kPixels};
  std::size_t taken = 0;

  Automatics() {
    TriggerBy(camera, "Software");
    ring.KeepQueued();
    ring.Start();
  }
  void Take(int frames) {
    RunCommand(camera, "AcquisitionStart");
    for (int i = 0; i < frames; ++i) {
      RunCommand(camera, "TriggerSoftware");
      ring.WaitFor(++taken);
      WaitIdle();
    }
    RunCommand(camera, "AcquisitionStop");
  }
  // Channel 0 is red, 1 green.
  double MeanOfRgb(std::size_t channel) {
    SetEnum(camera, "PixelFormat", "RGB8Packed");
    Take(1);
    double sum = 0.0;
    for (std::size_t i = channel; i < ring.Buffer(0).size(); i += 3) sum += ring.Buffer(0)[i];
    return sum / kPixels;
  }
};

TEST_P(Automatics, OnceBringsExposureToTheSameBrightnessFromBelowAndAbove) {
  SetEnum(camera, "PixelFormat", GetParam());
  std::vector<double> exposures;
  for (const double start : {100.0, 200'000.0}) {
    SetFloat(camera, "ExposureTimeAbs", start);
    SetEnum(camera, "ExposureAuto", "Once");

    Take(20);

    EXPECT_EQ(EnumOf(camera, "ExposureAuto"), "Off");
    exposures.push_back(FloatOf(camera, "ExposureTimeAbs"));
  }

  EXPECT_NEAR(exposures[0] / exposures[1], 1.0, 0.1);
  EXPECT_GT(exposures[0], 1000.0);
  EXPECT_LT(exposures[0], 50'000.0);
}

INSTANTIATE_TEST_SUITE_P(Automatics, Automatics, testing::Values("BayerRG8", "Mono8", "YUV422Packed", "RGB8Packed"));

TEST_F(Automatics, GainMakesUpForAShortExposure) {
  SetFloat(camera, "ExposureTimeAbs", 500.0);
  SetEnum(camera, "GainAuto", "Continuous");

  Take(20);

  EXPECT_EQ(EnumOf(camera, "GainAuto"), "Continuous");
  EXPECT_GT(FloatOf(camera, "Gain"), 15.0);
}

TEST_F(Automatics, WhiteBalanceRemovesAColourCast) {
  SetEnum(camera, "BalanceRatioSelector", "Red");
  SetFloat(camera, "BalanceRatioAbs", 2.5);
  const double cast = MeanOfRgb(0) - MeanOfRgb(1);

  SetEnum(camera, "BalanceWhiteAuto", "Once");
  Take(20);

  EXPECT_EQ(EnumOf(camera, "BalanceWhiteAuto"), "Off");
  EXPECT_LT(FloatOf(camera, "BalanceRatioAbs"), 2.0);
  EXPECT_LT(std::abs(MeanOfRgb(0) - MeanOfRgb(1)), cast / 2.0);
}

// What automatic exposure finds for a picture of this width of a grey sheet that the white balance makes red. In the
// picture's format two pixels share their colour.
double ExposureOfARedSheet(std::int64_t width) {
  const auto sheet =
      std::filesystem::temp_directory_path() / ("vimba_sim_sheet_" + std::to_string(std::random_device()()) + ".png");
  WriteGreyPng(sheet, 1, 1, {120});
  const StartedCameras world{SimulatedCamera()
                                 .Colour("RGGB")
                                 .With("noise", false)
                                 .With("scene", {{"picture", sheet.generic_string()}})
                                 .Feature("PixelFormat", "YUV422Packed")
                                 .Feature("BalanceRatioAbs", 3.0)
                                 .Feature("Width", width)
                                 .Feature("ExposureAuto", "Continuous")};
  std::filesystem::remove(sheet);
  const OpenedHandle camera;
  FrameRing ring(camera, 1);
  TriggerBy(camera, "Software");
  ring.Start();
  RunCommand(camera, "AcquisitionStart");
  RunCommand(camera, "TriggerSoftware");
  ring.WaitFor(1);
  WaitIdle();
  return FloatOf(camera, "ExposureTimeAbs");
}

TEST(AutomaticExposure, TakesNoColourFromTheNextRowAtTheEndOfAnOddOne) {
  constexpr double kDefaultExposureUs = 10'000.0;

  const double even = ExposureOfARedSheet(8);
  const double odd = ExposureOfARedSheet(9);

  EXPECT_NE(even, kDefaultExposureUs);
  EXPECT_NEAR(odd / even, 1.0, 1e-9);
}

TEST_F(Automatics, OffChangesNothing) {
  SetFloat(camera, "ExposureTimeAbs", 500.0);

  Take(3);

  EXPECT_EQ(FloatOf(camera, "ExposureTimeAbs"), 500.0);
  EXPECT_EQ(FloatOf(camera, "Gain"), 0.0);
}

}  // namespace
