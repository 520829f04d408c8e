// picture_name_test.cpp
// Under which names kelcam snap writes its pictures, and what it does about files that are there.
#include <algorithm>
#include <regex>

#include "kelcam_test.h"
#include "picture_file.h"

namespace {

using testing::HasSubstr;

class PictureNames : public ScriptedKelcamTest {
 protected:
  // The names of the pictures.
  Lines Pictures() const {
    Lines names = Files();
    std::erase_if(names, [](const std::string& name) { return name == "camera.ini" || name == "log.txt"; });
    return names;
  }
};

TEST_F(PictureNames, EveryNumberMarkBecomesTheNumber) {
  Snap({"-n", "3", "-o", In("%d of %d.pgm")});

  EXPECT_EQ(Pictures(), (Lines{"1 of 1.pgm", "2 of 2.pgm", "3 of 3.pgm"}));
}

TEST_F(PictureNames, AWidthPadsTheNumberWithZeros) {
  Snap({"-n", "10", "-o", In("%02d %012d.pgm")});

  EXPECT_EQ(First(Pictures(), 1), Lines{"01 000000000001.pgm"});
  EXPECT_EQ(Last(Pictures(), 1), Lines{"10 000000000010.pgm"});
}

TEST_F(PictureNames, APercentSignIsWrittenTwice) {
  Snap({"-o", In("100%% %%d.pgm")});

  EXPECT_EQ(Pictures(), Lines{"100% %d.pgm"});
}

TEST_F(PictureNames, NothingElseIsSpecial) {
  Snap({"-o", In("%n %5d %0d %00d %x% %0100d.pgm")});

  EXPECT_EQ(Pictures(), Lines{"%n %5d %0d %00d %x% %0100d.pgm"});
}

TEST_F(PictureNames, TheSerialNumberIsTheCameras) {
  Snap({"-o", In("camera %s.pgm")});

  EXPECT_EQ(Pictures(), Lines{"camera 1.pgm"});
}

TEST_F(PictureNames, TimesTellPicturesApart) {
  Snap({"-n", "20", "-o", In("%t.pgm")});

  const Lines names = Pictures();
  EXPECT_EQ(names.size(), 20u);
  for (const std::string& name : names) {
    EXPECT_TRUE(std::regex_match(name, std::regex(R"(\d{8}T\d{6}\.\d{3}[+-]\d{4}\.pgm)"))) << name;
  }
}

TEST_F(PictureNames, AFolderOfTheSerialNumberMustBeThere) {
  const ProcessResult result = Snap({"-o", In("none %s") + "/x.pgm"});

  EXPECT_THAT(result.err, HasSubstr("there is no folder " + In("none 1") + "\n"));
  EXPECT_EQ(Operations(), Lines{});
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(PictureNames, FormatOverridesTheEnding) {
  Snap({"-o", In("picture"), "--format", "png"});

  EXPECT_EQ(Decoded(Text("picture")).channels, 1);
  EXPECT_EQ(Text("picture").substr(1, 3), "PNG");
}

TEST_F(PictureNames, NoClobberTakesNoImageWhereAFileIsThere) {
  Write("3.pgm", "mine");

  const ProcessResult result = Snap({"-n", "3", "-o", In("%d.pgm"), "--no-clobber"});

  EXPECT_EQ(result.err,
            "error: the picture " + In("3.pgm") + " cannot be written: there is a file of this name (--no-clobber)\n");
  EXPECT_EQ(Pictures(), Lines{"3.pgm"});
  EXPECT_EQ(Text("3.pgm"), "mine");
  EXPECT_EQ(Text("log.txt"), "");
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(PictureNames, NoClobberWritesNewFilesAndLeavesNothingElse) {
  const ProcessResult result = Snap({"-n", "2", "-o", In("%d.pgm"), "--no-clobber"});

  EXPECT_EQ(Pictures(), (Lines{"1.pgm", "2.pgm"}));
  EXPECT_EQ(Decoded(Text("2.pgm")).channels, 1);
  EXPECT_EQ(result.exit_code, kDone) << result.err;
}

}  // namespace
