// terminal_test.cpp
// Where standard output and standard error lead.
#include "kelcam_test.h"

#ifndef _WIN32

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class Terminal : public ScriptedKelcamTest {
 protected:
  // script(1) runs the line on a terminal of its own and passes on what appears there.
  ProcessResult OnATerminal(const Arguments& arguments) const {
    return StartProgram("/usr/bin/script", {"-qec", ShellLine(arguments, ">/dev/null"), "/dev/null"}).Wait();
  }
};

TEST_F(Terminal, LiveShowsItsProgressThere) {
  const ProcessResult result = OnATerminal(With("live", {"--seconds", "0.6"}));

  EXPECT_THAT(result.out, AllOf(HasSubstr(" frames in "), HasSubstr("\r")));
  EXPECT_EQ(result.exit_code, kDone);
}

TEST_F(Terminal, SnapShowsItsProgressThere) {
  const ProcessResult result = OnATerminal(With("snap", {"-n", "2", "-o", In("%d.png")}));

  EXPECT_THAT(result.out, HasSubstr("image 2 of 2"));
  EXPECT_EQ(result.exit_code, kDone);
}

TEST_F(Terminal, AFullOutputIsAnErrorAndTheCameraIsClosed) {
  const ProcessResult result = InShell(With("info"), ">/dev/full");

  EXPECT_EQ(result.err, "error: the result could not be written to standard output\n");
  EXPECT_TRUE(IsReleased());
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(Terminal, AFullOutputIsAnErrorWhateverIsPrinted) {
  for (const Arguments& arguments :
       {Arguments{"--help"}, {"snap", "--help"}, {"--version"}, With("list"), With("list", {"--json"})}) {
    const ProcessResult result = InShell(arguments, ">/dev/full");

    EXPECT_EQ(result.err, "error: the result could not be written to standard output\n") << arguments.back();
    EXPECT_EQ(result.exit_code, kFailed) << arguments.back();
  }
}

TEST_F(Terminal, AClosedOutputIsAnErrorAndNoFileTakesItsPlace) {
  const ProcessResult result = InShell(With("info"), ">&-");

  EXPECT_EQ(result.err, "error: the result could not be written to standard output\n");
  EXPECT_THAT(Text("log.txt"), Not(HasSubstr("stream rate")));
  EXPECT_TRUE(IsReleased());
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(Terminal, WithoutAnyStreamTheExitCodeSaysIt) {
  EXPECT_EQ(InShell(With("info"), "<&- >&- 2>&-").exit_code, kFailed);
  EXPECT_TRUE(IsReleased());
  EXPECT_EQ(InShell(With("snap", {"-o", In("x.jpg")}), "2>&-").exit_code, kWrongUsage);
  EXPECT_EQ(InShell(With("info"), "<&- 2>&-").exit_code, kDone);
}

TEST_F(Terminal, AClosedErrorOutputIsNoPlaceForTheLog) {
  const ProcessResult result = InShell(With("snap", {"-n", "2", "-o", In("%d.png")}), "2>&-");

  EXPECT_THAT(Text("log.txt"), Not(HasSubstr("images taken")));
  EXPECT_EQ(result.exit_code, kDone);
}

TEST_F(Terminal, ALogThatDoesNotTakeEverythingIsAnError) {
  m_log = "/dev/stdout";

  const ProcessResult result = InShell(With("info"), ">/dev/full");

  EXPECT_EQ(result.err, "error: the log /dev/stdout could not be written completely\n");
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(Terminal, ALogOnAStandardStreamDoesNotOverwriteTheResult) {
  m_log = "/dev/stdout";

  const ProcessResult result = InShell(With("list"), ">'" + In("out.txt") + "'");

  EXPECT_EQ(Text("out.txt"), "=== LogMessage\nList\nVimba_Scripted-\u00e4_1\nVimba_Scripted-\u00e4_2\n");
  EXPECT_EQ(result.exit_code, kDone);
}

TEST_F(Terminal, AReaderThatIsGoneDoesNotKeepTheCameraFromBeingClosed) {
  InShell(With("snap", {"-n", "200", "-o", In("%d.pgm")}), "| head -n 1");

  EXPECT_TRUE(IsReleased());
}

}  // namespace

#endif
