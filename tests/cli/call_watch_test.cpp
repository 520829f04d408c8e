// call_watch_test.cpp
// Calls of the driver that do not return are reported.
#include "VimbaC.h"
#include "simulated_kelcam_test.h"

namespace {

using testing::HasSubstr;
using testing::Not;

using nlohmann::json;

constexpr int kEveryTime = 0;

class CallWatch : public SimulatedKelcamTest {
 protected:
  void NeverDone(const std::string& feature, const json& other_fault = nullptr) {
    json faults = json::array(
        {{{"call", "VmbFeatureCommandIsDone"}, {"feature", feature}, {"done", false}, {"count", kEveryTime}}});
    if (!other_fault.is_null()) faults.push_back(other_fault);
    Simulate({{"faults", faults}});
  }
  Process StartSnap(const Arguments& more = {}) const {
    Arguments arguments{"snap", "--profile", Profile("mono"), "-o", In("x.pgm")};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return Start(arguments);
  }
};

TEST_F(CallWatch, ATriggerThatIsNeverDoneIsNamedWhenItsFrameHasCome) {
  NeverDone("TriggerSoftware");

  EXPECT_TRUE(StartSnap({"--timeout", "3600000"})
                  .WaitForError("notice: waiting for TriggerSoftware for 3 s "
                                "(the frame has come; Ctrl-C twice ends the program)"));
}

TEST_F(CallWatch, ASnapThatOutlivesItsTimeOutIsReported) {
  NeverDone("TriggerSoftware", {{"frame", 0}, {"drop", true}});

  EXPECT_TRUE(StartSnap({"--timeout", "100"})
                  .WaitForError("notice: waiting for the snap, after its time-out, for 3 s (perhaps TriggerSoftware: "
                                "the driver sets it no time limit; Ctrl-C twice ends the program)"));
}

TEST_F(CallWatch, ATriggerThatKelcamFiresIsNamed) {
  NeverDone("TriggerSoftware");

  EXPECT_TRUE(StartSnap({"--mode", "continuous", "--trigger", "software"})
                  .WaitForError("notice: waiting for TriggerSoftware for 3 s (Ctrl-C twice ends the program)"));
}

TEST_F(CallWatch, APacketSizeThatIsNeverFoundIsReportedAsPossible) {
  NeverDone("GVSPAdjustPacketSize");

  EXPECT_TRUE(
      StartSnap().WaitForError("notice: waiting for the camera's set-up for 3 s (perhaps GVSPAdjustPacketSize: "
                               "the driver sets it no time limit; Ctrl-C twice ends the program)"));
}

TEST_F(CallWatch, ASlowSearchIsReportedAndGoesOn) {
  Simulate({{"faults", json::array({{{"call", "VmbStartup"}, {"delay_ms", 4000}}})}});

  const ProcessResult result = Kelcam({"list"});

  EXPECT_EQ(result.err,
            "notice: waiting for Vimba to start and to search for cameras for 3 s (Ctrl-C ends the program)\n");
  EXPECT_THAT(result.out, HasSubstr("Vimba_Manta-G-507B_50-0536953957\n"));
  EXPECT_EQ(result.exit_code, kDone);
}

// The time-out of the snap is longer than what is reported otherwise.
TEST_F(CallWatch, ASnapThatWaitsForItsImageIsNotReported) {
  Simulate();

  const ProcessResult result =
      Run("snap", Profile("mono"), {"-o", In("x.pgm"), "--trigger", "line", "--timeout", "3500"});

  EXPECT_THAT(result.err, Not(HasSubstr("waiting for")));
  EXPECT_THAT(result.err, HasSubstr("error 12106: "));
}

#if !defined(_WIN32)  // which sends no Ctrl-C to a process without a console
TEST_F(CallWatch, TheSecondCtrlCEndsACallThatNeverReturns) {
  NeverDone("TriggerSoftware");
  Process snap = StartSnap({"--timeout", "3600000", "-v"});
  ASSERT_TRUE(snap.WaitForError("Command AcquisitionStart -> 0"));
  ASSERT_TRUE(snap.Interrupt());
  ASSERT_TRUE(
      snap.WaitForError("waiting for TriggerSoftware for 3 s (the frame has come; Ctrl-C again ends the program)"));

  ASSERT_TRUE(snap.Interrupt());
  const ProcessResult result = snap.Wait();

  EXPECT_EQ(result.exit_code, kInterrupted);
  EXPECT_THAT(result.err, Not(HasSubstr("taken")));
}
#endif

}  // namespace
