// live_lines_test.cpp
// What kelcam live prints: a line a second, the total, and a line that changes on a terminal.
#include <algorithm>
#include <map>
#include <regex>
#include <sstream>

#include "VimbaC.h"
#include "berror.h"
#include "simulated_kelcam_test.h"

namespace {

using testing::AllOf;
using testing::Each;
using testing::HasSubstr;
using testing::SizeIs;

using nlohmann::json;

constexpr const char* kTwoKindsOfFailures = "snap=12106,12106,12109,0";
// 3 and 2 are missing; the lower id in between begins a new count, and an id that comes again is none.
constexpr const char* kIdsWithGaps = " frame_id=4,5,9,10,3,4,7,7";
constexpr int kMissing = 5;

std::vector<std::string> LinesIn(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

class LiveLines : public ScriptedKelcamTest {
 protected:
  LiveLines() { Script(std::string(kTwoKindsOfFailures) + kIdsWithGaps); }
};

TEST_F(LiveLines, TheTotalHasFailuresByCodeAndMissingFrameIds) {
  const ProcessResult result = Kelcam(With("live", {"--seconds", "1", "-q"}));

  EXPECT_TRUE(std::regex_match(
      result.out, std::regex("[0-9]+ frames in [0-9.]+ s, [0-9.]+ frames/s, 3 failures \\(12106: 2, 12109: 1\\), "
                             "5 missing frame ids, stream rate 45\\.0 MB/s\n")))
      << result.out;
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(LiveLines, EverySecondHasALineInAPipe) {
  const std::vector<std::string> lines = LinesIn(Kelcam(With("live", {"--seconds", "2.5"})).out);

  ASSERT_GE(lines.size(), 2U);
  const std::regex second(
      "[0-9]+ s: [0-9]+ frames?, [0-9.]+ frames/s, [0-9]+ failures?( \\([0-9:, ]+\\))?(, [0-9]+ missing frame ids?)?, "
      "stream rate 45\\.0 MB/s");
  for (std::size_t i = 0; i + 1 < lines.size(); ++i) EXPECT_TRUE(std::regex_match(lines[i], second)) << lines[i];
  EXPECT_THAT(lines.back(), AllOf(HasSubstr(" frames in "), HasSubstr(" 3 failures "), HasSubstr(" 5 missing ")));
}

TEST_F(LiveLines, ADocumentOfASecondSaysWhatHappenedInItAndTheTotalWhatDidInAll) {
  const std::vector<json> lines = DocumentLines(With("live", {"--seconds", "2.5"}));

  ASSERT_GE(lines.size(), 2U);
  const json& total = lines.back();
  std::map<std::string, double> sums;
  for (auto line = lines.begin(); line != lines.end() - 1; ++line) {
    EXPECT_EQ((*line)["event"], "second");
    for (const char* name : {"frames", "failures", "seconds"}) sums[name] += (*line)[name].get<double>();
    for (const auto& [code, count] : (*line)["failuresByCode"].items()) sums[code] += count.get<double>();
    if (!(*line)["missingFrameIds"].is_null()) sums["missing"] += (*line)["missingFrameIds"].get<double>();
    EXPECT_NEAR((*line)["elapsedSeconds"].get<double>(), sums["seconds"], 1e-6);
  }
  EXPECT_EQ(total["event"], "total");
  EXPECT_EQ(total["failuresByCode"], (json{{"12106", 2}, {"12109", 1}}));
  EXPECT_EQ(total["missingFrameIds"], kMissing);
  // What came after the last whole second is in the total only. All failures are before it.
  EXPECT_LE(sums["frames"], total["frames"].get<double>());
  EXPECT_LE(sums["seconds"], total["seconds"].get<double>());
  EXPECT_EQ(sums["failures"], 3.0);
  EXPECT_EQ(sums["12106"], 2.0);
  EXPECT_EQ(sums["12109"], 1.0);
  EXPECT_EQ(sums["missing"], kMissing);
}

TEST_F(LiveLines, ASecondWithoutAnImageHasALineToo) {
  Script("snap=0 frame_id=1 snap_s=4");

  const std::vector<json> lines = DocumentLines(With("live", {"--seconds", "1"}));

  ASSERT_GE(lines.size(), 2U);
  EXPECT_EQ(lines[0]["frames"], 0);
  EXPECT_EQ(lines[0]["framesPerSecond"], 0.0);
  EXPECT_LT(lines[0]["elapsedSeconds"], 4.0);
  EXPECT_EQ(lines.back()["frames"], 1);
}

TEST_F(LiveLines, FrameIdsThatAreNotReportedAreNotKnown) {
  Script("snap=0");

  EXPECT_EQ(DocumentLines(With("live", {"--seconds", "0.5"})).back()["missingFrameIds"], nullptr);
}

TEST_F(LiveLines, QuietLeavesTheSecondsOut) {
  const std::vector<json> lines = DocumentLines(With("live", {"--seconds", "1.5", "-q"}));

  ASSERT_THAT(lines, SizeIs(1));
  EXPECT_EQ(lines[0]["event"], "total");
}

TEST_F(LiveLines, AnEarlyEndIsOneLine) {
  Script("open=null");

  const std::vector<json> lines = DocumentLines(With("live"));

  ASSERT_THAT(lines, SizeIs(1));
  EXPECT_EQ(lines[0]["event"], "error");
  EXPECT_EQ(lines[0]["error"]["code"], 0);
}

class LostFrames : public SimulatedKelcamTest {
 protected:
  LostFrames() {
    // Two frames do not come at all, and of the others some lack packets.
    Simulate({{"cameras", json::parse(R"([{"like": "DEV_000F31034C65", "sensor": {"width": 616, "height": 514},
                                           "packetLoss": 0.01}])")},
              {"faults", json::parse(R"([{"frame": 2, "drop": true}, {"frame": 4, "drop": true},
                                         {"frame": 5, "status": -1}])")}});
  }

  // What the driver's messages say, all of which are in the log.
  Lines Found(const std::string& pattern) const {
    const std::string log = Text("log.txt");
    const std::regex expression(pattern);
    Lines found;
    for (std::sregex_iterator match(log.begin(), log.end(), expression); match != std::sregex_iterator(); ++match) {
      found.push_back((*match)[1]);
    }
    return found;
  }

  int MissingIds() const {
    int missing = 0;
    const Lines ids = Found(" FrameID = ([0-9]+)");
    for (std::size_t i = 1; i < ids.size(); ++i) missing += std::stoi(ids[i]) - std::stoi(ids[i - 1]) - 1;
    return missing;
  }
};

// The trigger asks for one frame after the other, so that none is lost for want of a buffer.
TEST_F(LostFrames, AreCountedAsTheDriverReportsThem) {
  const std::vector<json> lines = DocumentLines({"--log", In("log.txt"), "live", "--profile", Profile("mono"),
                                                 "--trigger", "software", "--timeout", "1000", "--seconds", "5"});

  const json& total = lines.back();
  EXPECT_GE(MissingIds(), 2);
  EXPECT_EQ(total["missingFrameIds"], MissingIds());
  for (const char* code : {"12103", "12106"}) {
    const std::size_t count = Found(std::string("Frame error code = (") + code + ")").size();
    EXPECT_GE(count, 1U) << code;
    EXPECT_EQ(total["failuresByCode"][code], count) << code;
  }
  EXPECT_EQ(total["frames"], Found("Frame error code = (0)").size());
}

#ifndef _WIN32

class LiveOnATerminal : public LiveLines {
 protected:
  // What appears between returns on a terminal of this width.
  std::vector<std::string> ProgressOn(const std::string& columns) const {
    const std::string line =
        "stty cols " + columns + "; " + ShellLine(With("live", {"--seconds", "0.8"}), ">/dev/null");
    std::string out = StartProgram("/usr/bin/script", {"-qec", line, "/dev/null"}).Wait().out;
    std::replace(out.begin(), out.end(), '\r', '\n');
    std::vector<std::string> lines = LinesIn(out);
    lines.erase(std::remove_if(lines.begin(), lines.end(),
                               [](const std::string& text) { return text.find("frames in ") == std::string::npos; }),
                lines.end());
    return lines;
  }
};

TEST_F(LiveOnATerminal, TheLineIsCutToTheTerminal) {
  const std::vector<std::string> lines = ProgressOn("40");

  ASSERT_FALSE(lines.empty());
  EXPECT_THAT(lines, Each(SizeIs(39)));
}

TEST_F(LiveOnATerminal, AWideOneHasAllOfTheLine) {
  EXPECT_THAT(ProgressOn("200"), testing::Contains(HasSubstr("stream rate 45.0 MB/s")));
}

TEST_F(LiveOnATerminal, WithoutAWidthItIsCutToTheUsualOne) {
  const std::vector<std::string> lines = ProgressOn("0");

  ASSERT_FALSE(lines.empty());
  EXPECT_THAT(lines, Each(SizeIs(79)));
}

TEST_F(LiveOnATerminal, AReaderThatIsGoneEndsTheRun) {
  const ProcessResult result = InShell(With("live"), "| head -n 1");

  EXPECT_THAT(result.out, HasSubstr(" s: "));
  EXPECT_THAT(result.err, HasSubstr("error: the result could not be written to standard output\n"));
  EXPECT_TRUE(IsReleased());
}

#endif

}  // namespace
