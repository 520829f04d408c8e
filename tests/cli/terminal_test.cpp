// terminal_test.cpp
// Where standard output and standard error lead.
#include "kelcam_test.h"

#ifndef _WIN32

namespace {

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

  EXPECT_TRUE(result.out.find(" frames in ") != std::string::npos && result.out.find('\r') != std::string::npos)
      << result.out;
  EXPECT_EQ(result.exit_code, 0);
}

TEST_F(Terminal, SnapShowsItsProgressThere) {
  const std::string line = ShellLine(With("snap", {"-n", "2", "-o", In("%d.png")}), " >/dev/null");

  const ProcessResult result = Process("/usr/bin/script", {"-qec", line, "/dev/null"}).Wait();

  EXPECT_NE(result.out.find("image 2 of 2"), std::string::npos) << result.out;
}

TEST_F(Terminal, AFullOutputIsAnErrorAndTheCameraIsClosed) {
  const ProcessResult result = Process("/bin/sh", {"-c", ShellLine(With("info"), " >/dev/full")}).Wait();

  EXPECT_EQ(result.err, "error: the result could not be written to standard output\n");
  EXPECT_NE(Text("log.txt").find("=== LogMessage\nRelease\n"), std::string::npos);
  EXPECT_EQ(result.exit_code, 1);
}

TEST_F(Terminal, AReaderThatIsGoneDoesNotKeepTheCameraFromBeingClosed) {
  const std::string line = ShellLine(With("snap", {"-n", "200", "-o", In("%d.pgm")}), " | head -n 1");

  Process("/bin/sh", {"-c", line}).Wait();

  EXPECT_NE(Text("log.txt").find("=== LogMessage\nRelease\n"), std::string::npos);
}

}  // namespace

#endif
