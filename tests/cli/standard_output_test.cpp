// standard_output_test.cpp
// Pictures on standard output.
#include <regex>

#include "kelcam_test.h"
#include "modules/scripted_picture.h"
#include "picture_file.h"

namespace {

using testing::HasSubstr;

class StandardOutput : public ScriptedKelcamTest {};

TEST_F(StandardOutput, HoldsThePictureAndNothingElse) {
  const ProcessResult result = Snap({"-o", "-", "--format", "pgm"});

  const std::vector<std::uint8_t> pixels = ScriptedPicture(1).Pixels(1);
  EXPECT_EQ(result.out_bytes, "P5\n5 3\n255\n" + std::string(pixels.begin(), pixels.end()));
  EXPECT_TRUE(std::regex_match(result.err, std::regex("-: 5 x 3, mono, [0-9]+ ms, written in [0-9]+ ms\n")))
      << result.err;
  EXPECT_EQ(result.exit_code, kDone);
}

TEST_F(StandardOutput, IsAPngUnlessTheFormatIsNamed) {
  const ProcessResult result = Snap({"-o", "-"});

  EXPECT_EQ(result.out_bytes.substr(0, 8), "\x89PNG\r\n\x1A\n");
  EXPECT_EQ(Decoded(result.out_bytes).pixels, ScriptedPicture(1).Pixels(1));
}

TEST_F(StandardOutput, TakesSeveralPicturesOneBehindTheOther) {
  const ProcessResult result = Snap({"-n", "2", "-o", "-", "--format", "pgm", "-q"});

  const std::size_t one = 11 + ScriptedPicture(1).Pixels(1).size();
  ASSERT_EQ(result.out_bytes.size(), 2 * one);
  EXPECT_EQ(Decoded(result.out_bytes.substr(one)).pixels, ScriptedPicture(2).Pixels(1));
  EXPECT_EQ(result.err, "");
}

TEST_F(StandardOutput, IsRefusedToASecondUser) {
  EXPECT_THAT(Kelcam(With("snap", {"-o", "-", "--json"})).err,
              HasSubstr("-o - and --json: standard output has room for one of them\n"));
  EXPECT_THAT(Kelcam({"--log", "/dev/stdout", "snap", "--profile", m_profile, "-o", "-"}).err,
              HasSubstr("-o - and --log: standard output has room for one of them\n"));
}

#ifndef _WIN32

TEST_F(StandardOutput, IsRefusedWhereItIsATerminal) {
  const Arguments arguments = With("snap", {"-o", "-"});

  const ProcessResult result = StartProgram("/usr/bin/script", {"-qec", ShellLine(arguments), "/dev/null"}).Wait();

  EXPECT_THAT(result.out, HasSubstr("-o -: standard output is a terminal, which shows no pictures"));
  EXPECT_EQ(result.exit_code, kWrongUsage);
}

TEST_F(StandardOutput, EndsTheRunWhenItTakesNoMore) {
  const ProcessResult result = InShell(With("snap", {"-n", "100", "-o", "-"}), ">/dev/full");

  EXPECT_THAT(result.err, HasSubstr("error: the picture could not be written to standard output (image 1)\n"));
  EXPECT_THAT(result.err, HasSubstr("\n0 of 100 images taken\n"));
  // One is being written, four wait, and one more may have been taken by then.
  EXPECT_LE(Operations().size(), 3u * 6u);
  EXPECT_TRUE(IsReleased());
  EXPECT_EQ(result.exit_code, kFailed);
}

#endif

}  // namespace
