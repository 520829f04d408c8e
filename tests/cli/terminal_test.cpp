// terminal_test.cpp
// Where standard output and standard error lead.
#include "kelcam_test.h"

#ifndef _WIN32

namespace {

using testing::AllOf;
using testing::HasSubstr;

class Terminal : public ScriptedKelcamTest {
 protected:
  // The command line as a shell takes it, this text after it.
  std::string ShellLine(const Arguments& arguments, const std::string& end) const {
    Arguments words{ProgramFile("kelcam").string()};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::string line;
    for (const std::string& word : words) line.append("'").append(word).append("' ");
    return line + end;
  }
};

// script(1) runs the line on a terminal of its own and passes on what appears there.
TEST_F(Terminal, LiveShowsItsProgressThere) {
  const std::string line = ShellLine(With("live", {"--seconds", "0.6"}), " >/dev/null");

  const ProcessResult result = Process("/usr/bin/script", {"-qec", line, "/dev/null"}).Wait();

  EXPECT_THAT(result.out, AllOf(HasSubstr(" frames in "), HasSubstr("\r")));
  EXPECT_EQ(result.exit_code, kDone);
}

TEST_F(Terminal, SnapShowsItsProgressThere) {
  const std::string line = ShellLine(With("snap", {"-n", "2", "-o", In("%d.png")}), " >/dev/null");

  const ProcessResult result = Process("/usr/bin/script", {"-qec", line, "/dev/null"}).Wait();

  EXPECT_THAT(result.out, HasSubstr("image 2 of 2"));
  EXPECT_EQ(result.exit_code, kDone);
}

TEST_F(Terminal, AFullOutputIsAnErrorAndTheCameraIsClosed) {
  const ProcessResult result = Process("/bin/sh", {"-c", ShellLine(With("info"), " >/dev/full")}).Wait();

  EXPECT_EQ(result.err, "error: the result could not be written to standard output\n");
  EXPECT_TRUE(IsReleased());
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(Terminal, ALogThatDoesNotTakeEverythingIsAnError) {
  std::filesystem::create_symlink("/dev/full", PathOf("log.txt"));

  const ProcessResult result = Kelcam(With("info"));

  EXPECT_EQ(result.err, "error: the log " + In("log.txt") + " could not be written completely\n");
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(Terminal, AReaderThatIsGoneDoesNotKeepTheCameraFromBeingClosed) {
  const std::string line = ShellLine(With("snap", {"-n", "200", "-o", In("%d.pgm")}), " | head -n 1");

  Process("/bin/sh", {"-c", line}).Wait();

  EXPECT_TRUE(IsReleased());
}

}  // namespace

#endif
