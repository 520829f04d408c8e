// list_test.cpp
// kelcam list.
#include "kelcam_test.h"

namespace {

class List : public ScriptedKelcamTest {};

TEST_F(List, PrintsOneIdentifierALine) {
  const ProcessResult result = Kelcam(With("list"));

  EXPECT_EQ(result.out, "Vimba_Scripted-\u00e4_1\nVimba_Scripted-\u00e4_2\n");
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.exit_code, kDone);
}

TEST_F(List, PrintsOneDocument) {
  const auto document = Document(With("list"));

  EXPECT_EQ(document, nlohmann::json({{"cameras", {"Vimba_Scripted-\u00e4_1", "Vimba_Scripted-\u00e4_2"}}}));
}

TEST_F(List, WithoutCamerasIsEmptyAndSaysSo) {
  Script("cameras=0");

  const ProcessResult result = Kelcam(With("list"));

  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, "notice: no camera found\n");
  EXPECT_EQ(result.exit_code, kDone);
}

TEST_F(List, ASystemThatDoesNotStartIsAnErrorWithItsReasons) {
  Script("cameras=-1");

  const ProcessResult result = Kelcam(With("list"));

  EXPECT_EQ(result.err,
            "error: the camera system cannot be started; the driver's last messages were:\n"
            "  Vimba start-up\n"
            "     1 : no transport layer\n"
            "  End\n"
            "(-v prints every message, --log FILE writes them to a file)\n");
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(List, WaitsForACameraInVainAndSaysForHowLong) {
  Script("cameras=0");

  const ProcessResult result = Kelcam(With("list", {"--wait", "0.3"}));

  EXPECT_EQ(result.err, "error: no camera was found within 0.3 s\n");
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(List, DoesNotWaitWhereACameraIs) {
  const ProcessResult result = Kelcam(With("list", {"--wait", "3600"}));

  EXPECT_EQ(result.out, "Vimba_Scripted-\u00e4_1\nVimba_Scripted-\u00e4_2\n");
  EXPECT_EQ(result.exit_code, kDone);
}

TEST_F(List, InFullNeedsALibraryToAsk) {
  const ProcessResult result = Kelcam(With("list", {"--long"}));

  EXPECT_EQ(result.err, "error: --long: this module has no VimbaC library that could be asked\n");
  EXPECT_EQ(result.exit_code, kFailed);
}

}  // namespace
