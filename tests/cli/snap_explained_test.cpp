// snap_explained_test.cpp
// Why an image failed: each cause with the driver's lines, the reason and the next step.
#include <regex>

#include "VimbaC.h"
#include "berror.h"
#include "simulated_kelcam_test.h"

namespace {

using testing::HasSubstr;
using testing::Not;

using nlohmann::json;

constexpr int kEveryTime = 0;
constexpr const char* kNothingComesBack =
    "to do: check cable, switch and firewall: commands pass to the camera, and packets of frames do not come back\n";
constexpr const char* kOffAndOn = "to do: try again; if it fails again, switch the camera off and on\n";

json Faults(const json& fault) { return {{"faults", json::array({fault})}}; }

json Command(const std::string& feature, int error) {
  return Faults({{"call", "VmbFeatureCommandRun"}, {"feature", feature}, {"error", error}});
}

// What makes an image fail, and what kelcam prints.
struct FailedSnap {
  const char* name;
  json configuration;
  std::vector<std::string> options;
  std::string error;  // a regular expression: times and rates differ
};

void PrintTo(const FailedSnap& snap, std::ostream* out) { *out << snap.name; }

class SnapExplained : public SimulatedKelcamTest, public testing::WithParamInterface<FailedSnap> {};

TEST_P(SnapExplained, NamesTheFailedLinesTheReasonAndTheNextStep) {
  Simulate(GetParam().configuration);
  Arguments options{"-o", In("x.pgm")};
  options.insert(options.end(), GetParam().options.begin(), GetParam().options.end());

  const ProcessResult result = Run("snap", Profile("mono"), options);

  EXPECT_TRUE(std::regex_match(result.err, std::regex(GetParam().error + "0 of 1 image taken\n"))) << result.err;
  EXPECT_EQ(result.exit_code, kFailed);
}

const FailedSnap kFailedFrames[] = {
    {"Incomplete",
     Faults({{"frame", 0}, {"status", VmbFrameStatusIncomplete}}),
     {},
     "error 12103: acquisition failed\n"
     "  ReceiveStatus failure -1\n"
     "why: the frame is incomplete: at least one of its packets is lost\\. The stream rate was [0-9]+\\.[0-9] MB/s\n"
     "to do: set a lower BYTEPERSECOND in the profile, make cameras on one link partners, or use jumbo frames\n"},
    {"TooSmall",
     Faults({{"frame", 0}, {"status", VmbFrameStatusTooSmall}}),
     {},
     "error 12108: the frame buffer is too small for the image\n"
     "  ReceiveStatus failure -2\n"
     "why: the frame does not fit the buffers, which are announced for the raw format\n"
     "to do: use the raw format \\(--color off, or no COLORCODEcolor in the profile\\)\n"},
    {"Invalid",
     Faults({{"frame", 0}, {"status", VmbFrameStatusInvalid}}),
     {},
     std::string("error 12110: the received frame is invalid\n"
                 "  ReceiveStatus failure -3\n"
                 "why: the library marks the frame as invalid\n") +
         kOffAndOn},
    {"RecordAltered",
     Faults({{"frame", 0}, {"context1", 77}}),
     {},
     "error 12110: the received frame is invalid\n"
     "  Frame record is not as announced\n"
     "  ReceiveStatus failure -3\n"
     "why: the library has changed the record of the frame\n"
     "to do: report it to the library's vendor\n"},
    {"BufferLost",
     {{"faults", json::array({{{"frame", 0}, {"timestamp", 1}},
                              {{"call", "VmbCaptureFrameQueue"}, {"occurrence", 11}, {"error", VmbErrorResources}}})}},
     {},
     "error 12103: acquisition failed:  ReQueueFrame failed\n"
     "  VmbCaptureFrameQueue failed\n"
     "  Invalid timestamp 1 < [0-9]+ \\(StartScan\\)\n"
     "why: the library does not take a buffer for frames back\n"
     "to do: start again: until then the camera has one buffer less\n"},
};

const FailedSnap kTimeOuts[] = {
    {"NoClock",
     Command("GevTimestampControlLatch", VmbErrorNotFound),
     {"--timeout", "300"},
     "error 12106: no image arrived in time\n"
     "  Current camera timestamp = 18446744073709551615\n"
     "(  Invalid timestamp [0-9]+ < 18446744073709551615 \\(StartScan\\)\n)?"
     "why: the camera's clock could not be read, so the driver refuses every frame\n"
     "to do: switch the camera off and on; if it fails again, it lacks the features of the clock "
     "\\(GevTimestamp\\.\\.\\.\\)\n"},
    {"OldFrame",
     Faults({{"frame", 0}, {"timestamp", 5}}),
     {"--timeout", "3000"},
     "error 12106: no image arrived in time\n"
     "  Invalid timestamp 5 < [0-9]+ \\(StartScan\\)\n"
     "why: frames came \\(1\\) and were refused: they are older than the start of the snap\n"
     "to do: try again: they are of a run before\\. If it fails again, switch the camera off and on\n"},
    {"TooShort",
     json::object(),
     {"--timeout", "300", "--set", "exposure=600ms"},
     "error 12106: no image arrived in time\n"
     "why: exposure and transfer take at least 60[0-9] ms, the time-out is 300 ms\n"
     "to do: set a longer --timeout or a shorter exposure\n"},
    {"NoTriggerOnTheLine",
     json::object(),
     {"--timeout", "300", "--trigger", "line"},
     "error 12106: no image arrived in time\n"
     "why: no frame came in 300 ms: no trigger reached the camera's input line\n"
     "to do: check the signal and TRIGGERPOLARITY in the profile, or use --trigger software\n"},
    {"FiredForNothing",
     Faults({{"frame", 0}, {"drop", true}}),
     {"--timeout", "300"},
     std::string("error 12106: no image arrived in time\n"
                 "why: the trigger was fired and no frame came in 300 ms\n") +
         kNothingComesBack},
    {"FreeForNothing",
     Faults({{"frame", 0}, {"drop", true}, {"count", kEveryTime}}),
     {"--timeout", "300", "--mode", "continuous"},
     std::string("error 12106: no image arrived in time\n"
                 "why: the camera runs free and no frame came in 300 ms\n") +
         kNothingComesBack},
    {"CannotRunFree",
     Faults({{"call", "VmbFeatureEnumSet"},
             {"feature", "TriggerSource"},
             {"value", "Line2"},
             {"error", VmbErrorInvalidValue},
             {"count", kEveryTime}}),
     {"--timeout", "300", "--mode", "continuous"},
     "error 12106: no image arrived in time\n"
     "why: the camera has no input line Line2, so the driver has no free running for it: it waits for single images\n"
     "to do: take single images: kelcam snap --mode single\n"},
};

const FailedSnap kStartsAndStops[] = {
    {"Mode",
     Faults({{"call", "VmbFeatureEnumSet"},
             {"feature", "AcquisitionMode"},
             {"value", "SingleFrame"},
             {"error", VmbErrorTimeout}}),
     {},
     std::string("error 12103: acquisition failed: AcquisitionMode failed\n"
                 "  Set feature AcquisitionMode = SingleFrame -> -12 \\(the camera did not answer in time\\)\n"
                 "why: the camera does not take the command to start\n") +
         kOffAndOn},
    {"Start",
     Command("AcquisitionStart", VmbErrorTimeout),
     {},
     std::string("error 12103: acquisition failed: AcquisitionStart failed\n"
                 "  Command AcquisitionStart -> -12 \\(the camera did not answer in time\\)\n"
                 "why: the camera does not take the command to start\n") +
         kOffAndOn},
    {"Stop",
     Command("AcquisitionStop", VmbErrorTimeout),
     {},
     std::string("error 12103: acquisition failed: AcquisitionStop failed\n"
                 "  VmbFeatureCommandRun AcquisitionStop returns -12 \\(the camera did not answer in time\\)\n"
                 "why: the camera does not take the command to stop\n") +
         kOffAndOn},
};

const auto kNameOf = [](const testing::TestParamInfo<FailedSnap>& info) { return info.param.name; };

INSTANTIATE_TEST_SUITE_P(Frames, SnapExplained, testing::ValuesIn(kFailedFrames), kNameOf);
INSTANTIATE_TEST_SUITE_P(TimeOuts, SnapExplained, testing::ValuesIn(kTimeOuts), kNameOf);
INSTANTIATE_TEST_SUITE_P(StartsAndStops, SnapExplained, testing::ValuesIn(kStartsAndStops), kNameOf);

// What simulated cameras do not bring about for kelcam.
class ScriptedSnap : public ScriptedKelcamTest {};

TEST_F(ScriptedSnap, APartnersLostFrameIsTheReason) {
  Script("report=1 snap=" + std::to_string(BError::eAborted));

  EXPECT_EQ(Snap({"-o", In("x.pgm")}).err,
            "error 12109: the acquisition was aborted\n"
            "why: a bandwidth partner lost a frame, and this camera probably lost one, too\n"
            "to do: try again: the stream rates are lower now\n"
            "0 of 1 image taken\n");
}

TEST_F(ScriptedSnap, AShortageOfMemoryIsTheReason) {
  Script("report=1 snap=nomemory");

  EXPECT_EQ(Snap({"-o", In("x.pgm")}).err,
            "error 12103: acquisition failed: out of memory\n"
            "why: the computer is short of memory or threads\n"
            "to do: end other programs, or set a smaller area of interest\n"
            "0 of 1 image taken\n");
}

// Its messages are the only source.
TEST_F(ScriptedSnap, ADriverThatReportsNothingHasNoReason) {
  Script("snap=" + std::to_string(BError::eFrameInvalid));

  EXPECT_EQ(Snap({"-o", In("x.pgm")}).err, "error 12110: the received frame is invalid\n0 of 1 image taken\n");
}

class FailedSnaps : public SimulatedKelcamTest {};

TEST_F(FailedSnaps, TheReasonIsInTheDocument) {
  Simulate(Faults({{"frame", 0}, {"status", VmbFrameStatusInvalid}}));

  const auto document = Document({"snap", "--profile", Profile("mono"), "-o", In("x.pgm")});

  EXPECT_EQ(document["images"][0]["error"],
            (json{{"code", 12110},
                  {"text", "the received frame is invalid"},
                  {"messages", {"ReceiveStatus failure -3"}},
                  {"why", "the library marks the frame as invalid"},
                  {"toDo", "try again; if it fails again, switch the camera off and on"}}));
}

TEST_F(FailedSnaps, AReasonThatStaysIsPrintedOnce) {
  Simulate(Faults({{"frame", 0}, {"status", VmbFrameStatusInvalid}, {"count", 2}}));

  const ProcessResult result = Run("snap", Profile("mono"), {"-n", "2", "-o", In("%d.pgm")});

  EXPECT_EQ(result.err, std::string("error 12110: the received frame is invalid (image 1)\n"
                                    "  ReceiveStatus failure -3\n"
                                    "why: the library marks the frame as invalid\n") +
                            kOffAndOn +
                            "error 12110: the received frame is invalid (image 2)\n"
                            "0 of 2 images taken\n");
}

// The camera is unplugged instead of delivering its first frame.
class LostCamera : public SimulatedKelcamTest {
 protected:
  LostCamera() { Simulate(Faults({{"unplugAtFrame", 0}})); }
};

constexpr const char* kGone =
    "why: the camera does not answer any more\n"
    "to do: check its power and cable, then start again\n";

TEST_F(LostCamera, EndsASeriesOfSnapsAfterThreeFailures) {
  const ProcessResult result = Run("snap", Profile("mono"), {"-n", "1000", "-o", In("%d.pgm"), "--timeout", "5000"});

  EXPECT_EQ(result.err, std::string("error 12106: no image arrived in time (image 1)\n") + kGone +
                            "error 12103: acquisition failed: AcquisitionMode failed (image 2)\n"
                            "error 12103: acquisition failed: AcquisitionMode failed (image 3)\n"
                            "error: camera lost: it does not answer, and 3 images in a row have failed\n"
                            "0 of 1000 images taken\n");
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(LostCamera, EndsAContinuousRunAfterAsManyFailuresAsAskedFor) {
  const ProcessResult result =
      Run("snap", Profile("mono"),
          {"-n", "1000", "-o", In("%d.pgm"), "--timeout", "5000", "--mode", "continuous", "--retries", "1"});

  EXPECT_EQ(result.err, std::string("error 12106: no image arrived in time (image 1)\n") + kGone +
                            "error: camera lost: it does not answer, and 1 image has failed\n"
                            "0 of 1000 images taken\n");
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(LostCamera, EndsALiveRunThatHasNoOtherEnd) {
  const ProcessResult result = Run("live", Profile("mono"), {"--timeout", "3000"});

  EXPECT_THAT(result.err, HasSubstr(std::string("error 12106: no image arrived in time\n") + kGone +
                                    "error: camera lost: it does not answer, and 3 images in a row have failed\n"));
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(LostCamera, IsTheErrorOfADocument) {
  const json lost{{"code", 0}, {"text", "camera lost: it does not answer, and 1 image has failed"}};

  const auto lines = DocumentLines({"live", "--profile", Profile("mono"), "--timeout", "300", "--retries", "1"});

  EXPECT_EQ(lines.back()["error"], lost);
}

// A camera that answers, and whose frames do not come, is not lost.
TEST_F(FailedSnaps, ACameraThatAnswersIsTriedToTheEnd) {
  Simulate(Faults({{"frame", 0}, {"drop", true}, {"count", kEveryTime}}));

  const ProcessResult result = Run("snap", Profile("mono"), {"-n", "5", "-o", In("%d.pgm"), "--timeout", "100"});

  EXPECT_THAT(result.err, HasSubstr("(image 5)\n"));
  EXPECT_THAT(result.err, Not(HasSubstr("camera lost")));
}

}  // namespace
