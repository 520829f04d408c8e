// raw_picture_test.cpp
// Frames as the cameras send them, out of the pictures that the driver makes of them.
#include <algorithm>

#include "bcolorconverter.h"
#include "bimagergb.h"
#include "bsmartref.h"
#include "picture_metadata.h"
#include "simulated_kelcam_test.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* kNoMosaic =
    "error: the camera's frame is not a Bayer mosaic, so there is no raw picture of it\n0 of 1 image taken\n";

class RawPictures : public SimulatedKelcamTest {
 protected:
  // Every frame is alike: a still scene without noise.
  RawPictures() {
    const nlohmann::json scene = {{"picture", KEL_EXAMPLE_PROFILES "/../../../docs/images/chart.png"}};
    nlohmann::json cameras = nlohmann::json::array();
    for (const char* camera : {"DEV_000F31034C65", "DEV_000F31034C66", "DEV_000F310199B8"}) {
      const nlohmann::json sensor = {{"width", 616}, {"height", 514}};
      cameras.push_back({{"like", camera}, {"sensor", sensor}, {"noise", false}, {"scene", scene}});
    }
    Simulate({{"cameras", cameras}});
  }

  DecodedPicture Raw(const std::string& profile, const Arguments& more = {}) const {
    Arguments arguments{"--raw"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return Picture(profile, arguments);
  }
};

TEST_F(RawPictures, AMonochromeFrameIsThePicture) {
  const std::string profile = Profile("mono");

  const DecodedPicture raw = Raw(profile);

  EXPECT_EQ(raw.channels, 1);
  EXPECT_EQ(raw.pixels, Picture(profile).pixels);
  EXPECT_EQ(PngTexts(Text("x.png")).count("Bayer Order"), 0u);
}

TEST_F(RawPictures, ATurnedCamerasFrameIsNotTurned) {
  const DecodedPicture raw = Raw(Profile("mono", "\nRotateBy90Degree = 1\n"));

  EXPECT_GT(raw.width, raw.height);
}

TEST_F(RawPictures, AMosaicConvertedHereIsThePictureThatTheDriverConverts) {
  const std::string profile = Profile("colour");

  const DecodedPicture raw = Raw(profile);
  const std::string order = PngTexts(Text("x.png"))["Bayer Order"];
  const DecodedPicture picture = Picture(profile);

  ASSERT_EQ(raw.channels, 1);
  const BSize size{raw.width, raw.height};
  BImageRgb converted(size);
  const BSmartRef<BColorConverter> converter(new BColorConverter(size, BColorConverter::eRGGB));
  converter->ConvertRawToRGB(raw.pixels.data(), converted);
  for (int y = 0; y < size.height; ++y) {
    const auto row = picture.pixels.begin() + std::ptrdiff_t{3} * size.width * y;
    ASSERT_TRUE(std::equal(row, row + std::ptrdiff_t{3} * size.width, converted.Row(y))) << "row " << y;
  }
  EXPECT_EQ(order, "RGGB");
}

TEST_F(RawPictures, APgmOfAMosaicNamesTheOrderOfItsColours) {
  Run("snap", Profile("colour"), {"--raw", "-o", In("x.pgm"), "--timeout", "60000"});

  EXPECT_THAT(Text("x.pgm"), StartsWith("P5\n# Bayer order RGGB\n616 514\n255\n"));
  EXPECT_EQ(Decoded(Text("x.pgm")).channels, 1);
}

TEST_F(RawPictures, AFrameThatIsNoMosaicIsRefused) {
  const ProcessResult result =
      Run("snap", Profile("yuv"), {"--raw", "--color", "on", "-o", In("x.pgm"), "--timeout", "60000"});

  EXPECT_EQ(result.err, kNoMosaic);
  EXPECT_FALSE(std::filesystem::exists(PathOf("x.pgm")));
  EXPECT_EQ(result.exit_code, kFailed);
}

class ScriptedRawPictures : public ScriptedKelcamTest {};

TEST_F(ScriptedRawPictures, APictureThatNoMosaicGivesIsRefused) {
  Script("color=1");

  EXPECT_EQ(Snap({"--raw", "-o", In("x.pgm")}).err, kNoMosaic);
}

TEST_F(ScriptedRawPictures, AMonochromeCamerasColouredPictureIsRefused) {
  const ProcessResult result = Snap({"--raw", "-o", In("x.pgm")});

  EXPECT_THAT(result.err, HasSubstr("the camera's frame is not grey, so there is no raw picture of it\n"));
  EXPECT_EQ(Operations(), (Lines{"StartSnap(one shot)", "Snap(rgb, '[l]', 5000 ms)", "StopSnap"}));
}

}  // namespace
