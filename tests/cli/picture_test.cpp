// picture_test.cpp
// The files that kelcam snap writes.
#include "picture_file.h"

#include "kelcam_test.h"
#include "modules/scripted_picture.h"

namespace {

using testing::StartsWith;

class Pictures : public ScriptedKelcamTest {
 protected:
  void ExpectPicture(const std::string& name, int number, int channels) const {
    const DecodedPicture picture = Decoded(Text(name));
    EXPECT_EQ(picture.width, ScriptedPicture::kWidth) << name;
    EXPECT_EQ(picture.height, ScriptedPicture::kHeight) << name;
    EXPECT_EQ(picture.channels, channels) << name;
    EXPECT_EQ(picture.pixels, ScriptedPicture(number).Pixels(channels)) << name;
  }
};

TEST_F(Pictures, AMonochromeCameraGivesAGreyPng) {
  const ProcessResult result = Snap({"-o", In("x.png")});

  ExpectPicture("x.png", 1, 1);
  EXPECT_EQ(result.exit_code, kDone) << result.err;
}

TEST_F(Pictures, AColourCameraGivesAColourPng) {
  Script("color=1");

  Snap({"-o", In("x.png")});

  ExpectPicture("x.png", 1, 3);
}

TEST_F(Pictures, KindChoosesAgainstTheCamera) {
  Script("color=1");

  Snap({"-o", In("x.png"), "--kind", "mono"});

  ExpectPicture("x.png", 1, 1);
}

TEST_F(Pictures, APgmIsPlainAndGreyAlsoFromAColourCamera) {
  Script("color=1");

  Snap({"-o", In("x.pgm")});

  EXPECT_EQ(Text("x.pgm").substr(0, 11), "P5\n5 3\n255\n");
  ExpectPicture("x.pgm", 1, 1);
}

TEST_F(Pictures, APpmIsPlainAndColoured) {
  Script("color=1");

  Snap({"-o", In("x.PPM")});

  EXPECT_EQ(Text("x.PPM").substr(0, 11), "P6\n5 3\n255\n");
  ExpectPicture("x.PPM", 1, 3);
}

TEST_F(Pictures, AMonochromePictureGoesIntoAPpmAsGrey) {
  Snap({"-o", In("x.ppm")});

  const DecodedPicture picture = Decoded(Text("x.ppm"));
  const std::vector<std::uint8_t> grey = ScriptedPicture(1).Pixels(1);
  ASSERT_EQ(picture.channels, 3);
  for (std::size_t i = 0; i < grey.size(); ++i) {
    const std::uint8_t* pixel = &picture.pixels[3 * i];
    EXPECT_EQ(std::vector<std::uint8_t>(pixel, pixel + 3), std::vector<std::uint8_t>(3, grey[i])) << i;
  }
}

TEST_F(Pictures, EachIsInTheFileOfItsNumber) {
  const ProcessResult result = Snap({"-n", "3", "-o", In("%d.png")});

  for (int number = 1; number <= 3; ++number) ExpectPicture(std::to_string(number) + ".png", number, 1);
  EXPECT_EQ(result.exit_code, kDone);
}

TEST_F(Pictures, AFileOfThatNameIsReplaced) {
  Write("x.png",
        "something older and longer than a picture of five by three pixels is, by far; really, by very far indeed");

  Snap({"-o", In("x.png")});

  ExpectPicture("x.png", 1, 1);
}

TEST_F(Pictures, AMissingFolderIsNamedBeforeTheCameraIsOpened) {
  const std::string file = In("none") + "/x.png";

  const ProcessResult result = Snap({"-o", file});

  EXPECT_EQ(result.err, "error: the picture " + file + " cannot be written: there is no folder " + In("none") + "\n");
  EXPECT_EQ(Text("log.txt"), "");
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(Pictures, AnUnwritableFileIsNamedAndLeavesNoHalfPicture) {
  std::filesystem::create_directory(PathOf("1.png"));

  const ProcessResult result = Snap({"-n", "2", "-o", In("%d.png")});

  EXPECT_THAT(result.err, StartsWith("error: the picture " + In("1.png") + " cannot be written: "));
  EXPECT_EQ(Files(), (std::vector<std::string>{"1.png", "2.png", "camera.ini", "log.txt"}));
  ExpectPicture("2.png", 2, 1);
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(Pictures, ADeviceThatFillsInNothingIsAnError) {
  Script("snap=nopicture");

  const ProcessResult result = Snap({"-o", In("x.png")});

  EXPECT_EQ(result.err, "error: the driver delivered no picture\n0 of 1 image taken\n");
  EXPECT_EQ(Files(), (std::vector<std::string>{"camera.ini", "log.txt"}));
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(Pictures, ADeviceThatReportsSuccessAndWritesNothingIsAnError) {
  Script("snap=untouched,0");

  const ProcessResult result = Snap({"-n", "2", "-o", In("%d.png")});

  EXPECT_EQ(result.err,
            "error: the driver reports success but wrote no picture: it does not convert the frame's pixel format to "
            "this kind of picture (image 1)\n1 of 2 images taken\n");
  EXPECT_EQ(Files(), (std::vector<std::string>{"2.png", "camera.ini", "log.txt"}));
  EXPECT_EQ(result.exit_code, kFailed);
}

}  // namespace
