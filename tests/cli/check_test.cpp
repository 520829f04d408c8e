// check_test.cpp
// kelcam check: each failure that simulated cameras make has a verdict of its own.
#include <algorithm>

#include "VimbaC.h"
#include "simulated_kelcam_test.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

using nlohmann::json;

constexpr int kEveryTime = 0;
constexpr const char* kSerial = "50-0536953957";
constexpr const char* kFine = "fine";
constexpr const char* kLook = "look at this";
constexpr const char* kBroken = "broken";
constexpr const char* kNotLookedAt = "not looked at";

json SmallCamera(const json& members = json::object()) {
  json camera{{"like", "DEV_000F31034C65"}, {"sensor", {{"width", 616}, {"height", 514}}}};
  camera.update(members);
  return camera;
}

json Camera(const json& members) { return {{"cameras", json::array({SmallCamera(members)})}}; }

json Faults(std::initializer_list<json> faults) {
  return {{"cameras", json::array({SmallCamera()})}, {"faults", std::vector<json>(faults)}};
}

json FeatureFault(const std::string& call, const std::string& feature, const json& effect) {
  json fault{{"call", call}, {"feature", feature}, {"count", kEveryTime}};
  fault.update(effect);
  return Faults({fault});
}

json RefusedFeature(const std::string& call, const std::string& feature, int error) {
  return FeatureFault(call, feature, {{"error", error}});
}

class Check : public SimulatedKelcamTest {
 protected:
  // The document of a short check of all attached cameras, or of these.
  json Checked(const Arguments& arguments = {}) {
    Arguments all{"--json", "check", "--seconds", "0.5"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    m_result = Kelcam(all);
    return json::parse(m_result.out);
  }

  // The point of this name: of the system, or of the first camera.
  static json Point(const json& document, const std::string& name) {
    json points = document["points"];
    if (!document["cameras"].empty()) {
      const json& more = document["cameras"][0]["points"];
      points.insert(points.end(), more.begin(), more.end());
    }
    const auto point =
        std::find_if(points.begin(), points.end(), [&](const json& one) { return one["point"] == name; });
    return point == points.end() ? json() : *point;
  }

  // The points with this verdict.
  static Lines Names(const json& points, const std::string& verdict) {
    Lines names;
    for (const json& point : points) {
      if (point["verdict"] == verdict) names.push_back(point["point"]);
    }
    return names;
  }

  ProcessResult m_result;
};

// What is wrong with the cameras, and what the check says of it.
struct Trouble {
  const char* name;
  json configuration;
  const char* point;
  const char* verdict;
  const char* found;  // part of it
  const char* to_do;  // part of it
  std::vector<std::string> arguments = {};
};

void PrintTo(const Trouble& trouble, std::ostream* out) { *out << trouble.name; }

class CheckOf : public Check, public testing::WithParamInterface<Trouble> {};

TEST_P(CheckOf, HasAVerdictOfItsOwn) {
  Simulate(GetParam().configuration);

  const json document = Checked(GetParam().arguments);

  const json point = Point(document, GetParam().point);
  ASSERT_TRUE(point.is_object()) << document.dump(2);
  EXPECT_EQ(point["verdict"], GetParam().verdict) << document.dump(2);
  EXPECT_THAT(point["found"].get<std::string>(), HasSubstr(GetParam().found));
  EXPECT_THAT(point.value("toDo", ""), HasSubstr(GetParam().to_do));
  EXPECT_EQ(point.contains("toDo"), *GetParam().to_do != '\0');
  EXPECT_EQ(m_result.exit_code, document["verdict"] == kBroken ? kFailed : kDone);
}

const Trouble kSystem[] = {
    {"LibraryThatDoesNotStart",
     Faults({{{"call", "VmbStartup"}, {"error", VmbErrorIncomplete}, {"count", kEveryTime}}}), "transport layer",
     kBroken, "the Vimba library does not start", "repair its installation"},
    {"NoTransportLayer",
     {{"system", {{"geVTLIsPresent", false}}}},
     "transport layer",
     kBroken,
     "no transport layer for GigE cameras",
     "install Vimba's GigE transport layer"},
    {"NoDiscovery", RefusedFeature("VmbFeatureCommandRun", "GeVDiscoveryAllOnce", VmbErrorIO), "transport layer",
     kBroken, "the search for cameras does not start", "network adapter"},
    {"NoCamera", {{"cameras", json::array()}}, "cameras", kBroken, "no camera is attached", "check power"},
    {"CameraInUse", Faults({{{"call", "VmbCameraOpen"}, {"error", VmbErrorInvalidAccess}, {"count", kEveryTime}}}),
     "cameras", kLook, "access in use", "end the program"},
};

const Trouble kOpening[] = {
    {"CameraInUse", Faults({{{"call", "VmbCameraOpen"}, {"error", VmbErrorInvalidAccess}, {"count", kEveryTime}}}),
     "opening", kBroken, "another program has it open", "end that program"},
    {"CameraNotThere",
     Camera(json::object()),
     "opening",
     kBroken,
     "there is no camera 77",
     "kelcam list --long",
     {"--camera", "77"}},
    {"RefusedFormat", RefusedFeature("VmbFeatureEnumSet", "PixelFormat", VmbErrorInvalidValue), "opening", kBroken,
     "the camera does not take the pixel format", "Bayertype"},
    {"RefusedStreamRate", RefusedFeature("VmbFeatureIntSet", "StreamBytesPerSecond", VmbErrorInvalidValue), "opening",
     kLook, "with failures on the way", "read the messages"},
    {"NoCapture", Faults({{{"call", "VmbCaptureStart"}, {"error", VmbErrorResources}}}), "opening", kBroken,
     "the library does not start to capture", "end other programs"},
};

const Trouble kSetUp[] = {
    {"SmallPackets",
     {{"cameras", json::array({SmallCamera()})}, {"link", {{"mtu", 1500}}}},
     "packet size",
     kLook,
     "packets of 1500 bytes: jumbo frames are off",
     "MTU of 9000"},
    {"NoPacketSize", Camera({{"missing", {"GVSPPacketSize", "GVSPAdjustPacketSize"}}}), "packet size", kNotLookedAt,
     "does not report GVSPPacketSize", ""},
    {"NoTemperature", Camera({{"missing", {"DeviceTemperature", "DeviceTemperatureSelector"}}}), "temperature",
     kNotLookedAt, "the camera reports no temperature", ""},
    {"HotCamera", Camera({{"temperature", {{"sensor", 91.5}, {"main", 70}}}}), "temperature", kLook,
     "sensor 91.5 °C, main board 70.0 °C: above 85 °C", "cool the camera"},
    {"NoInputLine",
     Faults({{{"call", "VmbFeatureEnumSet"},
              {"feature", "TriggerSource"},
              {"value", "Line2"},
              {"error", VmbErrorInvalidValue},
              {"count", kEveryTime}}}),
     "trigger", kLook, "no input line Line2", "single images"},
    {"NoTriggerCommand", RefusedFeature("VmbFeatureCommandRun", "TriggerSoftware", VmbErrorOther), "trigger", kBroken,
     "the software trigger starts no image", "switch the camera off and on"},
    {"NoClock", RefusedFeature("VmbFeatureCommandRun", "GevTimestampControlLatch", VmbErrorNotFound), "clock", kBroken,
     "cannot be read", "lacks the features of the clock"},
    {"ClockThatStands", FeatureFault("VmbFeatureIntGet", "GevTimestampValue", {{"answer", {1000}}}), "clock", kBroken,
     "the clock stands", "firmware"},
    {"ClockThatGoesBack",
     Faults({{{"call", "VmbFeatureIntGet"},
              {"feature", "GevTimestampValue"},
              {"answer", {1}},
              {"occurrence", 10},
              {"count", 1}}}),
     "clock", kBroken, "the clock goes back", "firmware"},
    {"ClockThatJumps", FeatureFault("VmbFeatureIntGet", "GevTimestampTickFrequency", {{"answer", {1000}}}), "clock",
     kLook, "the clock jumps by", "firmware"},
    {"SlowAnswers", Faults({{{"call", "VmbFeatureIntGet"}, {"delay_ms", 20}, {"count", kEveryTime}}}), "answers", kLook,
     "the camera answers in 2", "without a switch"},
};

const Trouble kImages[] = {
    {"DeadCable",
     {{"cameras", json::array({SmallCamera()})}, {"link", {{"dead", json::array({json::object()})}}}},
     "single images",
     kBroken,
     "0 of 3 images taken, ended after failures in a row",
     "BYTEPERSECOND"},
    {"LostPackets", Camera({{"packetLoss", 0.05}}), "packets", kLook, "missed", "jumbo frames"},
    {"OneLostFrame", Faults({{{"frame", 5}, {"status", VmbFrameStatusIncomplete}}}), "single images", kLook,
     "19 of 20 images taken", "jumbo frames"},
    {"FramesThatDoNotFit", Faults({{{"frame", 0}, {"status", VmbFrameStatusTooSmall}, {"count", kEveryTime}}}),
     "single images", kBroken, "the frame does not fit the buffers", "raw format"},
    {"CameraThatDoesNotStart", RefusedFeature("VmbFeatureCommandRun", "AcquisitionStart", VmbErrorTimeout),
     "single images", kBroken, "does not take the command to start", "switch the camera off and on"},
    {"SlowSensor", Camera({{"lineTime_us", 1000}}), "single images", kLook, "exposure and transfer explain",
     "how fast the camera answers"},
    {"UnpluggedCamera", Faults({{{"unplugAtFrame", 22}}}), "run", kBroken, "camera lost", "power and cable"},
    {"FailuresOfTheRun", Faults({{{"frame", 22}, {"status", VmbFrameStatusInvalid}, {"count", kEveryTime}}}), "run",
     kBroken, "marks the frame as invalid", "try again"},
    {"FramesThatNeverArrive", Faults({{{"frame", 23}, {"drop", true}, {"count", 2}}}), "intervals", kLook,
     "2 missing frame ids (by the camera's clock)", "frames were lost"},
    {"LongExposure", Camera({{"features", {{"ExposureTimeAbs", 60000}}}}), "frame rate", kFine,
     "the exposure limits the rate", ""},
};

const auto kNameOf = [](const testing::TestParamInfo<Trouble>& info) { return info.param.name; };

INSTANTIATE_TEST_SUITE_P(System, CheckOf, testing::ValuesIn(kSystem), kNameOf);
INSTANTIATE_TEST_SUITE_P(Opening, CheckOf, testing::ValuesIn(kOpening), kNameOf);
INSTANTIATE_TEST_SUITE_P(SetUp, CheckOf, testing::ValuesIn(kSetUp), kNameOf);
INSTANTIATE_TEST_SUITE_P(Images, CheckOf, testing::ValuesIn(kImages), kNameOf);

TEST_F(Check, FindsNothingWrongWithAGoodCamera) {
  Simulate({{"cameras", json::array({SmallCamera()})}});

  const json document = Checked();

  const json& points = document["cameras"][0]["points"];
  EXPECT_EQ(Names(document["points"], kFine), (Lines{"library", "transport layer", "cameras"}));
  EXPECT_EQ(Names(points, kNotLookedAt), (Lines{"profile", "network"}));
  // A busy computer may be late for an image.
  EXPECT_THAT(Names(points, kLook), testing::IsSubsetOf({"frame rate", "intervals", "single images"}))
      << document.dump(2);
  EXPECT_EQ(Names(points, kBroken), Lines()) << document.dump(2);
  EXPECT_EQ(document["cameras"][0]["figures"]["snapMilliseconds"].size(), 20u);
  EXPECT_EQ(m_result.exit_code, kDone);
}

TEST_F(Check, OfAllAttachedCamerasHasOneAfterTheOther) {
  Simulate({{"timing", "instant"}});

  const json document = Checked();

  ASSERT_EQ(document["cameras"].size(), 3u);
  EXPECT_EQ(document["cameras"][2]["camera"], "Vimba_GC1290C_02-2186A-06584");
  EXPECT_THAT(m_result.err, HasSubstr("checking DEV_000F31034C66\n"));
}

TEST_F(Check, ALineOfTheProfileThatCannotBeUsedIsToLookAt) {
  Simulate({{"timing", "instant"}});

  const json profile = Point(Checked({"--profile", Profile("mono", "SHUTER = 3\n")}), "profile");

  EXPECT_EQ(profile["verdict"], kLook);
  EXPECT_THAT(profile["messages"][0].get<std::string>(), HasSubstr("SHUTER"));
}

TEST_F(Check, AProfileThatIsNotThereIsBroken) {
  const json document = Checked({"--profile", In("none.ini")});

  EXPECT_EQ(Point(document, "profile")["verdict"], kBroken);
  EXPECT_EQ(Point(document, "opening")["verdict"], kBroken);
  EXPECT_EQ(Point(document, "run")["verdict"], kNotLookedAt);
  EXPECT_EQ(m_result.exit_code, kFailed);
}

TEST_F(Check, AFormatThatTheDriverDoesNotConvertIsToLookAt) {
  Simulate({{"timing", "instant"}});

  const json format = Point(Checked({"--profile", Profile("colour", "COLORCODEcolor = RGB\n")}), "format");

  EXPECT_EQ(format["verdict"], kLook);
  EXPECT_THAT(format["toDo"].get<std::string>(), HasSubstr("YUV"));
}

// The driver waits for the trigger without a limit, and the check does not.
TEST_F(Check, ATriggerThatIsNeverDoneEndsInAReport) {
  Simulate(FeatureFault("VmbFeatureCommandIsDone", "TriggerSoftware", {{"done", false}}));

  const json document = Checked();

  const json calls = Point(document, "calls");
  EXPECT_EQ(calls["verdict"], kBroken);
  EXPECT_THAT(calls["found"].get<std::string>(), HasSubstr("TriggerSoftware"));
  EXPECT_EQ(Point(document, "run")["found"], "a call of the driver before it does not return");
  EXPECT_EQ(m_result.exit_code, kFailed);
}

TEST_F(Check, ALibraryThatIsMissingIsAFinding) {
  std::filesystem::create_directory(PathOf("empty"));

  const ProcessResult result = KelcamTest::Kelcam({"--json", "--vimbac", In("empty"), "check"});

  const json library = Point(json::parse(result.out), "library");
  EXPECT_EQ(library["verdict"], kBroken);
  EXPECT_THAT(library["found"].get<std::string>(), HasSubstr("in this folder"));
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(Check, WritesAFileThatFitsAPage) {
  Simulate({{"timing", "instant"}});

  const ProcessResult result = Kelcam({"check", "--camera", "1", "--seconds", "0.2", "-o", In("report.txt")});

  EXPECT_THAT(result.out, StartsWith(In("report.txt") + ": "));
  std::istringstream report(Text("report.txt"));
  std::string line;
  std::getline(report, line);
  EXPECT_THAT(line, StartsWith("kelcam check: "));
  while (std::getline(report, line)) {
    // A file's name is not taken apart.
    EXPECT_TRUE(line.size() <= 80 || line.find('/') != std::string::npos) << line;
  }
  EXPECT_EQ(result.exit_code, kDone);
}

TEST_F(Check, KeepsTheProfileFromBecomingTheReport) {
  const std::string profile = Profile("mono");
  const std::string text = Text("mono.ini");

  const ProcessResult result = KelcamTest::Kelcam({"check", "--profile", profile, "-o", profile});

  EXPECT_EQ(result.exit_code, kWrongUsage);
  EXPECT_EQ(Text("mono.ini"), text);
}

TEST_F(Check, SaysAtOnceThatItsReportCannotBeWritten) {
  const ProcessResult result = KelcamTest::Kelcam({"check", "-o", In("no-such-folder/report.txt")});

  EXPECT_THAT(result.err, HasSubstr("cannot be written"));
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(Check, HidesWhoseCamerasTheyAre) {
  Simulate({{"timing", "instant"}});

  const ProcessResult result = Kelcam({"check", "--anonymous", "--seconds", "0.2", "--profile", Profile("mono")});

  EXPECT_THAT(result.out,
              AllOf(Not(HasSubstr(kSerial)), Not(HasSubstr("DEV_000F31034C6")), Not(HasSubstr("169.254."))));
  EXPECT_THAT(result.out, AllOf(HasSubstr("Vimba_Manta-G-507B_serial-1"), HasSubstr("id-1"), HasSubstr("address-1")));
  EXPECT_THAT(result.out, HasSubstr("serial-2"));
}

#ifndef _WIN32

TEST_F(Check, AnInterruptEndsItWithWhatIsKnown) {
  Simulate({{"cameras", json::array({SmallCamera()})}});

  const ProcessResult result = InterruptedAt("Snap\n", {"-v", "--json", "check"});

  const json document = json::parse(result.out);
  EXPECT_EQ(document["interrupted"], true);
  EXPECT_EQ(Point(document, "opening")["verdict"], kFine);
  EXPECT_EQ(Point(document, "run")["verdict"], kNotLookedAt);
  EXPECT_EQ(result.exit_code, kInterrupted);
}

#endif

}  // namespace
