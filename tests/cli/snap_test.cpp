// snap_test.cpp
// The way of kelcam snap through the device's operations, and what becomes of their failures.
#include <regex>

#include "berror.h"
#include "kelcam_test.h"

namespace {

using testing::StartsWith;

// What each image of single mode takes.
const Lines kSingleImage = {"StartSnap(one shot)", "Snap(mono, '', 5000 ms)", "StopSnap"};

Lines Times(int count, const Lines& lines) {
  Lines all;
  for (int i = 0; i < count; ++i) all.insert(all.end(), lines.begin(), lines.end());
  return all;
}

class SnapCommand : public ScriptedKelcamTest {};

TEST_F(SnapCommand, SingleModeStartsAndStopsTheCameraForEachImage) {
  Snap({"-n", "2", "-o", In("%d.png")});

  EXPECT_EQ(Operations(), Times(2, kSingleImage));
}

TEST_F(SnapCommand, ContinuousModeStartsAndStopsTheCameraOnceAndRunsFree) {
  Snap({"-n", "3", "-o", In("%d.png"), "--mode", "continuous"});

  EXPECT_EQ(Operations(),
            (Lines{"SetSource(free run)", "StartSnap(continuous)", "Snap(mono, '', 5000 ms)", "Snap(mono, '', 5000 ms)",
                   "Snap(mono, '', 5000 ms)", "StopSnap", "SetOff", "SetSource(software)"}));
}

TEST_F(SnapCommand, HandsOverKindAreaTextAndTimeout) {
  Snap({"-o", In("x.png"), "--kind", "rgb", "--area", "[p]", "--timeout", "70"});

  EXPECT_EQ(Operations(), (Lines{"StartSnap(one shot)", "Snap(rgb, '[p]', 70 ms)", "StopSnap"}));
}

TEST_F(SnapCommand, SwitchesTheColourModeBeforeTheControls) {
  Script("color=1");

  Snap({"-o", In("x.png"), "--set", "wbred=150", "--color", "on", "--set", "gain=3"});

  EXPECT_EQ(Operations(), (Lines{"SetColorMode(true)", "SetWhiteBalanceRed(150, color = true)", "gain.SetValue(3)",
                                 "StartSnap(one shot)", "Snap(rgb, '', 5000 ms)", "StopSnap"}));
}

TEST_F(SnapCommand, ColourModeOffIsSwitchedToo) {
  Script("color=1");

  Snap({"-o", In("x.png"), "--color", "off"});

  EXPECT_EQ(First(Operations(), 1), Lines{"SetColorMode(false)"});
}

TEST_F(SnapCommand, ARefusedColourModeEndsTheCommand) {
  Script("color=1 colormode=0");

  const ProcessResult result = Snap({"-o", In("x.png"), "--color", "on"});

  EXPECT_EQ(result.err, "error: the camera refused to switch colour mode on\n");
  EXPECT_EQ(Operations(), Lines{"SetColorMode(true)"});
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(SnapCommand, ColourModeOnAMonochromeCameraIsNoticed) {
  const ProcessResult result = Snap({"-o", In("x.png"), "--color", "on"});

  EXPECT_EQ(result.err, "notice: --color has no effect on a monochrome camera\n");
  EXPECT_EQ(result.exit_code, kDone);
}

TEST_F(SnapCommand, AFailedImageDoesNotEndASingleRun) {
  Script(Codes("snap", {BError::eSuccess, BError::eTimeout, BError::eSuccess}));

  const ProcessResult result = Snap({"-n", "3", "-o", In("%d.png")});

  EXPECT_EQ(result.err, "error 12106: no image arrived in time (image 2)\n2 of 3 images taken\n");
  EXPECT_EQ(Operations(), Times(3, kSingleImage));
  EXPECT_EQ(Files(), (Lines{"1.png", "3.png", "camera.ini", "log.txt"}));
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(SnapCommand, AFailedImageDoesNotEndAContinuousRun) {
  Script(Codes("snap", {BError::eFrameInvalid, BError::eSuccess}));

  const ProcessResult result = Snap({"-n", "2", "-o", In("%d.png"), "--mode", "continuous"});

  EXPECT_EQ(result.err, "error 12110: the received frame is invalid (image 1)\n1 of 2 images taken\n");
  EXPECT_EQ(Operations(), (Lines{"SetSource(free run)", "StartSnap(continuous)", "Snap(mono, '', 5000 ms)",
                                 "Snap(mono, '', 5000 ms)", "StopSnap", "SetOff", "SetSource(software)"}));
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(SnapCommand, AFailedStartIsNotFollowedBySnap) {
  Script(Codes("start", {BError::eAcquisitionFailed, BError::eSuccess}));

  const ProcessResult result = Snap({"-n", "2", "-o", In("%d.png")});

  EXPECT_EQ(result.err, "error 12103: acquisition failed: AcquisitionStart failed (image 1)\n1 of 2 images taken\n");
  EXPECT_EQ(Operations(),
            (Lines{"StartSnap(one shot)", "StopSnap", "StartSnap(one shot)", "Snap(mono, '', 5000 ms)", "StopSnap"}));
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(SnapCommand, AContinuousRunThatDoesNotStartTakesNothing) {
  Script(Codes("start", {BError::eAcquisitionFailed}));

  const ProcessResult result = Snap({"-n", "2", "-o", In("%d.png"), "--mode", "continuous"});

  EXPECT_EQ(result.err, "error 12103: acquisition failed: AcquisitionStart failed\n0 of 2 images taken\n");
  EXPECT_EQ(Operations(),
            (Lines{"SetSource(free run)", "StartSnap(continuous)", "StopSnap", "SetOff", "SetSource(software)"}));
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(SnapCommand, AFailedStopIsAFailureOfItsImage) {
  Script(Codes("stop", {BError::eAcquisitionFailed}));

  const ProcessResult result = Snap({"-o", In("x.png")});

  EXPECT_EQ(result.err, "error 12103: acquisition failed: AcquisitionStop failed\n0 of 1 image taken\n");
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(SnapCommand, AFailedStopOfAContinuousRunKeepsItsImages) {
  Script(Codes("stop", {BError::eAcquisitionFailed}));

  const ProcessResult result = Snap({"-n", "2", "-o", In("%d.png"), "--mode", "continuous"});

  EXPECT_EQ(result.err, "error 12103: acquisition failed: AcquisitionStop failed\n2 of 2 images taken\n");
  EXPECT_EQ(Files(), (Lines{"1.png", "2.png", "camera.ini", "log.txt"}));
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(SnapCommand, AWrongKindThrownByTheDriverIsAnErrorOfTheImage) {
  Script("snap=wrongkind,0");

  const ProcessResult result = Snap({"-n", "2", "-o", In("%d.png")});

  EXPECT_EQ(result.err, "error 1: the driver does not deliver this kind of picture (image 1)\n1 of 2 images taken\n");
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(SnapCommand, PrintsALineForEachPictureWithBothTimes) {
  const ProcessResult result = Snap({"-o", In("x.png")});

  EXPECT_THAT(result.out, StartsWith(In("x.png") + ": 5 x 3, mono, "));
  EXPECT_TRUE(std::regex_search(result.out, std::regex(", [0-9]+ ms, written in [0-9]+ ms\n$"))) << result.out;
  EXPECT_EQ(result.err, "");
}

TEST_F(SnapCommand, PrintsOneDocument) {
  Script(Codes("snap", {BError::eSuccess, BError::eTimeout}));

  nlohmann::json document = Document(With("snap", {"-n", "2", "-o", In("%d.png")}));

  EXPECT_TRUE(document["images"][0]["time"].is_string());
  document["images"][0].erase("time");
  for (const char* duration : {"milliseconds", "writingMilliseconds"}) {
    EXPECT_TRUE(document["images"][0][duration].is_number()) << duration;
    document["images"][0].erase(duration);
  }
  EXPECT_EQ(document,
            (nlohmann::json{
                {"camera", "Vimba_Scripted_1"},
                {"kind", "mono"},
                {"images",
                 {{{"number", 1}, {"file", In("1.png")}, {"width", 5}, {"height", 3}},
                  {{"number", 2}, {"error", {{"code", BError::eTimeout}, {"text", "no image arrived in time"}}}}}},
                {"taken", 1},
                {"interrupted", false}}));
}

TEST_F(SnapCommand, ADocumentSaysWhyAContinuousRunFailed) {
  Script(Codes("start", {BError::eAcquisitionFailed}));

  const auto document = Document(With("snap", {"-n", "2", "-o", In("%d.png"), "--mode", "continuous"}));

  EXPECT_EQ(document["images"], nlohmann::json::array());
  EXPECT_EQ(document["error"]["text"], "acquisition failed: AcquisitionStart failed");
}

}  // namespace
