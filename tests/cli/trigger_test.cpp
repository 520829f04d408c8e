// trigger_test.cpp
// What starts an image.
#include "kelcam_test.h"

namespace {

using Lines = std::vector<std::string>;

class TriggerChoices : public ScriptedKelcamTest {};

TEST_F(TriggerChoices, LineMakesTheTriggerExternalForTheRun) {
  Snap({"-o", In("x.png"), "--trigger", "line"});

  EXPECT_EQ(Operations(),
            (Lines{"SetExternal(1)", "StartSnap(1)", "Snap(1, , 5000)", "StopSnap", "SetOff", "SetSource(0)"}));
}

TEST_F(TriggerChoices, LineIsKeptInAContinuousRun) {
  Snap({"-o", In("x.png"), "--trigger", "line", "--mode", "continuous"});

  EXPECT_EQ(Operations(),
            (Lines{"SetExternal(1)", "StartSnap(0)", "Snap(1, , 5000)", "StopSnap", "SetOff", "SetSource(0)"}));
}

TEST_F(TriggerChoices, FreeIsSelectedForSingleImagesOnRequest) {
  Snap({"-o", In("x.png"), "--trigger", "free"});

  EXPECT_EQ(Operations(),
            (Lines{"SetSource(2)", "StartSnap(1)", "Snap(1, , 5000)", "StopSnap", "SetOff", "SetSource(0)"}));
}

TEST_F(TriggerChoices, SoftwareInAContinuousRunFiresForEachImage) {
  Snap({"-n", "2", "-o", In("%d.png"), "--trigger", "software", "--mode", "continuous"});

  EXPECT_EQ(Operations(), (Lines{"StartSnap(0)", "Fire", "Snap(1, , 5000)", "Fire", "Snap(1, , 5000)", "StopSnap"}));
}

TEST_F(TriggerChoices, SoftwareForSingleImagesIsTheDriversOwnBusiness) {
  Snap({"-o", In("x.png"), "--trigger", "software"});

  EXPECT_EQ(Operations(), (Lines{"StartSnap(1)", "Snap(1, , 5000)", "StopSnap"}));
}

TEST_F(TriggerChoices, ARefusedFreeRunEndsTheCommand) {
  Script("source=0");

  const ProcessResult result = Snap({"-o", In("x.png"), "--mode", "continuous"});

  EXPECT_EQ(result.err, "error: the camera does not take the free-running trigger\n");
  EXPECT_EQ(Operations(), Lines{"SetSource(2)"});
  EXPECT_EQ(result.exit_code, 1);
}

TEST_F(TriggerChoices, ACameraWithoutTriggerRunsFreeByItself) {
  Script("trigger=0");

  const ProcessResult result = Snap({"-o", In("x.png"), "--mode", "continuous"});

  EXPECT_EQ(Operations(), (Lines{"StartSnap(0)", "Snap(1, , 5000)", "StopSnap"}));
  EXPECT_EQ(result.exit_code, 0);
}

TEST_F(TriggerChoices, ATriggerThatTheCameraDoesNotHaveIsRefusedByName) {
  Script("trigger=0");

  const ProcessResult result = Snap({"-o", In("x.png"), "--trigger", "line"});

  EXPECT_EQ(result.err, "error: this camera has no trigger\n");
  EXPECT_EQ(result.exit_code, 1);
}

}  // namespace
