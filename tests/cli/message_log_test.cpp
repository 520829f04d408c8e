// message_log_test.cpp
// --log and -v: what the driver reports to its host, to the letter.
#include "kelcam_test.h"

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

}  // namespace
