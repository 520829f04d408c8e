// several_simulated_test.cpp
// Several cameras in one command: what the real module and simulated cameras make of it.
#include <regex>

#include "VimbaC.h"
#include "berror.h"
#include "simulated_kelcam_test.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

using nlohmann::json;

constexpr int kEveryTime = 0;
// Bytes per second.
constexpr std::int64_t kWideLink = 1000000000;
constexpr const char* kMono = "Vimba_Manta-G-507B_50-0536953957";
constexpr const char* kColour = "Vimba_Manta-G-507C_50-0536953958";
constexpr const char* kOther = "Vimba_GC1290C_02-2186A-06584";
constexpr const char* kMonoId = "DEV_000F31034C65";
constexpr const char* kColourId = "DEV_000F31034C66";

class SeveralSimulated : public SimulatedKelcamTest {
 protected:
  // On a link that is wide enough: frames are lost by faults alone.
  void SimulateWith(const json& faults = json::array()) {
    Simulate({{"faults", faults}, {"link", {{"capacity", kWideLink}}}});
  }

  // The first two cameras, and what follows.
  Arguments WithTwo(const std::string& command, const Arguments& more = {}) const {
    Arguments arguments{"--log", In("log.txt"), command, "--camera", "1", "--camera", "2"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return arguments;
  }

  bool Has(const std::string& name) const { return std::filesystem::exists(PathOf(name)); }

  // The summary of a camera in the document of snap.
  static json SummaryOf(const json& document, const std::string& camera) {
    for (const json& each : document["cameras"]) {
      if (each["camera"] == camera) return each["summary"];
    }
    return {};
  }
};

TEST_F(SeveralSimulated, ProfilesAndWordsMayBeMixed) {
  SimulateWith();

  const ProcessResult result =
      Kelcam({"snap", "--camera", "3", "--profile", Profile("mono"), "--camera", kColourId, "-o", In("%c.png")});

  EXPECT_EQ(result.exit_code, kDone) << result.err;
  for (const char* name : {kMono, kColour, kOther}) {
    EXPECT_FALSE(Decoded(Text(std::string(name) + ".png")).pixels.empty()) << name;
  }
}

TEST_F(SeveralSimulated, TheOrderIsThatOfTheCommandLine) {
  SimulateWith();

  const json cameras = Document({"info", "--camera", "3", "--profile", Profile("mono"), "--camera", "2"})["cameras"];

  ASSERT_EQ(cameras.size(), 3u);
  EXPECT_EQ(cameras[0]["name"], kOther);
  EXPECT_EQ(cameras[1]["name"], kMono);
  EXPECT_EQ(cameras[2]["name"], kColour);
}

TEST_F(SeveralSimulated, OneCameraUnderTwoNamesIsWrongUsage) {
  SimulateWith();
  const std::string profile = Profile("mono");
  const std::string begin = "kelcam: --profile " + profile + " and --camera ";
  const std::string same = std::string(" name the same camera, ") + kMonoId + "\n(see kelcam --help)\n";

  for (const char* word : {"1", "50-0536953957", "169.254.76.101", kMonoId, kMono}) {
    const ProcessResult result = Kelcam({"live", "--profile", profile, "--camera", word});
    EXPECT_EQ(result.err, std::string(begin).append(word).append(same));
    EXPECT_EQ(result.exit_code, kWrongUsage);
  }
}

TEST_F(SeveralSimulated, OneCameraInTwoProfilesIsWrongUsage) {
  SimulateWith();
  const std::string serial = Profile("mono");
  const std::string id = Write("id.ini", std::string("API = Vimba\nInit.Method = Id\nCamera_Identifier = ") + kMonoId);
  const std::string address = Write("ip.ini", "API = Vimba\nInit.Method = IP\nIP = 169.254.76.101");

  for (const auto& [first, second] : {std::pair(serial, id), std::pair(id, address), std::pair(address, serial)}) {
    const ProcessResult result = Kelcam({"info", "--profile", first, "--profile", second});
    std::string same = "--profile ";
    same.append(first).append(" and --profile ").append(second).append(" name the same camera, ").append(kMonoId);
    EXPECT_THAT(result.err, HasSubstr(same));
    EXPECT_EQ(result.exit_code, kWrongUsage);
  }
}

TEST_F(SeveralSimulated, ACameraThatDoesNotOpenIsNamedAndTheOthersTakePictures) {
  SimulateWith(
      {{{"call", "VmbCameraOpen"}, {"camera", kMonoId}, {"error", VmbErrorInvalidAccess}, {"count", kEveryTime}}});

  const ProcessResult result = Kelcam(WithTwo("snap", {"--camera", "77", "-o", In("%c.png")}));

  EXPECT_THAT(result.err, AllOf(StartsWith("error: the camera 1 cannot be opened\n"), HasSubstr("\nwhy: "),
                                HasSubstr("\nerror: there is no camera 77 "),
                                HasSubstr("\n1                                 -         -      not run ")));
  EXPECT_TRUE(Has(std::string(kColour) + ".png"));
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(SeveralSimulated, LostFramesOfOneFailItsImagesOnlyAndForItsOwnReason) {
  SimulateWith({{{"frame", 0}, {"camera", kMonoId}, {"status", VmbFrameStatusIncomplete}, {"count", kEveryTime}},
                {{"frame", 1}, {"camera", kColourId}, {"drop", true}}});

  const ProcessResult result =
      Kelcam(WithTwo("snap", {"-n", "3", "--timeout", "2000", "--camera", "3", "-o", In("%c-%d.png")}));

  const std::string begin = "error 12106: " + std::string(kColour) + ": no image arrived in time (image 2)\n";
  const std::size_t at = result.err.find(begin);
  ASSERT_NE(at, std::string::npos) << result.err;
  const std::string after = result.err.substr(at + begin.size());
  EXPECT_THAT(after.substr(0, after.find("to do:")), Not(HasSubstr("incomplete")));
  EXPECT_THAT(result.err, HasSubstr("error 12103: " + std::string(kMono) + ": acquisition failed (image 3)\n"));
  EXPECT_FALSE(Has(std::string(kMono) + "-1.png"));
  EXPECT_TRUE(Has(std::string(kColour) + "-3.png"));
  EXPECT_TRUE(Has(std::string(kOther) + "-2.png"));
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(SeveralSimulated, AnUnpluggedCameraIsLostAndTheOthersGoOn) {
  SimulateWith({{{"unplugAtFrame", 1}, {"camera", kMonoId}}});

  const ProcessResult result =
      Kelcam(WithTwo("snap", {"-n", "20", "--timeout", "2000", "--retries", "1", "-o", In("%c-%d.png")}));

  EXPECT_THAT(result.err, HasSubstr("error: " + std::string(kMono) + ": camera lost: "));
  EXPECT_THAT(result.err, Not(HasSubstr(std::string(kColour) + ": camera lost")));
  EXPECT_TRUE(Has(std::string(kMono) + "-1.png"));
  EXPECT_TRUE(Has(std::string(kColour) + "-20.png"));
  EXPECT_EQ(result.exit_code, kFailed);
}

// Two ids of which one is the beginning of the other.
TEST_F(SeveralSimulated, ACameraIsNotMissingBecauseOneWithALongerIdIs) {
  Simulate({{"cameras", json::parse(R"([{"id": "DEV_1", "serial": "A", "sensor": {"width": 64, "height": 48}},
                                        {"id": "DEV_10", "serial": "B", "sensor": {"width": 64, "height": 48}}])")},
            {"faults", json::parse(R"([{"frame": 0, "camera": "DEV_1", "status": -3, "count": 0},
                                       {"unplugAtFrame": 0, "camera": "DEV_10"}])")}});

  const json document =
      Document(WithTwo("snap", {"-n", "20", "--timeout", "1000", "--retries", "1", "-o", In("%c-%d.png")}));

  EXPECT_EQ(document["cameras"][0]["images"].size(), 20u) << document;
  EXPECT_FALSE(document["cameras"][0].contains("error"));
  EXPECT_THAT(document["cameras"][1]["error"]["text"], StartsWith("camera lost: "));
}

class LinkedCameras : public SeveralSimulated {
 protected:
  LinkedCameras() {
    SimulateWith({{{"frame", 0}, {"camera", kMonoId}, {"status", VmbFrameStatusIncomplete}, {"count", kEveryTime}}});
  }
  json Snap(const Arguments& more) const {
    Arguments arguments{"-n", "10", "-o", In("%c-%d.png")};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return Document(WithTwo("snap", arguments));
  }
};

TEST_F(LinkedCameras, SlowDownWithEachOtherAndEndEachOthersSnaps) {
  const json document = Snap({"--link"});

  const json partner = SummaryOf(document, kColour);
  EXPECT_LT(partner["streamBytesPerSecond"]["last"], partner["streamBytesPerSecond"]["first"]);
  EXPECT_GE(partner["failuresByCode"][std::to_string(BError::eAborted)], 1) << document;
}

TEST_F(LinkedCameras, AreIndependentWithoutALink) {
  const json document = Snap({});

  const json other = SummaryOf(document, kColour);
  EXPECT_GE(other["streamBytesPerSecond"]["last"], other["streamBytesPerSecond"]["first"]);
  EXPECT_EQ(other["failuresByCode"], json::object());
  EXPECT_LT(SummaryOf(document, kMono)["streamBytesPerSecond"]["last"], other["streamBytesPerSecond"]["last"]);
  EXPECT_THAT(Text("log.txt"), Not(HasSubstr(" : SynchBandwidth : ")));
}

TEST_F(LinkedCameras, LiveEndsEachOthersSnaps) {
  const std::vector<json> lines = DocumentLines(WithTwo("live", {"--link", "--seconds", "1"}));

  EXPECT_EQ(lines.back()["event"], "total");
  EXPECT_EQ(lines.back()["camera"], kColour);
  EXPECT_GE(lines.back()["failuresByCode"].value(std::to_string(BError::eAborted), 0), 1) << lines.back();
}

TEST_F(LinkedCameras, OneThatIsOpenAloneHasNoPartner) {
  const ProcessResult result = Kelcam({"snap", "--camera", "2", "--camera", "77", "--link", "-o", In("%c.png")});

  EXPECT_THAT(result.err, HasSubstr("notice: --link: fewer than two cameras are open, so there are no partners\n"));
  EXPECT_TRUE(Has(std::string(kColour) + ".png"));
  EXPECT_EQ(result.exit_code, kFailed);
}

class HostileCameras : public SimulatedKelcamTest {
 protected:
  void Named(const std::string& first, const std::string& second) {
    const auto camera = [](const std::string& id, const std::string& name) {
      return json{{"id", id}, {"serial", "1"}, {"name", name}, {"sensor", {{"width", 64}, {"height", 48}}}};
    };
    Simulate({{"cameras", {camera("DEV_1", first), camera("DEV_2", second)}}, {"timing", "instant"}});
  }
  ProcessResult Snap() const { return Kelcam({"snap", "--camera", "DEV_1", "--camera", "DEV_2", "-o", In("%c.png")}); }
  Lines Pictures() const {
    Lines names = Files();
    std::erase_if(names, [](const std::string& name) { return !name.ends_with(".png"); });
    return names;
  }
};

TEST_F(HostileCameras, AnIdentifierIsAPartOfAFileNameWhateverItHolds) {
  Named("../../x/\\%d%c:", "-\x1b[2J\n\u65e5*?");

  const ProcessResult result = Snap();

  EXPECT_EQ(result.exit_code, kDone) << result.err;
  EXPECT_EQ(Pictures(), (Lines{"Vimba_-__2J_______1.png", "Vimba_______x___d_c__1.png"}));
  EXPECT_THAT(result.err, AllOf(Not(HasSubstr("\x1b")), HasSubstr("\nVimba_-?[2J?\u65e5*?_1  ")));
}

TEST_F(HostileCameras, ThatWouldWriteToOneFileAreRefused) {
  for (const auto& [first, second] : {std::pair("a/b", "a:b"), std::pair("left", "LEFT")}) {
    Named(first, second);

    const ProcessResult result = Snap();

    EXPECT_THAT(result.err,
                HasSubstr(": Vimba_" + std::string(first) + "_1 and Vimba_" + second + "_1 would write to one file\n"));
    EXPECT_EQ(Pictures(), Lines{});
    EXPECT_EQ(result.exit_code, kWrongUsage);
  }
}

TEST_F(HostileCameras, AnIdentifierIsCutWhereAFileNameHasNoRoom) {
  Named(std::string(60, 'a') + std::string(400, 'x'), "b");

  const ProcessResult result = Snap();

  EXPECT_EQ(result.exit_code, kDone) << result.err;
  EXPECT_EQ(Pictures().size(), 2u);
}

#ifndef _WIN32

// There are ten tries to open the second camera, and the first one is open.
TEST_F(SeveralSimulated, AnInterruptedSearchClosesTheCameraThatIsOpen) {
  SimulateWith(
      {{{"call", "VmbCameraOpen"}, {"camera", kColourId}, {"error", VmbErrorInvalidAccess}, {"count", kEveryTime}}});

  const ProcessResult result =
      InterruptedAt("InitByUid failed", WithTwo("snap", {"-v", "--camera", "3", "-o", In("%c.png")}));

  EXPECT_THAT(result.err, Not(HasSubstr(kOther)));
  EXPECT_THAT(result.err, HasSubstr(std::string(kMono) + "  0 of 1 "));
  EXPECT_EQ(result.exit_code, kInterrupted);
}

#endif

}  // namespace
