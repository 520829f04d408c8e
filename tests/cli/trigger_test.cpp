// trigger_test.cpp
// What starts an image.
#include "kelcam_test.h"

namespace {

class TriggerChoices : public ScriptedKelcamTest {};

TEST_F(TriggerChoices, LineMakesTheTriggerExternalForTheRun) {
  Snap({"-o", In("x.png"), "--trigger", "line"});

  EXPECT_EQ(Operations(), (Lines{"SetExternal(true)", "StartSnap(one shot)", "Snap(mono, '', 5000 ms)", "StopSnap",
                                 "SetOff", "SetSource(software)"}));
}

TEST_F(TriggerChoices, LineIsKeptInAContinuousRun) {
  Snap({"-o", In("x.png"), "--trigger", "line", "--mode", "continuous"});

  EXPECT_EQ(Operations(), (Lines{"SetExternal(true)", "StartSnap(continuous)", "Snap(mono, '', 5000 ms)", "StopSnap",
                                 "SetOff", "SetSource(software)"}));
}

TEST_F(TriggerChoices, FreeIsSelectedForSingleImagesOnRequest) {
  Snap({"-o", In("x.png"), "--trigger", "free"});

  EXPECT_EQ(Operations(), (Lines{"SetSource(free run)", "StartSnap(one shot)", "Snap(mono, '', 5000 ms)", "StopSnap",
                                 "SetOff", "SetSource(software)"}));
}

TEST_F(TriggerChoices, SoftwareInAContinuousRunFiresForEachImage) {
  Snap({"-n", "2", "-o", In("%d.png"), "--trigger", "software", "--mode", "continuous"});

  EXPECT_EQ(Operations(), (Lines{"StartSnap(continuous)", "Fire", "Snap(mono, '', 5000 ms)", "Fire",
                                 "Snap(mono, '', 5000 ms)", "StopSnap"}));
}

TEST_F(TriggerChoices, SoftwareForSingleImagesIsTheDriversOwnBusiness) {
  Snap({"-o", In("x.png"), "--trigger", "software"});

  EXPECT_EQ(Operations(), (Lines{"StartSnap(one shot)", "Snap(mono, '', 5000 ms)", "StopSnap"}));
}

TEST_F(TriggerChoices, ARefusedFreeRunEndsTheCommand) {
  Script("source=0");

  const ProcessResult result = Snap({"-o", In("x.png"), "--mode", "continuous"});

  EXPECT_EQ(result.err, "error: the camera refused the free-running trigger\n");
  EXPECT_EQ(Operations(), Lines{"SetSource(free run)"});
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(TriggerChoices, ACameraWithoutTriggerRunsFreeByItself) {
  Script("trigger=0");

  const ProcessResult result = Snap({"-o", In("x.png"), "--mode", "continuous"});

  EXPECT_EQ(Operations(), (Lines{"StartSnap(continuous)", "Snap(mono, '', 5000 ms)", "StopSnap"}));
  EXPECT_EQ(result.exit_code, kDone);
}

TEST_F(TriggerChoices, ATriggerThatTheCameraDoesNotHaveIsRefusedByName) {
  Script("trigger=0");

  const ProcessResult result = Snap({"-o", In("x.png"), "--trigger", "line"});

  EXPECT_EQ(result.err, "error: this camera has no trigger\n");
  EXPECT_EQ(result.exit_code, kFailed);
}

}  // namespace
