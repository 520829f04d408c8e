// simulated_camera_test.cpp
// kelcam through the real module: commands, triggers, faults and the messages that it logs.
#include <regex>
#include <set>

#include "simulated_kelcam_test.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

class SimulatedCameras : public SimulatedKelcamTest {
 protected:
  SimulatedCameras() { Simulate(); }
};

class BuiltInCameras : public SimulatedKelcamTest {};

std::size_t Count(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; at += part.size()) ++count;
  return count;
}

TEST_F(BuiltInCameras, ThreeAreListed) {
  const nlohmann::json cameras = Document({"list"})["cameras"];

  ASSERT_EQ(cameras.size(), 3u);
  for (const std::string camera : cameras) EXPECT_THAT(camera, StartsWith("Vimba_"));
}

TEST_F(BuiltInCameras, EachExampleProfileOpensOneOfThem) {
  const nlohmann::json cameras = Document({"list"})["cameras"];
  std::set<std::string> opened;

  for (const char* profile : {"mono", "colour", "yuv"}) opened.insert(Info(Profile(profile))["name"]);

  EXPECT_EQ(opened, std::set<std::string>(cameras.begin(), cameras.end()));
}

TEST_F(SimulatedCameras, InfoReportsControlsAndRates) {
  const nlohmann::json info = Info(Profile("colour"));

  Lines controls;
  for (const auto& control : info["controls"]) controls.push_back(control["name"]);
  EXPECT_EQ(controls, (Lines{"gain", "exposure", "sensor temperature", "board temperature"}));
  EXPECT_EQ(info["color"], true);
  EXPECT_EQ(info["trigger"], nlohmann::json({{"external", false}}));
  EXPECT_LT(info["whiteBalance"]["min"], info["whiteBalance"]["max"]);
  EXPECT_GT(info["streamBytesPerSecond"], 0);
  EXPECT_GT(info["framesPerSecond"], 0.0);
}

TEST_F(SimulatedCameras, AContinuousRunTakesItsImagesWithOneStart) {
  const ProcessResult result = Run("snap", Profile("mono"), {"-n", "3", "--mode", "continuous", "-o", In("%d.pgm")});

  EXPECT_EQ(result.exit_code, kDone) << result.err;
  EXPECT_EQ(Count(Text("log.txt"), " : Command AcquisitionStart -> 0\n"), 1u);
  EXPECT_EQ(Count(Text("log.txt"), " : Frame error code = 0\n"), 3u);
  // The chart moves.
  EXPECT_NE(Text("1.pgm"), Text("3.pgm"));
}

TEST_F(SimulatedCameras, FreeRunTakesSingleImagesToo) {
  const DecodedPicture picture = Picture(Profile("mono"), {"--trigger", "free"});

  EXPECT_EQ(picture.channels, 1);
}

TEST_F(SimulatedCameras, SoftwareTriggerTakesContinuousImagesToo) {
  const ProcessResult result =
      Run("snap", Profile("mono"), {"-n", "3", "--mode", "continuous", "--trigger", "software", "-o", In("%d.pgm")});

  EXPECT_EQ(result.err, "3 of 3 images taken\n");
  EXPECT_EQ(result.exit_code, kDone);
}

TEST_F(SimulatedCameras, ALineThatDoesNotMoveTimesOut) {
  const ProcessResult result =
      Run("snap", Profile("mono"), {"--trigger", "line", "--timeout", "200", "-o", In("x.pgm")});

  EXPECT_THAT(result.err, StartsWith("error 12106: no image arrived in time\n"));
  EXPECT_EQ(result.exit_code, kFailed);
  EXPECT_THAT(Text("log.txt"), HasSubstr(" : Trigger is on: 1\n"));
}

TEST_F(SimulatedCameras, LiveCountsFramesForAsLongAsAsked) {
  const nlohmann::json live = DocumentLines({"live", "--profile", Profile("mono"), "--seconds", "3"}).back();

  EXPECT_GE(live["frames"], 2);
  EXPECT_EQ(live["failures"], 0) << live;
  EXPECT_GE(live["seconds"], 3.0);
  EXPECT_GT(live["streamBytesPerSecond"], 0);
}

TEST_F(SimulatedCameras, TheDriverWritesTheIdentifierIntoTheProfile) {
  const std::string name = Info(Profile("mono"))["name"];

  EXPECT_THAT(Text("mono.ini"), HasSubstr(name));
}

TEST_F(SimulatedCameras, ARotationThatTheDriverDoesNotHaveIsAnError) {
  const ProcessResult result = Run("info", Profile("mono", "\nRotateBy90Degree = 2\n"));

  EXPECT_THAT(result.err, StartsWith("error 8420: "));
  EXPECT_THAT(result.err, HasSubstr("RotateBy90Degree = 2"));
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(SimulatedCameras, ACameraThatIsNotThereIsAnErrorWithItsReasons) {
  const std::string profile = Write("none.ini", "API = Vimba\nInit.Method = IP\nIP = 192.0.2.77\n");

  const ProcessResult result = Run("info", profile);

  EXPECT_EQ(result.err, "error: the camera of the profile " + profile +
                            " cannot be opened\n"
                            "  Camera (IP: 192.0.2.77): - InitByAddr failed (2 times)\n"
                            "why: no camera answers at this address; attached: Vimba_Manta-G-507B_50-0536953957, "
                            "Vimba_Manta-G-507C_50-0536953958, Vimba_GC1290C_02-2186A-06584\n"
                            "to do: compare it with kelcam list --long; check the camera's power and cable, and that "
                            "the computer is in its subnet\n"
                            "(-v prints every message, --log FILE writes them to a file)\n");
  EXPECT_EQ(result.exit_code, kFailed);
}

}  // namespace
