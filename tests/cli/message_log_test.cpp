// message_log_test.cpp
// --log and -v: what the driver reports to its host, to the letter.
#include "kelcam_test.h"

#ifndef _WIN32
#include <sys/stat.h>
#endif

namespace {

using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* kMessagesOfInfo =
    "=== LogMessage\n"
    "Create camera\n"
    "=== ShowInfo\n"
    "Initialize camera \u00fc\n"
    "=== ShowInfo\n"
    "Camera 1 : Initialize\n"
    "   1 :       0.0000 (  0.0000) : Start\n"
    "\n"
    "=== LogMessage\n"
    "Release\n";

class MessageLogFile : public ScriptedKelcamTest {};

TEST_F(MessageLogFile, HoldsEveryMessageVerbatimAndInOrder) {
  Kelcam(With("info"));

  EXPECT_EQ(Text("log.txt"), kMessagesOfInfo);
}

TEST_F(MessageLogFile, ShowsACaptionInBrackets) {
  Script("open=null");

  Kelcam(With("info"));

  EXPECT_THAT(Text("log.txt"), HasSubstr("\n=== ShowInfo [!]\nChipRect failed\n"));
}

TEST_F(MessageLogFile, ReplacesAnOlderLog) {
  Write("log.txt", std::string(10000, 'x'));

  Kelcam(With("info"));

  EXPECT_EQ(Text("log.txt"), kMessagesOfInfo);
}

TEST_F(MessageLogFile, VerboseShowsTheSameOnStandardError) {
  const ProcessResult result = Kelcam(With("info", {"-v"}));

  EXPECT_EQ(result.err, kMessagesOfInfo);
}

TEST_F(MessageLogFile, WithoutVerboseStandardErrorIsSilent) { EXPECT_EQ(Kelcam(With("info")).err, ""); }

TEST_F(MessageLogFile, AnUnwritableLogIsNamedBeforeAnythingElse) {
  std::filesystem::create_directory(PathOf("log.txt"));

  const ProcessResult result = Kelcam(With("info"));

  EXPECT_THAT(result.err, StartsWith("error: the log " + In("log.txt") + " cannot be written: "));
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.exit_code, kFailed);
}

// A refused log leaves the file alone, and nothing has been done.
TEST_F(MessageLogFile, IsNotTheProfileUnderWhicheverName) {
  const std::string text = Text("camera.ini");
  std::filesystem::create_hard_link(PathOf("camera.ini"), PathOf("other name.txt"));
  for (const std::string& name : {In("camera.ini"), In("./camera.ini"), In("other name.txt")}) {
    m_log = name;

    const ProcessResult result = Kelcam(With("info"));

    EXPECT_EQ(result.err, "kelcam: --log " + name + ": this file is the profile\n(see kelcam --help)\n");
    EXPECT_EQ(Text("camera.ini"), text);
    EXPECT_EQ(result.exit_code, kWrongUsage);
  }
}

TEST_F(MessageLogFile, IsNotAProfileThatIsMissing) {
  m_profile = In("none.ini");
  m_log = In("./none.ini");

  const ProcessResult result = Kelcam(With("info"));

  EXPECT_EQ(Files(), Lines{"camera.ini"});
  EXPECT_EQ(result.exit_code, kWrongUsage);
}

TEST_F(MessageLogFile, GoesToAStandardStreamByItsName) {
  m_log = "/dev/stderr";

  const ProcessResult result = Kelcam(With("info"));

  EXPECT_EQ(result.err, kMessagesOfInfo);
}

#ifdef _WIN32

TEST_F(MessageLogFile, IsNoDevice) {
  m_log = "NUL";

  EXPECT_EQ(Kelcam(With("info")).err, "error: the log NUL cannot be written: it is a device, not a regular file\n");
}

#else

TEST_F(MessageLogFile, IsNotALinkToTheProfile) {
  const std::string text = Text("camera.ini");
  std::filesystem::create_symlink("camera.ini", PathOf("log.txt"));

  const ProcessResult result = Kelcam(With("info"));

  EXPECT_EQ(Text("camera.ini"), text);
  EXPECT_EQ(result.exit_code, kWrongUsage);
}

TEST_F(MessageLogFile, IsNoDevice) {
  for (const char* device : {"/dev/null", "/dev/full"}) {
    m_log = device;

    EXPECT_EQ(Kelcam(With("info")).err,
              "error: the log " + m_log + " cannot be written: it is a device, not a regular file\n");
  }
}

// Opening it for writing would wait for a reader.
TEST_F(MessageLogFile, IsNoPipe) {
  m_log = In("pipe");
  ASSERT_EQ(::mkfifo(m_log.c_str(), 0600), 0);

  const ProcessResult result = Kelcam(With("info"));

  EXPECT_EQ(result.err, "error: the log " + m_log + " cannot be written: it is a pipe (FIFO), not a regular file\n");
  EXPECT_EQ(result.exit_code, kFailed);
}

#endif

}  // namespace
