// picture_notices_test.cpp
// Pictures that are not what the profile and the options ask for: what kelcam says of each before it takes them.
#include "simulated_kelcam_test.h"

namespace {

using nlohmann::json;

// The small cameras' sensors.
constexpr int kWidth = 616;
constexpr int kHeight = 514;

struct Asked {
  const char* name;
  const char* camera;  // an example profile
  std::string keys;
  std::vector<std::string> options;
  const char* file;
  std::string notices;
  // What the file is.
  int width;
  int height;
  int channels;
};

void PrintTo(const Asked& asked, std::ostream* out) { *out << asked.name; }

class PictureNotices : public SimulatedKelcamTest, public testing::WithParamInterface<Asked> {
 protected:
  PictureNotices() { Simulate(); }
};

TEST_P(PictureNotices, NameWhatTheFileIsNot) {
  const Asked& asked = GetParam();
  Arguments arguments{"-n", "2", "-o", In(std::string("%d.") + asked.file), "--timeout", "60000", "-q"};
  arguments.insert(arguments.end(), asked.options.begin(), asked.options.end());

  const ProcessResult result = Run("snap", Profile(asked.camera, "\n" + asked.keys), arguments);

  // Once, whatever the number of pictures.
  EXPECT_EQ(result.err, asked.notices);
  EXPECT_EQ(result.exit_code, kDone);
  const DecodedPicture picture = Decoded(Text(std::string("2.") + asked.file));
  EXPECT_EQ(picture.width, asked.width);
  EXPECT_EQ(picture.height, asked.height);
  EXPECT_EQ(picture.channels, asked.channels);
}

const Asked kTurned[] = {
    {"GreyOfMono", "mono", "RotateBy90Degree = 1\n", {}, "png", "", kHeight, kWidth, 1},
    {"GreyAreaOfMono",
     "mono",
     "RotateBy90Degree = -1\nAOIX = 100\nAOIY = 51\nAOIWIDTH = 300\nAOIHEIGHT = 200\n",
     {"--area", "[l]"},
     "png",
     "",
     200,
     300,
     1},
    {"RgbOfMono",
     "mono",
     "RotateBy90Degree = 1\n",
     {"--kind", "rgb"},
     "png",
     "notice: RotateBy90Degree = 1 turns no picture of --kind rgb: take it with --kind mono\n"
     "notice: --kind rgb: a monochrome camera has no colours, so the picture is grey\n",
     kWidth,
     kHeight,
     3},
    {"RawOfMono",
     "mono",
     "RotateBy90Degree = 1\n",
     {"--raw"},
     "png",
     "notice: RotateBy90Degree = 1 turns no raw picture: turn the file, or take it without --raw\n",
     kWidth,
     kHeight,
     1},
    {"Colour",
     "colour",
     "RotateBy90Degree = -1\n",
     {},
     "png",
     "notice: RotateBy90Degree = -1 turns no colour picture: turn the file, or remove the key\n",
     kWidth,
     kHeight,
     3},
    {"ColourInYuv",
     "yuv",
     "RotateBy90Degree = 1\n",
     {"--color", "on"},
     "png",
     "notice: RotateBy90Degree = 1 turns no colour picture: turn the file, or remove the key\n",
     646,
     482,
     3},
    {"GreyOfColour",
     "colour",
     "RotateBy90Degree = 1\n",
     {"--kind", "mono"},
     "png",
     "notice: RotateBy90Degree = 1 cuts the grey picture of a colour camera and does not turn it: remove the key, and "
     "turn the file\n",
     kHeight,
     kWidth,
     1},
    {"SquareGreyOfColour",
     "colour",
     "RotateBy90Degree = 1\nAOIWIDTH = 514\n",
     {},
     "pgm",
     "notice: RotateBy90Degree = 1 turns no picture of a colour camera: turn the file, or remove the key\n",
     kHeight,
     kHeight,
     1},
};

const Asked kColours[] = {
    {"RgbOfMono",
     "mono",
     "",
     {"--kind", "rgb"},
     "png",
     "notice: --kind rgb: a monochrome camera has no colours, so the picture is grey\n",
     kWidth,
     kHeight,
     3},
    {"ColourWithColourOff",
     "colour",
     "",
     {"--color", "off"},
     "png",
     "notice: --color off switches the camera, and the picture has colours all the same: add --kind mono for a grey "
     "one\n",
     kWidth,
     kHeight,
     3},
    {"GreyAndColourOff", "colour", "", {"--color", "off", "--kind", "mono"}, "png", "", kWidth, kHeight, 1},
    {"RgbAndColourOff", "colour", "", {"--color", "off", "--kind", "rgb"}, "png", "", kWidth, kHeight, 3},
    {"GreyFormatAndColourOff", "colour", "", {"--color", "off"}, "pgm", "", kWidth, kHeight, 1},
    {"GreyFormatAndColourOn",
     "colour",
     "",
     {"--color", "on"},
     "pgm",
     "notice: --color on: a .pgm picture is grey all the same; choose .png, .tif or .ppm for colours\n",
     kWidth,
     kHeight,
     1},
    {"GreyAndColourOn", "colour", "", {"--color", "on", "--kind", "mono"}, "pgm", "", kWidth, kHeight, 1},
    {"RawAndColourOn", "colour", "", {"--color", "on", "--raw"}, "png", "", kWidth, kHeight, 1},
};

const Asked kAreas[] = {
    {"TooLarge",
     "mono",
     "AOIWIDTH = 5000\nAOIHEIGHT = 515\n",
     {},
     "png",
     "notice: AOIWIDTH = 5000 is more than the camera has, so the picture has the whole width: set a smaller one\n"
     "notice: AOIHEIGHT = 515 is more than the camera has, so the picture has the whole height: set a smaller one\n",
     kWidth,
     kHeight,
     1},
    {"Whole", "mono", "AOIX = 0\nAOIWIDTH = 616\nAOIHEIGHT = 514\n", {}, "png", "", kWidth, kHeight, 1},
    {"PlaceAlone",
     "mono",
     "AOIX = 100\nAOIY = 50\n",
     {},
     "png",
     "notice: AOIX = 100 has no effect on a picture of the whole width: set AOIWIDTH, too\n"
     "notice: AOIY = 50 has no effect on a picture of the whole height: set AOIHEIGHT, too\n",
     kWidth,
     kHeight,
     1},
    {"OddOfColour",
     "colour",
     "AOIX = 101\nAOIY = 51\nAOIWIDTH = 300\nAOIHEIGHT = 200\n",
     {},
     "png",
     "notice: AOIX = 101 is odd, which gives a colour camera wrong colours: set an even number\n"
     "notice: AOIY = 51 is odd, which gives a colour camera wrong colours: set an even number\n",
     300,
     200,
     3},
    {"OddOfRaw",
     "colour",
     "AOIX = 101\nAOIWIDTH = 300\n",
     {"--raw"},
     "png",
     "notice: AOIX = 101 is odd, which gives a colour camera wrong colours: set an even number\n",
     300,
     kHeight,
     1},
    {"OddOfYuv", "yuv", "AOIX = 101\nAOIWIDTH = 300\n", {"--color", "on"}, "png", "", 300, 482, 3},
    {"OddOfMono", "mono", "AOIX = 101\nAOIWIDTH = 300\n", {}, "png", "", 300, kHeight, 1},
    {"Binned", "mono", "BINNING = 2\n", {}, "png", "", kWidth / 2, kHeight / 2, 1},
};

const auto kNameOf = [](const testing::TestParamInfo<Asked>& info) { return info.param.name; };

INSTANTIATE_TEST_SUITE_P(Turned, PictureNotices, testing::ValuesIn(kTurned), kNameOf);
INSTANTIATE_TEST_SUITE_P(Colours, PictureNotices, testing::ValuesIn(kColours), kNameOf);
INSTANTIATE_TEST_SUITE_P(Areas, PictureNotices, testing::ValuesIn(kAreas), kNameOf);

class MissingBinning : public SimulatedKelcamTest {
 protected:
  MissingBinning() {
    Simulate({{"cameras", {{{"sensor", {{"width", kWidth}, {"height", kHeight}}}, {"binning", 0}}}}});
  }

  std::string NoticesOf(const std::string& keys) const {
    return Run("snap", Profile("mono", "\n" + keys), {"-o", In("x.png"), "--timeout", "60000"}).err;
  }
};

TEST_F(MissingBinning, IsNamedForBothDirections) {
  EXPECT_EQ(NoticesOf("BINNING = 2 pixels\n"),
            "notice: BINNING = 2 pixels has no effect on the width, which the camera does not bin: remove the key\n"
            "notice: BINNING = 2 pixels has no effect on the height, which the camera does not bin: remove the key\n");
}

TEST_F(MissingBinning, IsNotMissedWhereNoneIsAskedFor) {
  EXPECT_EQ(NoticesOf(""), "");
  EXPECT_EQ(NoticesOf("BINNING = 1\n"), "");
}

}  // namespace
