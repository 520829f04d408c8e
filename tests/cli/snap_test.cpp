// snap_test.cpp
// The way of kelcam snap through the device's operations, and what becomes of their failures.
#include "kelcam_test.h"

namespace {

using Lines = std::vector<std::string>;

class SnapCommand : public ScriptedKelcamTest {};

TEST_F(SnapCommand, SingleModeStartsAndStopsTheCameraForEachImage) {
  Snap({"-n", "2", "-o", In("%d.png")});

  EXPECT_EQ(Operations(), (Lines{"StartSnap(1)", "Snap(1, , 5000)", "StopSnap",  //
                                 "StartSnap(1)", "Snap(1, , 5000)", "StopSnap"}));
}

TEST_F(SnapCommand, ContinuousModeStartsAndStopsTheCameraOnceAndRunsFree) {
  Snap({"-n", "3", "-o", In("%d.png"), "--mode", "continuous"});

  EXPECT_EQ(Operations(), (Lines{"SetSource(2)", "StartSnap(0)", "Snap(1, , 5000)", "Snap(1, , 5000)",
                                 "Snap(1, , 5000)", "StopSnap", "SetOff", "SetSource(0)"}));
}

TEST_F(SnapCommand, HandsOverKindAreaTextAndTimeout) {
  Snap({"-o", In("x.png"), "--kind", "rgb", "--area", "[p]", "--timeout", "70"});

  EXPECT_EQ(Operations(), (Lines{"StartSnap(1)", "Snap(2, [p], 70)", "StopSnap"}));
}

TEST_F(SnapCommand, SwitchesTheColourModeBeforeTheControls) {
  Script("color=1");

  Snap({"-o", In("x.png"), "--set", "wbred=150", "--color", "on", "--set", "gain=3"});

  EXPECT_EQ(Operations(), (Lines{"SetColorMode(1)", "SetWhiteBalanceRed(150, 1)", "gain.SetValue(3)", "StartSnap(1)",
                                 "Snap(2, , 5000)", "StopSnap"}));
}

TEST_F(SnapCommand, ColourModeOffIsSwitchedToo) {
  Script("color=1");

  Snap({"-o", In("x.png"), "--color", "off"});

  EXPECT_EQ(Operations().front(), "SetColorMode(0)");
}

TEST_F(SnapCommand, ARefusedColourModeEndsTheCommand) {
  Script("color=1 colormode=0");

  const ProcessResult result = Snap({"-o", In("x.png"), "--color", "on"});

  EXPECT_EQ(result.err, "error: the camera does not take the pixel format of colour mode on\n");
  EXPECT_EQ(Operations(), Lines{"SetColorMode(1)"});
  EXPECT_EQ(result.exit_code, 1);
}

TEST_F(SnapCommand, ColourModeOnAMonochromeCameraIsNoticed) {
  const ProcessResult result = Snap({"-o", In("x.png"), "--color", "on"});

  EXPECT_EQ(result.err, "notice: --color does nothing on a monochrome camera\n");
  EXPECT_EQ(result.exit_code, 0);
}

TEST_F(SnapCommand, AFailedImageDoesNotEndASingleRun) {
  Script("snap=0,12106,0");

  const ProcessResult result = Snap({"-n", "3", "-o", In("%d.png")});

  EXPECT_EQ(result.err, "error 12106: no image arrived in time (image 2)\n2 of 3 images taken\n");
  EXPECT_EQ(Operations().size(), 9u);
  EXPECT_EQ(Files(), (Lines{"1.png", "3.png", "camera.ini", "log.txt"}));
  EXPECT_EQ(result.exit_code, 1);
}

TEST_F(SnapCommand, AFailedImageDoesNotEndAContinuousRun) {
  Script("snap=12110,0");

  const ProcessResult result = Snap({"-n", "2", "-o", In("%d.png"), "--mode", "continuous"});

  EXPECT_EQ(result.err, "error 12110: the received frame is invalid (image 1)\n1 of 2 images taken\n");
  EXPECT_EQ(Operations(), (Lines{"SetSource(2)", "StartSnap(0)", "Snap(1, , 5000)", "Snap(1, , 5000)", "StopSnap",
                                 "SetOff", "SetSource(0)"}));
  EXPECT_EQ(result.exit_code, 1);
}

TEST_F(SnapCommand, AFailedStartIsNotFollowedBySnap) {
  Script("start=12103,0");

  const ProcessResult result = Snap({"-n", "2", "-o", In("%d.png")});

  EXPECT_EQ(result.err, "error 12103: acquisition failed: AcquisitionStart failed (image 1)\n1 of 2 images taken\n");
  EXPECT_EQ(Operations(), (Lines{"StartSnap(1)", "StopSnap", "StartSnap(1)", "Snap(1, , 5000)", "StopSnap"}));
  EXPECT_EQ(result.exit_code, 1);
}

TEST_F(SnapCommand, AContinuousRunThatDoesNotStartTakesNothing) {
  Script("start=12103");

  const ProcessResult result = Snap({"-n", "2", "-o", In("%d.png"), "--mode", "continuous"});

  EXPECT_EQ(result.err, "error 12103: acquisition failed: AcquisitionStart failed\n0 of 2 images taken\n");
  EXPECT_EQ(Operations(), (Lines{"SetSource(2)", "StartSnap(0)", "StopSnap", "SetOff", "SetSource(0)"}));
  EXPECT_EQ(result.exit_code, 1);
}

TEST_F(SnapCommand, AFailedStopIsAFailureOfItsImage) {
  Script("stop=12103");

  const ProcessResult result = Snap({"-o", In("x.png")});

  EXPECT_EQ(result.err, "error 12103: acquisition failed: AcquisitionStop failed\n0 of 1 image taken\n");
  EXPECT_EQ(result.exit_code, 1);
}

TEST_F(SnapCommand, AFailedStopOfAContinuousRunKeepsItsImages) {
  Script("stop=12103");

  const ProcessResult result = Snap({"-n", "2", "-o", In("%d.png"), "--mode", "continuous"});

  EXPECT_EQ(result.err, "error 12103: acquisition failed: AcquisitionStop failed\n2 of 2 images taken\n");
  EXPECT_EQ(Files(), (Lines{"1.png", "2.png", "camera.ini", "log.txt"}));
  EXPECT_EQ(result.exit_code, 1);
}

TEST_F(SnapCommand, AWrongKindThrownByTheDriverIsAnErrorOfTheImage) {
  Script("snap=wrongkind,0");

  const ProcessResult result = Snap({"-n", "2", "-o", In("%d.png")});

  EXPECT_EQ(result.err, "error 1: the driver does not deliver this kind of picture (image 1)\n1 of 2 images taken\n");
  EXPECT_EQ(result.exit_code, 1);
}

TEST_F(SnapCommand, PrintsALineForEachPicture) {
  const ProcessResult result = Snap({"-o", In("x.png")});

  EXPECT_EQ(result.out.rfind(In("x.png") + ": 5 x 3, mono, ", 0), 0u) << result.out;
  EXPECT_EQ(result.err, "");
}

TEST_F(SnapCommand, PrintsOneDocument) {
  Script("snap=0,12106");

  nlohmann::json document = Document(With("snap", {"-n", "2", "-o", In("%d.png")}));

  EXPECT_TRUE(document["images"][0]["milliseconds"].is_number());
  document["images"][0].erase("milliseconds");
  EXPECT_EQ(document,
            (nlohmann::json{{"camera", "Vimba_Scripted_1"},
                            {"kind", "mono"},
                            {"images",
                             {{{"number", 1}, {"file", In("1.png")}, {"width", 5}, {"height", 3}},
                              {{"number", 2}, {"error", {{"code", 12106}, {"text", "no image arrived in time"}}}}}},
                            {"taken", 1},
                            {"interrupted", false}}));
}

TEST_F(SnapCommand, ADocumentTellsWhyAContinuousRunFailed) {
  Script("start=12103");

  const auto document = Document(With("snap", {"-n", "2", "-o", In("%d.png"), "--mode", "continuous"}));

  EXPECT_EQ(document["images"], nlohmann::json::array());
  EXPECT_EQ(document["error"]["text"], "acquisition failed: AcquisitionStart failed");
}

}  // namespace
