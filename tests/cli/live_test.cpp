// live_test.cpp
// kelcam live.
#include <regex>

#include "berror.h"
#include "simulated_kelcam_test.h"

namespace {

using testing::HasSubstr;
using testing::Not;

class Live : public ScriptedKelcamTest {};

// Waits for an image that does not come.
class PatientSnap : public SimulatedKelcamTest {
 protected:
  PatientSnap() { Simulate(); }
};

// The camera takes its time to be opened.
class PatientInfo : public SimulatedKelcamTest {
 protected:
  PatientInfo() {
    const nlohmann::json slow_opening{{"call", "VmbCameraOpen"}, {"delay_ms", 1000}};
    Simulate({{"faults", nlohmann::json::array({slow_opening})}});
  }
};

TEST_F(Live, RunsContinuouslyWithTheFastConversionAndEndsWithAStop) {
  Kelcam(With("live", {"--seconds", "0.5"}));

  EXPECT_EQ(First(Operations(), 3),
            (Lines{"SetSource(free run)", "StartSnap(continuous)", "Snap(mono, '[l]', 5000 ms)"}));
  EXPECT_EQ(Last(Operations(), 3), (Lines{"StopSnap", "SetOff", "SetSource(software)"}));
}

TEST_F(Live, PrintsASummaryAndNoProgressIntoAPipe) {
  const ProcessResult result = Kelcam(With("live", {"--seconds", "0.6"}));

  EXPECT_TRUE(std::regex_match(
      result.out, std::regex("[0-9]+ frames in [0-9.]+ s, [0-9.]+ frames/s, 0 failures, stream rate 45\\.0 MB/s\n")))
      << result.out;
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.exit_code, kDone);
}

TEST_F(Live, EndsWithADocumentOfTheTotal) {
  Script(Codes("snap", {BError::eTimeout, BError::eTimeout, BError::eFrameInvalid, BError::eSuccess}));

  const auto document = DocumentLines(With("live", {"--seconds", "1.5"})).back();

  EXPECT_GT(document["frames"], 0);
  EXPECT_EQ(document["failures"], 3);
  EXPECT_EQ(document["errors"],
            nlohmann::json::array(
                {{{"code", BError::eTimeout}, {"text", "no image arrived in time"}, {"count", 2}},
                 {{"code", BError::eFrameInvalid}, {"text", "the received frame is invalid"}, {"count", 1}}}));
  EXPECT_GE(document["seconds"], 0.5);
  EXPECT_EQ(document["streamBytesPerSecond"], 45000000);
  EXPECT_EQ(document["interrupted"], false);
}

TEST_F(Live, PrintsEachErrorOnceAndFails) {
  Script(Codes("snap", {BError::eTimeout, BError::eTimeout, BError::eFrameInvalid, BError::eSuccess}));

  const ProcessResult result = Kelcam(With("live", {"--seconds", "0.9"}));

  EXPECT_EQ(result.err, "error 12106: no image arrived in time\nerror 12110: the received frame is invalid\n");
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(Live, AFailedStartIsNotFollowedBySnap) {
  Script(Codes("start", {BError::eAcquisitionFailed}));

  const ProcessResult result = Kelcam(With("live", {"--seconds", "1"}));

  EXPECT_EQ(result.err, "error 12103: acquisition failed: AcquisitionStart failed\n");
  EXPECT_EQ(Operations(),
            (Lines{"SetSource(free run)", "StartSnap(continuous)", "StopSnap", "SetOff", "SetSource(software)"}));
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(Live, TakesTheSameSettingsAsSnap) {
  Script("color=1");

  Kelcam(With("live", {"--seconds", "0.5", "--trigger", "software", "--kind", "mono", "--area", "[p]", "--timeout", "9",
                       "--color", "on", "--set", "gain=4"}));

  EXPECT_EQ(First(Operations(), 5), (Lines{"SetColorMode(true)", "gain.SetValue(4)", "StartSnap(continuous)", "Fire",
                                           "Snap(mono, '[p]', 9 ms)"}));
}

#if !defined(_WIN32)  // which sends no Ctrl-C to a process without a console
TEST_F(Live, CtrlCStopsTheCameraAndEndsWith130) {
  const ProcessResult result = InterruptedAt("Snap(mono, '[l]', 5000 ms)", With("live", {"-v"}));

  EXPECT_EQ(result.exit_code, kInterrupted);
  EXPECT_EQ(Last(Operations(), 3), (Lines{"StopSnap", "SetOff", "SetSource(software)"}));
  EXPECT_TRUE(IsReleased());
  EXPECT_THAT(result.out, HasSubstr(" frames/s, "));
}

TEST_F(Live, CtrlCEndsALongSnapToo) {
  const Arguments snap = With("snap", {"-v", "-n", "1000000", "-o", In("%d.pgm"), "--mode", "continuous"});

  const ProcessResult result = InterruptedAt("Snap(mono, '', 5000 ms)", snap);

  EXPECT_EQ(result.exit_code, kInterrupted);
  EXPECT_EQ(Last(Operations(), 3), (Lines{"StopSnap", "SetOff", "SetSource(software)"}));
  EXPECT_THAT(result.err, HasSubstr(" of 1000000 images taken\n"));
}

TEST_F(PatientSnap, ASecondCtrlCDoesNotWaitForTheImage) {
  Process snap = Start(
      {"-v", "snap", "--profile", Profile("mono"), "--trigger", "line", "--timeout", "3600000", "-o", In("x.png")});
  ASSERT_TRUE(snap.WaitForError("Command AcquisitionStart -> 0"));

  // One may be merged into the one before while that is still under way, so there are more than two.
  bool sent = true;
  for (int i = 0; i < 1000 && sent; ++i) {
    sent = snap.Interrupt();
    snap.WaitForError("of 1 image taken", std::chrono::milliseconds(10));
  }
  ASSERT_TRUE(sent);
  const ProcessResult result = snap.Wait();

  EXPECT_EQ(result.exit_code, kInterrupted);
  EXPECT_THAT(result.err, Not(HasSubstr("of 1 image taken")));
}

TEST_F(PatientInfo, CtrlCLetsTheCameraBeClosed) {
  const ProcessResult result =
      InterruptedAt("Initialize Object by Ini file", {"-v", "info", "--profile", Profile("mono")});

  EXPECT_EQ(result.exit_code, kInterrupted);
  EXPECT_THAT(result.out, HasSubstr("gain"));
}
#endif

}  // namespace
