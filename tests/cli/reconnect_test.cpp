// reconnect_test.cpp
// Cameras that are lost and come back: kelcam --reconnect over the real module and simulated cameras.
#include <algorithm>
#include <regex>

#include "VimbaC.h"
#include "berror.h"
#include "picture_metadata.h"
#include "simulated_kelcam_test.h"

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

using nlohmann::json;

// GoogleTest's own expressions have no sets of characters on Windows.
MATCHER_P(HasLines, pattern, "") { return std::regex_search(arg, std::regex(pattern)); }

constexpr int kEveryTime = 0;
constexpr const char* kFirst = "Vimba_Manta-G-507B_A";
constexpr const char* kSecond = "Vimba_Manta-G-507B_B";
constexpr const char* kAddress = "10.0.0.1";
// How many images fail until a loss is noticed depends on what else the machine does.
constexpr const char* kLoss = "camera lost: it does not answer, and (1 image has|[2-9] images in a row have) failed";
constexpr const char* kTime = "[0-9-]+T[0-9:.]+[+-][0-9:]+";

// Two cameras with small sensors, A and B.
class Reconnect : public SimulatedKelcamTest {
 protected:
  static json Camera(const std::string& id, const std::string& serial) {
    return {{"id", id}, {"serial", serial}, {"sensor", {{"width", 64}, {"height", 48}}}, {"scene", "none"}};
  }
  void SimulateTwo(const json& faults, const json& cameras = {Camera("DEV_1", "A"), Camera("DEV_2", "B")}) {
    Simulate({{"cameras", cameras}, {"faults", faults}});
  }
  static json Unplugged(int frame, int back_after_ms) {
    return {{"unplugAtFrame", frame}, {"camera", "DEV_1"}, {"plugAfter_ms", back_after_ms}};
  }

  // The first camera, and what follows.
  Arguments WithFirst(const std::string& command, const Arguments& more) const {
    Arguments arguments{"--log", In("log.txt"), command, "--camera", "DEV_1", "--reconnect", "--timeout", "300"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return arguments;
  }
  Arguments WithBoth(const std::string& command, const Arguments& more) const {
    Arguments arguments = WithFirst(command, more);
    arguments.insert(arguments.end(), {"--camera", "DEV_2"});
    return arguments;
  }
  Arguments Series(int images, const Arguments& more = {}) const {
    Arguments arguments{"--keep-going", "-n", std::to_string(images), "-o", In("%s-%d.png")};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return arguments;
  }

  // The program's own lines in the log.
  Lines LogLines() const {
    const std::string head = "=== kelcam\n";
    const std::string log = Text("log.txt");
    Lines lines;
    for (std::size_t at = log.find(head); at != std::string::npos; at = log.find(head, at + 1)) {
      const std::size_t begin = at + head.size();
      lines.push_back(log.substr(begin, log.find('\n', begin) - begin));
    }
    return lines;
  }

  static std::vector<json> Events(const std::vector<json>& lines, const std::string& event) {
    std::vector<json> events;
    std::copy_if(lines.begin(), lines.end(), std::back_inserter(events),
                 [&](const json& line) { return line["event"] == event; });
    return events;
  }
};

TEST_F(Reconnect, LiveGoesOnWithACameraThatComesBack) {
  SimulateTwo(json::array({Unplugged(5, 400)}));

  const std::vector<json> lines = DocumentLines(WithFirst("live", {"--seconds", "3"}));

  const std::vector<json> lost = Events(lines, "lost");
  const std::vector<json> returned = Events(lines, "returned");
  ASSERT_EQ(lost.size(), 1u);
  ASSERT_EQ(returned.size(), 1u);
  EXPECT_EQ(lost[0]["camera"], kFirst);
  EXPECT_THAT(lost[0]["error"]["text"].get<std::string>(), HasLines(std::string(kLoss) + "$"));
  EXPECT_EQ(returned[0]["camera"], kFirst);
  EXPECT_LT(lost[0]["time"], returned[0]["time"]);
  const json& total = lines.back();
  EXPECT_EQ(total["losses"], 1);
  EXPECT_EQ(total["awaySeconds"].get<double>() > 0.0, true);
  EXPECT_NEAR(total["awaySeconds"].get<double>(), returned[0]["awaySeconds"].get<double>(), 0.2);
  EXPECT_GT(total["frames"], 10);
  EXPECT_FALSE(total.contains("error"));
}

TEST_F(Reconnect, EachLossAndReturnIsAPlainLineInTheLogAndOnStandardError) {
  SimulateTwo(json::array({Unplugged(5, 100)}));

  const ProcessResult result = Kelcam(WithFirst("live", {"--seconds", "2"}));

  const Lines lines = LogLines();
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_TRUE(std::regex_match(lines[0], std::regex(std::string(kTime) + ": " + kFirst + ": " + kLoss))) << lines[0];
  EXPECT_TRUE(std::regex_match(
      lines[1], std::regex(std::string(kTime) + ": " + kFirst + R"(: returned after \d\.\d s \(\d+ tr(y|ies)\))")))
      << lines[1];
  for (const std::string& line : lines) EXPECT_THAT(result.err, HasSubstr("notice: " + line + "\n"));
  EXPECT_THAT(result.out, HasLines("lost 1 time, away for [0-9.]+ s\n$"));
  EXPECT_EQ(result.exit_code, kFailed) << "an image has failed";
}

TEST_F(Reconnect, TheLinesOfLiveShowThatACameraIsAway) {
  SimulateTwo({{{"unplugAtFrame", 5}, {"camera", "DEV_1"}}});

  const ProcessResult result = Kelcam(WithFirst("live", {"--seconds", "2.5"}));

  EXPECT_THAT(result.out, HasLines("2 s: 0 frames, .*, away for [0-9.]+ s\n"));
  EXPECT_THAT(result.out, HasLines("lost 1 time, away for [12]\\.[0-9] s\n$"));
  EXPECT_THAT(result.err, HasLines(std::string("error: ") + kLoss + "\n$"));
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(Reconnect, ASeriesOfPicturesGoesOnAfterTheImageThatFailed) {
  SimulateTwo(json::array({Unplugged(3, 200)}));

  for (const char* mode : {"single", "continuous"}) {
    const json document = Document(WithFirst("snap", Series(8, {"--mode", mode})));

    EXPECT_EQ(document["taken"], 7) << document;
    EXPECT_EQ(document["images"].size(), 8u);
    ASSERT_EQ(document["events"].size(), 2u);
    EXPECT_EQ(document["events"][0]["event"], "lost");
    EXPECT_EQ(document["events"][1]["event"], "returned");
    EXPECT_FALSE(document.contains("error"));
  }
}

TEST_F(Reconnect, AnImageThatIsTriedAgainIsNotMissing) {
  SimulateTwo(json::array({Unplugged(3, 200)}));

  const ProcessResult result = Kelcam(WithFirst("snap", Series(8, {"--retry", "1"})));

  EXPECT_EQ(result.exit_code, kDone) << result.err;
  EXPECT_THAT(result.err, HasSubstr("notice: image 4 is tried again (1 of 1): "));
  EXPECT_EQ(LogLines().size(), 2u);
}

// A camera that gets power has its own values.
TEST_F(Reconnect, TheCameraIsSetUpAsBefore) {
  json camera = Camera("DEV_1", "A");
  camera["linePeriod_ms"] = 20;
  SimulateTwo(json::array({Unplugged(3, 200)}), json::array({camera}));

  const ProcessResult result = Kelcam(WithFirst(
      "snap", Series(8, {"--set", "exposure=7ms", "--set", "gain=99dB", "--trigger", "line", "--retry", "1"})));

  ASSERT_EQ(result.exit_code, kDone) << result.err;
  EXPECT_EQ(PngTexts(Text("A-1.png"))["Exposure"], PngTexts(Text("A-8.png"))["Exposure"]);
  EXPECT_EQ(PngTexts(Text("A-1.png"))["Gain"], PngTexts(Text("A-8.png"))["Gain"]);
  EXPECT_EQ(PngTexts(Text("A-8.png"))["Exposure"], "7 ms");
  const std::size_t notice = result.err.find("is outside the camera's range");
  EXPECT_EQ(result.err.find("is outside the camera's range", notice + 1), std::string::npos) << "once";
}

TEST_F(Reconnect, TheOthersGoOnWhileOneIsAway) {
  SimulateTwo(json::array({Unplugged(5, 1500)}));

  const std::vector<json> lines = DocumentLines(WithBoth("live", {"--link", "--seconds", "4"}));

  const json& other = lines.back();
  ASSERT_EQ(other["camera"], kSecond);
  EXPECT_EQ(other["losses"], 0);
  EXPECT_EQ(other["failures"], 0) << other;
  const json& first = lines[lines.size() - 2];
  EXPECT_EQ(first["losses"], 1);
  for (const json& second : Events(lines, "second")) {
    if (second["camera"] != kSecond) continue;
    EXPECT_GT(second["frames"], 10) << second;
  }
}

// The frames that are lost come after the return.
TEST_F(Reconnect, ACameraThatIsBackIsAPartnerAgain) {
  SimulateTwo({Unplugged(5, 100),
               {{"frame", 40}, {"camera", "DEV_1"}, {"count", 5}, {"status", VmbFrameStatusIncomplete}},
               {{"frame", 90}, {"camera", "DEV_2"}, {"count", 5}, {"status", VmbFrameStatusIncomplete}}});

  const std::vector<json> lines = DocumentLines(WithBoth("live", {"--link", "--seconds", "3"}));

  for (std::size_t camera : {lines.size() - 2, lines.size() - 1}) {
    EXPECT_GE(lines[camera]["failuresByCode"].value(std::to_string(BError::eAborted), 0), 1) << lines[camera];
  }
}

TEST_F(Reconnect, AnotherCameraInItsPlaceIsTakenAndNamed) {
  json first = Camera("DEV_1", "A");
  json second = Camera("DEV_2", "B");
  first["ip"] = kAddress;
  second.update({{"ip", kAddress}, {"plugged", false}});
  second["sensor"] = {{"width", 96}, {"height", 80}};
  SimulateTwo({{{"unplugAtFrame", 3}, {"camera", "DEV_1"}, {"plug", "DEV_2"}, {"plugAfter_ms", 200}}}, {first, second});
  const std::string profile = Write("ip.ini", std::string("API = Vimba\nInit.Method = IP\nIP = ") + kAddress + "\n");

  const json document = Document({"snap", "--profile", profile, "--reconnect", "--keep-going", "-n", "6", "--timeout",
                                  "300", "-o", In("%s-%d.png")});

  EXPECT_EQ(document["camera"], kFirst);
  EXPECT_EQ(document["taken"], 5) << document;
  EXPECT_EQ(document["events"][1]["returnedAs"], kSecond);
  EXPECT_EQ(document["images"][0]["file"], In("A-1.png"));
  EXPECT_EQ(document["images"][0]["width"], 64);
  EXPECT_EQ(document["images"][5]["file"], In("B-6.png"));
  EXPECT_EQ(document["images"][5]["width"], 96);
  EXPECT_EQ(PngTexts(Text("B-6.png"))["Serial Number"], "B");
}

TEST_F(Reconnect, ACameraThatIsThereAndRefusesIsReportedOnceAndTriedOn) {
  constexpr int kTriesOfTheDriver = 10;
  SimulateTwo({Unplugged(3, 0),
               {{"call", "VmbCameraOpen"},
                {"camera", "DEV_1"},
                {"occurrence", 3},
                {"count", 2 * kTriesOfTheDriver},
                {"error", VmbErrorInvalidAccess}}});

  const ProcessResult result = Kelcam(WithFirst("snap", Series(5)));

  const std::string notice = "notice: it is there, and does not open: error: the camera DEV_1 cannot be opened\n";
  const std::size_t at = result.err.find(notice);
  ASSERT_NE(at, std::string::npos) << result.err;
  EXPECT_EQ(result.err.find(notice, at + 1), std::string::npos);
  EXPECT_THAT(LogLines().back(), EndsWith(" s (3 tries)"));
  EXPECT_TRUE(std::filesystem::exists(PathOf("A-5.png")));
}

TEST_F(Reconnect, ACameraThatWasNeverThereIsAnErrorAtOnce) {
  json camera = Camera("DEV_1", "A");
  camera["plugged"] = false;
  SimulateTwo(json::array(), json::array({camera}));

  const ProcessResult result = Kelcam(WithFirst("live", {}));

  EXPECT_THAT(result.err, StartsWith("error: there is no camera DEV_1"));
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(Reconnect, ACameraThatAnswersIsNotLost) {
  SimulateTwo({{{"frame", 0}, {"camera", "DEV_1"}, {"count", kEveryTime}, {"status", VmbFrameStatusInvalid}}});

  const json total = DocumentLines(WithFirst("live", {"--seconds", "1"})).back();

  EXPECT_GT(total["failures"], 3);
  EXPECT_EQ(total["losses"], 0);
}

TEST_F(Reconnect, OfSnapNeedsKeepGoing) {
  const ProcessResult result = KelcamTest::Kelcam(WithFirst("snap", {"-o", In("x.png")}));

  EXPECT_THAT(result.err, StartsWith("kelcam: --reconnect: snap goes on after a loss with --keep-going alone"));
  EXPECT_EQ(result.exit_code, kWrongUsage);
}

#ifndef _WIN32

TEST_F(Reconnect, AnInterruptEndsTheWaitWithTheTotal) {
  SimulateTwo({{{"unplugAtFrame", 5}, {"camera", "DEV_1"}}});

  const ProcessResult result = InterruptedAt("camera lost", WithFirst("live", {}));

  EXPECT_THAT(result.out, HasLines("5 frames in .*lost 1 time, away for [0-9.]+ s\n$"));
  EXPECT_EQ(result.exit_code, kInterrupted);
}

// The driver's search takes two seconds.
TEST_F(Reconnect, AnInterruptWhileACameraRefusesEndsTheRunWithItsPictures) {
  SimulateTwo({Unplugged(3, 0),
               {{"call", "VmbCameraOpen"},
                {"camera", "DEV_1"},
                {"occurrence", 3},
                {"count", kEveryTime},
                {"error", VmbErrorInvalidAccess}}});

  const ProcessResult result = InterruptedAt("camera lost", WithFirst("snap", Series(5)));

  EXPECT_THAT(result.err, HasLines(std::string("error: ") + kLoss + "\n3 of 5 images taken\n$"));
  EXPECT_EQ(result.exit_code, kInterrupted);
}

#endif

// Instant cameras, pauses of a few milliseconds, and no record of calls in the library.
class ReconnectForLong : public Reconnect {
 protected:
#ifdef _WIN32
  // A life takes ten times as long under Wine.
  static constexpr std::size_t kSettled = 20;
  static constexpr std::size_t kCycles = 120;
#else
  // The C library's heap has grown to what the threads of hundreds of lives leave in pieces.
  static constexpr std::size_t kSettled = 200;
  static constexpr std::size_t kCycles = 300;
#endif
  static constexpr std::chrono::seconds kTimeout{120};
  // A leak of what a life has at least, its frames, would be nearly four in 120 lives.
  static constexpr std::size_t kMostGrowthBytes = std::size_t{2} << 20;
  // Under Wine.
  static constexpr std::size_t kThreadBytes = std::size_t{1} << 20;

  void SimulateCycles() {
    json fault = Unplugged(20, 1);
    fault.update({{"every", 60}, {"count", kEveryTime}});
    Simulate({{"cameras", {Camera("DEV_1", "A")}}, {"faults", {fault}}, {"timing", "instant"}, {"recordCalls", false}});
  }
};

TEST_F(ReconnectForLong, MemoryThreadsAndHandlesStayFlat) {
  SimulateCycles();
  Process live = Start({"--log", In("log.txt"), "-q", "live", "--camera", "DEV_1", "--reconnect", "--reconnect-pause",
                        "0.005", "--timeout", "100"});

  ASSERT_TRUE(live.WaitForErrors(": camera lost: ", kSettled, kTimeout));
  const ProcessUse before = live.Use();
  ASSERT_TRUE(live.WaitForErrors(": camera lost: ", kSettled + kCycles, kTimeout));
  const ProcessUse after = live.Use();
  live.Interrupt();
  const ProcessResult result = live.Wait(std::chrono::seconds(10));

  // Threads of the camera come and go.
  const std::size_t more_threads = after.threads - std::min(before.threads, after.threads);
  EXPECT_LE(after.resident_bytes, before.resident_bytes + kMostGrowthBytes + more_threads * kThreadBytes);
  EXPECT_LE(after.threads, before.threads + 6);
  EXPECT_LE(after.handles, before.handles + 6);
  const Lines lines = LogLines();
  ASSERT_GE(lines.size(), 2 * (kSettled + kCycles) - 1);
  for (std::size_t line = 0; line < lines.size(); ++line) {
    EXPECT_THAT(lines[line], HasSubstr(line % 2 == 0 ? ": camera lost: " : ": returned after ")) << line;
  }
#ifndef _WIN32
  EXPECT_EQ(result.exit_code, kInterrupted);
  const std::size_t losses = (lines.size() + 1) / 2;
  EXPECT_THAT(result.out, HasSubstr(", lost " + std::to_string(losses) + " times, away for "));
#endif
}

}  // namespace
