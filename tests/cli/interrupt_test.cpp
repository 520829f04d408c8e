// interrupt_test.cpp
// How kelcam ends when it is asked to.
#include "VimbaC.h"
#include "simulated_kelcam_test.h"

#ifndef _WIN32  // which sends no signals

#include <csignal>

namespace {

using testing::HasSubstr;

struct SignalOfAnEnd {
  int number;
  int exit_code;
};

class InterruptedBy : public ScriptedKelcamTest, public testing::WithParamInterface<SignalOfAnEnd> {};

TEST_P(InterruptedBy, ALiveRunClosesTheCamera) {
  Process live = Start(With("live", {"-v"}));
  ASSERT_TRUE(live.WaitForError("Snap(mono, '[l]', 5000 ms)"));
  ASSERT_TRUE(live.Signal(GetParam().number));

  const ProcessResult result = live.Wait();

  EXPECT_EQ(result.exit_code, GetParam().exit_code);
  EXPECT_EQ(Last(Operations(), 3), (Lines{"StopSnap", "SetOff", "SetSource(software)"}));
  EXPECT_TRUE(IsReleased());
}

INSTANTIATE_TEST_SUITE_P(EachSignal, InterruptedBy,
                         testing::Values(SignalOfAnEnd{SIGINT, 130}, SignalOfAnEnd{SIGTERM, 143},
                                         SignalOfAnEnd{SIGHUP, 129}, SignalOfAnEnd{SIGXFSZ, 153}));

class Interrupt : public ScriptedKelcamTest {};

// A shell and the system both send one when a terminal goes.
TEST_F(Interrupt, FurtherHangUpsDoNotKeepTheCameraFromBeingClosed) {
  Process live = Start(With("live", {"-v"}));
  ASSERT_TRUE(live.WaitForError("Snap(mono, '[l]', 5000 ms)"));
  while (live.Signal(SIGHUP) && !live.WaitForError("Release", std::chrono::milliseconds(1))) {
  }

  EXPECT_EQ(live.Wait().exit_code, 129);
  EXPECT_TRUE(IsReleased());
}

TEST_F(Interrupt, AHangUpThatIsToBeIgnoredIsIgnored) {
  Process live = StartInShell("trap '' HUP; exec " + ShellLine(With("live", {"-v", "--seconds", "0.5"})));
  ASSERT_TRUE(live.WaitForError("Snap(mono, '[l]', 5000 ms)"));
  ASSERT_TRUE(live.Signal(SIGHUP));

  EXPECT_EQ(live.Wait().exit_code, kDone);
}

TEST_F(Interrupt, ALogThatGrowsBeyondTheLimitEndsTheRunWithTheCameraClosed) {
  Process live = StartInShell("ulimit -f 8; exec " + ShellLine(With("live", {"-v"})));

  const ProcessResult result = live.Wait();

  EXPECT_THAT(result.err, HasSubstr("=== LogMessage\nRelease\n"));
  EXPECT_THAT(result.err, HasSubstr("error: the log " + m_log + " could not be written completely\n"));
  EXPECT_EQ(result.exit_code, 153);
}

TEST_F(Interrupt, AListingEndsAtOnce) {
  Script("listing_s=3600");

  EXPECT_EQ(InterruptedAt("List\n", With("list", {"-v"})).exit_code, kInterrupted);
}

class InterruptedSearch : public SimulatedKelcamTest {
 protected:
  InterruptedSearch() {
    const nlohmann::json in_use{{"call", "VmbCameraOpen"}, {"error", VmbErrorInvalidAccess}, {"count", 0}};
    Simulate({{"faults", nlohmann::json::array({in_use})}});
  }
};

// There are ten tries, 200 ms apart.
TEST_F(InterruptedSearch, EndsBeforeTheNextTry) {
  const ProcessResult result = InterruptedAt("InitBySerial failed", {"-v", "info", "--profile", Profile("mono")});

  int tries = 0;
  for (std::size_t at = 0; (at = result.err.find("InitBySerial failed", at)) != std::string::npos; ++at) ++tries;
  EXPECT_LE(tries, 3) << "one more than the two that a slow machine may need";
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.exit_code, kInterrupted);
}

}  // namespace

#endif
