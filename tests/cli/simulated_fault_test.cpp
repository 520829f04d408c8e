// simulated_fault_test.cpp
// What kelcam reports and does when a simulated camera fails.
#include "VimbaC.h"
#include "simulated_kelcam_test.h"

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

using nlohmann::json;

// The count of a fault that goes on.
constexpr int kEveryTime = 0;

class SimulatedFaults : public SimulatedKelcamTest {
 protected:
  void Fault(const json& fault) { Simulate({{"faults", json::array({fault})}}); }
};

TEST_F(SimulatedFaults, AFailingAcquisitionStartIsNotFollowedBySnap) {
  Fault({{"call", "VmbFeatureCommandRun"}, {"feature", "AcquisitionStart"}, {"error", VmbErrorTimeout}});

  const ProcessResult result = Run("snap", Profile("mono"), {"-n", "2", "-o", In("%d.pgm")});

  EXPECT_THAT(result.err, StartsWith("error 12103: acquisition failed: AcquisitionStart failed (image 1)\n"));
  EXPECT_THAT(result.err, EndsWith("\n1 of 2 images taken\n"));
  EXPECT_EQ(result.exit_code, kFailed);
  EXPECT_FALSE(std::filesystem::exists(PathOf("1.pgm")));
  EXPECT_TRUE(std::filesystem::exists(PathOf("2.pgm")));
}

TEST_F(SimulatedFaults, AFailingAcquisitionStopFailsItsImage) {
  Fault({{"call", "VmbFeatureCommandRun"}, {"feature", "AcquisitionStop"}, {"error", VmbErrorTimeout}});

  const ProcessResult result = Run("snap", Profile("mono"), {"-o", In("x.pgm")});

  EXPECT_THAT(result.err, StartsWith("error 12103: acquisition failed: AcquisitionStop failed\n"));
  EXPECT_THAT(result.err, EndsWith("\n0 of 1 image taken\n"));
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(SimulatedFaults, AnIncompleteFrameFailsItsImageOnly) {
  Fault({{"frame", 1}, {"status", VmbFrameStatusIncomplete}});

  const ProcessResult result = Run("snap", Profile("mono"), {"-n", "3", "-o", In("%d.pgm")});

  EXPECT_THAT(result.err, StartsWith("error 12103: acquisition failed (image 2)\n"));
  EXPECT_THAT(result.err, EndsWith("\n2 of 3 images taken\n"));
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(SimulatedFaults, ARefusedPixelFormatIsAmongTheReasons) {
  Fault({{"call", "VmbFeatureEnumSet"}, {"feature", "PixelFormat"}, {"error", VmbErrorInvalidValue}});

  const ProcessResult result = Run("info", Profile("mono"));

  EXPECT_THAT(result.err, HasSubstr("\n  ColorCodeMono failed\n"));
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(SimulatedFaults, ASystemThatDoesNotStartIsAnErrorWithItsReasons) {
  Simulate({{"system", {{"geVTLIsPresent", false}}}});

  const ProcessResult result = Kelcam({"list"});

  EXPECT_EQ(result.err,
            "error: the camera system cannot be started\n"
            "  GeVTLIsPresent = false\n"
            "why: Vimba has no transport layer for GigE cameras\n"
            "to do: install Vimba's GigE transport layer\n"
            "(-v prints every message, --log FILE writes them to a file)\n");
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(SimulatedFaults, TheCodeOfAFailedStartUpIsAmongTheReasons) {
  Fault({{"call", "VmbStartup"}, {"error", VmbErrorIncomplete}});

  const ProcessResult result = Run("info", Profile("mono"));

  EXPECT_THAT(result.err,
              HasSubstr("  Vimba Startup fails : " + std::to_string(VmbErrorIncomplete) + " (incomplete)\n"));
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(SimulatedFaults, ALinkWithoutCamerasIsEmpty) {
  Simulate({{"cameras", json::array()}});

  const ProcessResult result = Kelcam({"list"});

  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, "notice: no camera found\n");
  EXPECT_EQ(result.exit_code, kDone);
}

TEST_F(SimulatedFaults, AnUnpluggedCameraEndsALiveRunWithFailures) {
  Fault({{"unplugAtFrame", 3}});

  const ProcessResult result = Run("live", Profile("mono"), {"--seconds", "1", "--timeout", "300"});

  EXPECT_THAT(result.err, HasSubstr("error 12106: no image arrived in time\n"));
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(SimulatedFaults, AControlThatTheCameraRefusesIsAnError) {
  const std::string profile = Profile("mono");
  Fault({{"call", "VmbFeatureFloatSet"}, {"feature", "Gain"}, {"error", VmbErrorTimeout}, {"count", kEveryTime}});

  const ProcessResult result = Run("snap", profile, {"--set", "gain=7", "-o", In("x.pgm")});

  EXPECT_EQ(result.err, "error: the camera refused gain=7\n");
  EXPECT_EQ(result.exit_code, kFailed);
}

}  // namespace
