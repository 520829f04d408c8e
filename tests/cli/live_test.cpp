// live_test.cpp
// kelcam live.
#include <regex>

#include "simulated_kelcam_test.h"

namespace {

class Live : public ScriptedKelcamTest {};

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
  Kelcam(With("live", {"--seconds", "0.05"}));

  const std::vector<std::string> operations = Operations();
  ASSERT_GE(operations.size(), 6u);
  EXPECT_EQ(std::vector<std::string>(operations.begin(), operations.begin() + 3),
            (std::vector<std::string>{"SetSource(2)", "StartSnap(0)", "Snap(1, [l], 5000)"}));
  EXPECT_EQ(std::vector<std::string>(operations.end() - 3, operations.end()),
            (std::vector<std::string>{"StopSnap", "SetOff", "SetSource(0)"}));
}

TEST_F(Live, PrintsASummaryAndNoProgressIntoAPipe) {
  const ProcessResult result = Kelcam(With("live", {"--seconds", "0.6"}));

  EXPECT_TRUE(std::regex_match(
      result.out, std::regex("[0-9]+ frames in 0\\.6 s, [0-9.]+ frames/s, 0 failures, stream rate 45\\.0 MB/s\n")))
      << result.out;
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.exit_code, 0);
}

TEST_F(Live, PrintsOneDocument) {
  Script("snap=12106,12106,12110,0");

  const auto document = Document(With("live", {"--seconds", "0.05"}));

  EXPECT_GT(document["frames"], 0);
  EXPECT_EQ(document["failures"], 3);
  EXPECT_EQ(document["errors"], nlohmann::json::parse(R"([
    {"code": 12106, "text": "no image arrived in time", "count": 2},
    {"code": 12110, "text": "the received frame is invalid", "count": 1}])"));
  EXPECT_GE(document["seconds"], 0.05);
  EXPECT_EQ(document["streamBytesPerSecond"], 45000000);
  EXPECT_EQ(document["interrupted"], false);
}

TEST_F(Live, EachErrorIsToldOnceAndEndsInExitCode1) {
  Script("snap=12106,12106,12110,0");

  const ProcessResult result = Kelcam(With("live", {"--seconds", "0.05"}));

  EXPECT_EQ(result.err, "error 12106: no image arrived in time\nerror 12110: the received frame is invalid\n");
  EXPECT_EQ(result.exit_code, 1);
}

TEST_F(Live, AFailedStartIsNotFollowedBySnap) {
  Script("start=12103");

  const ProcessResult result = Kelcam(With("live", {"--seconds", "1"}));

  EXPECT_EQ(result.err, "error 12103: acquisition failed: AcquisitionStart failed\n");
  EXPECT_EQ(Operations(),
            (std::vector<std::string>{"SetSource(2)", "StartSnap(0)", "StopSnap", "SetOff", "SetSource(0)"}));
  EXPECT_EQ(result.exit_code, 1);
}

TEST_F(Live, TakesTheSameSettingsAsSnap) {
  Script("color=1");

  Kelcam(With("live", {"--seconds", "0.01", "--trigger", "software", "--kind", "mono", "--area", "[p]", "--timeout",
                       "9", "--color", "on", "--set", "gain=4"}));

  const std::vector<std::string> operations = Operations();
  ASSERT_GE(operations.size(), 5u);
  EXPECT_EQ(
      std::vector<std::string>(operations.begin(), operations.begin() + 5),
      (std::vector<std::string>{"SetColorMode(1)", "gain.SetValue(4)", "StartSnap(0)", "Fire", "Snap(1, [p], 9)"}));
}

#if !defined(_WIN32)  // which sends no Ctrl-C to a process without a console
TEST_F(Live, CtrlCStopsTheCameraAndEndsWith130) {
  Process live = Start(With("live", {"-v"}));
  ASSERT_TRUE(live.WaitForError("Snap(1, [l], 5000)"));
  ASSERT_TRUE(live.Interrupt());

  const ProcessResult result = live.Wait();

  EXPECT_EQ(result.exit_code, 130);
  const std::vector<std::string> operations = Operations();
  EXPECT_EQ(std::vector<std::string>(operations.end() - 3, operations.end()),
            (std::vector<std::string>{"StopSnap", "SetOff", "SetSource(0)"}));
  EXPECT_NE(Text("log.txt").find("=== LogMessage\nRelease\n"), std::string::npos);
  EXPECT_NE(result.out.find(" frames/s, "), std::string::npos) << result.out;
}

TEST_F(Live, CtrlCEndsALongSnapToo) {
  Process snap = Start(With("snap", {"-v", "-n", "1000000", "-o", In("%d.pgm"), "--mode", "continuous"}));
  ASSERT_TRUE(snap.WaitForError("Snap(1, , 5000)"));
  ASSERT_TRUE(snap.Interrupt());

  const ProcessResult result = snap.Wait();

  EXPECT_EQ(result.exit_code, 130);
  EXPECT_EQ(Operations().back(), "SetSource(0)");
  EXPECT_NE(result.err.find(" of 1000000 images taken\n"), std::string::npos);
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

  EXPECT_EQ(result.exit_code, 130);
  EXPECT_EQ(result.err.find("of 1 image taken"), std::string::npos);
}

TEST_F(PatientInfo, CtrlCLetsTheCameraBeClosed) {
  Process info = Start({"-v", "info", "--profile", Profile("mono")});
  ASSERT_TRUE(info.WaitForError("Initialize Object by Ini file"));
  ASSERT_TRUE(info.Interrupt());

  const ProcessResult result = info.Wait();

  EXPECT_EQ(result.exit_code, 130);
  EXPECT_NE(result.out.find("gain"), std::string::npos) << result.out;
}
#endif

}  // namespace
