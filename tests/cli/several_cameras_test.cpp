// several_cameras_test.cpp
// Several cameras in one command: what kelcam makes of a module's devices.
#include <algorithm>
#include <regex>
#include <sstream>

#include "berror.h"
#include "kelcam_test.h"
#include "picture_file.h"

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

using nlohmann::json;

// GoogleTest's own regular expressions are simpler on Windows.
MATCHER_P(AreLines, pattern, "") { return std::regex_match(arg, std::regex(pattern)); }
MATCHER_P(HasLines, pattern, "") { return std::regex_search(arg, std::regex(pattern)); }

class SeveralCameras : public ScriptedKelcamTest {
 protected:
  SeveralCameras() {
    for (const char* number : {"1", "2", "3"}) m_profiles.push_back(ProfileOf(number));
    m_profile = m_profiles[0];
  }

  std::string ProfileOf(const std::string& number) const {
    return Write(number + ".ini", "API = Vimba\nMAXSHUTTERFORFAST = " + number + "\n");
  }

  // With the first two cameras.
  Arguments WithTwo(const std::string& command, const Arguments& more = {}) const {
    Arguments all{"--profile", m_profiles[1]};
    all.insert(all.end(), more.begin(), more.end());
    return With(command, all);
  }

  // What one device was asked for.
  Lines OperationsOf(const std::string& number) const {
    Lines lines;
    for (const std::string& line : Operations()) {
      if (line.starts_with(number + ": ")) lines.push_back(line.substr(number.size() + 2));
    }
    return lines;
  }

  // The lines of the log that begin with one of these.
  Lines Logged(const Lines& beginnings) const {
    Lines lines;
    std::istringstream log(Text("log.txt"));
    for (std::string line; std::getline(log, line);) {
      const auto is_begin = [&](const std::string& begin) { return line.find(begin) != std::string::npos; };
      if (std::any_of(beginnings.begin(), beginnings.end(), is_begin)) lines.push_back(line);
    }
    return lines;
  }

  Lines m_profiles;
};

TEST_F(SeveralCameras, EachWritesItsOwnPictures) {
  const ProcessResult result = Kelcam(WithTwo("snap", {"-n", "2", "-o", In("%c-%d.pgm")}));

  EXPECT_EQ(result.exit_code, kDone) << result.err;
  for (const char* name :
       {"Vimba_Scripted_1-1.pgm", "Vimba_Scripted_1-2.pgm", "Vimba_Scripted_2-1.pgm", "Vimba_Scripted_2-2.pgm"}) {
    EXPECT_EQ(Decoded(Text(name)).width, 5) << name;
    EXPECT_THAT(result.out, HasSubstr(In(name) + ": 5 x 3, mono, "));
  }
}

TEST_F(SeveralCameras, SnapAtTheSameTime) {
  Script("together=3");

  const ProcessResult result = Kelcam(WithTwo("snap", {"--profile", m_profiles[2], "-o", In("%c.pgm")}));

  EXPECT_EQ(result.exit_code, kDone) << result.err;
}

TEST_F(SeveralCameras, RunLiveAtTheSameTime) {
  Script("together=2");

  EXPECT_EQ(Kelcam(WithTwo("live", {"--seconds", "0.5"})).exit_code, kDone);
}

TEST_F(SeveralCameras, EachIsAskedWhatOneAloneIsAsked) {
  Kelcam(WithTwo("snap", {"-o", In("%c.pgm"), "--color", "off"}));

  for (const char* number : {"1", "2"}) {
    EXPECT_THAT(OperationsOf(number),
                ElementsAre("SetColorMode(false)", "StartSnap(one shot)", "Snap(mono, '', 5000 ms)", "StopSnap"));
  }
}

TEST_F(SeveralCameras, AnErrorNamesItsCameraAndTheOthersGoOn) {
  Script(Codes("snap2", {BError::eTimeout}));

  const ProcessResult result = Kelcam(WithTwo("snap", {"-n", "3", "-o", In("%c-%d.pgm")}));

  EXPECT_THAT(result.err, StartsWith("error 12106: Vimba_Scripted_2: no image arrived in time (image 1)\n"));
  EXPECT_EQ(OperationsOf("1").size(), OperationsOf("2").size());
  EXPECT_TRUE(std::filesystem::exists(PathOf("Vimba_Scripted_1-3.pgm")));
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(SeveralCameras, ATableSumsUpEachCamera) {
  Script(Codes("snap2", {BError::eSuccess, BError::eTimeout, BError::eTimeout, BError::eFrameInvalid}));

  const ProcessResult result = Kelcam(WithTwo("snap", {"-n", "3", "--retry", "1", "-o", In("%c-%d.pgm")}));

  EXPECT_THAT(
      result.err,
      HasLines(
          "CAMERA            PICTURES  SNAPS  FAILURES                MB/S FIRST  MB/S LAST  MB/S MEAN  FRAMES/S\n"
          "Vimba_Scripted_1  3 of 3    3      0                       45.0        45.0       45.0       [0-9.]+\n"
          "Vimba_Scripted_2  1 of 3    5      4 .12106: 2, 12110: 2.  45.0        45.0       45.0       [0-9.]+\n"));
}

TEST_F(SeveralCameras, QuietLeavesTheTableOut) {
  const ProcessResult result = Kelcam(WithTwo("snap", {"-q", "-o", In("%c.pgm")}));

  EXPECT_EQ(result.out + result.err, "");
}

TEST_F(SeveralCameras, OneDocumentHoldsAllOfThem) {
  Script(Codes("snap2", {BError::eTimeout}));

  const json document = Document(WithTwo("snap", {"-o", In("%c.pgm")}));

  ASSERT_EQ(document["cameras"].size(), 2u);
  const json& good = document["cameras"][0];
  EXPECT_EQ(good["camera"], "Vimba_Scripted_1");
  EXPECT_EQ(good["images"][0]["file"], In("Vimba_Scripted_1.pgm"));
  EXPECT_EQ(good["summary"]["snaps"], 1);
  EXPECT_EQ(good["summary"]["streamBytesPerSecond"], (json{{"first", 45000000}, {"last", 45000000}, {"mean", 45e6}}));
  EXPECT_EQ(document["cameras"][1]["summary"]["failuresByCode"], (json{{"12106", 1}}));
}

TEST_F(SeveralCameras, AControlThatNoCameraHasIsWrongUsageOfEach) {
  Script("exposure=0");

  const ProcessResult result = Kelcam(WithTwo("snap", {"--set", "exposure=5", "-o", In("%c.pgm")}));

  EXPECT_THAT(result.err, AllOf(HasSubstr("error: Vimba_Scripted_1: "), HasSubstr("error: Vimba_Scripted_2: "),
                                HasSubstr("\nVimba_Scripted_1  -"), Not(HasSubstr("see kelcam --help"))));
  EXPECT_EQ(result.exit_code, kWrongUsage);
}

TEST_F(SeveralCameras, WrongUsageIsWorseThanAFailureAndThatThanNone) {
  Script("source=0,1 " + Codes("snap2", {BError::eTimeout}));

  const ProcessResult result = Kelcam(WithTwo("live", {"--seconds", "0.5"}));

  EXPECT_THAT(result.err, HasSubstr("error: Vimba_Scripted_1: the camera refused the free-running trigger\n"));
  EXPECT_THAT(result.out, StartsWith("Vimba_Scripted_2: 0 frames in "));
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(SeveralCameras, ThatOnlyDifferInWhatANameDoesNotTakeAreRefused) {
  const std::string again = ProfileOf("2 ");

  const ProcessResult result = Kelcam(WithTwo("snap", {"--profile", again, "-o", In("%c.pgm")}));

  EXPECT_EQ(result.err, "kelcam: -o " + In("%c.pgm") +
                            ": Vimba_Scripted_2 and Vimba_Scripted_2 would write to one file\n(see kelcam --help)\n");
  EXPECT_EQ(result.exit_code, kWrongUsage);
  EXPECT_THAT(Operations(), Not(testing::Contains(HasSubstr("Snap("))));
}

TEST_F(SeveralCameras, NamesThatRunTogetherAreRefused) {
  // Picture 11 of camera 1 and picture 1 of camera 11 would be 111.
  const Arguments cameras = With("snap", {"--profile", ProfileOf("11"), "-o", In("%s%d.pgm"), "-n"});
  const auto with = [&](const std::string& images) {
    Arguments arguments = cameras;
    arguments.push_back(images);
    return arguments;
  };

  EXPECT_EQ(Kelcam(with("10")).exit_code, kDone);
  EXPECT_EQ(Kelcam(with("11")).exit_code, kWrongUsage);
}

TEST_F(SeveralCameras, NoClobberLooksAtThePicturesOfEach) {
  Write("Vimba_Scripted_2.pgm", "mine");

  const ProcessResult result = Kelcam(WithTwo("snap", {"--no-clobber", "-o", In("%c.pgm")}));

  EXPECT_THAT(result.err, StartsWith("error: Vimba_Scripted_2: the picture " + In("Vimba_Scripted_2.pgm")));
  EXPECT_EQ(Text("Vimba_Scripted_2.pgm"), "mine");
  EXPECT_TRUE(std::filesystem::exists(PathOf("Vimba_Scripted_1.pgm")));
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(SeveralCameras, ALinkGoesBothWaysAndIsUndoneBeforeACameraIsClosed) {
  const ProcessResult result = Kelcam(WithTwo("snap", {"--profile", m_profiles[2], "--link", "-o", In("%c.pgm")}));

  EXPECT_EQ(result.exit_code, kDone) << result.err;
  Lines expected;
  for (const char* pair : {"12", "13", "21", "23", "31", "32"}) {
    expected.push_back(std::string(1, pair[0]) + ": AddBandwidthPartner(Vimba_Scripted_" + pair[1] + ")");
  }
  for (const char* pair : {"32", "31", "23", "21", "13", "12"}) {
    expected.push_back(std::string(1, pair[0]) + ": RemoveBandwidthPartner(Vimba_Scripted_" + pair[1] + ")");
  }
  expected.insert(expected.end(), 3, "Release");
  EXPECT_EQ(Logged({"BandwidthPartner", "Release"}), expected);
}

TEST_F(SeveralCameras, ALinkBeginsBeforeTheFirstImageAndEndsAfterTheLast) {
  Kelcam(WithTwo("live", {"--link", "--seconds", "0.5"}));

  const Lines operations = Logged({"BandwidthPartner", "StartSnap", "StopSnap"});
  EXPECT_THAT(First(operations, 2), testing::Each(HasSubstr("AddBandwidthPartner")));
  EXPECT_THAT(Last(operations, 2), testing::Each(HasSubstr("RemoveBandwidthPartner")));
}

TEST_F(SeveralCameras, WithoutALinkThereAreNoPartners) {
  Kelcam(WithTwo("snap", {"-o", In("%c.pgm")}));

  EXPECT_EQ(Logged({"BandwidthPartner"}), Lines{});
}

TEST_F(SeveralCameras, ADriverThatRefusesTheLinkEndsTheCommand) {
  Script("partner=1,0");

  const ProcessResult result = Kelcam(WithTwo("snap", {"--link", "-o", In("%c.pgm")}));

  EXPECT_EQ(result.err,
            "error: --link: the driver does not make Vimba_Scripted_1 a bandwidth partner of Vimba_Scripted_2\n");
  EXPECT_EQ(Logged({"RemoveBandwidthPartner"}), Lines{"1: RemoveBandwidthPartner(Vimba_Scripted_2)"});
  EXPECT_EQ(Logged({"Release"}), (Lines{"Release", "Release"}));
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(SeveralCameras, InfoPrintsOneAfterTheOther) {
  const ProcessResult result = Kelcam(WithTwo("info"));

  const std::string second = "\n\nname                  Vimba_Scripted_2\n";
  EXPECT_THAT(result.out, AllOf(StartsWith("name                  Vimba_Scripted_1\n"), HasSubstr(second)));
  EXPECT_EQ(result.exit_code, kDone);
}

TEST_F(SeveralCameras, InfoOfOneThatFailsLeavesTheOthers) {
  const std::string none = In("none.ini");
  m_profile = none;

  const ProcessResult result = Kelcam(WithTwo("info", {"--json"}));

  const json cameras = json::parse(result.out)["cameras"];
  EXPECT_EQ(cameras[0]["camera"], none);
  EXPECT_THAT(cameras[0]["error"]["text"], HasSubstr("none.ini"));
  EXPECT_EQ(cameras[1]["name"], "Vimba_Scripted_2");
  EXPECT_EQ(result.exit_code, kFailed);
}

TEST_F(SeveralCameras, LiveHasALineASecondOfEachAndATotal) {
  const ProcessResult result = Kelcam(WithTwo("live", {"--seconds", "1.5"}));

  EXPECT_THAT(result.out, AreLines("1 s: Vimba_Scripted_1: [0-9]+ frames, .*\n"
                                   "1 s: Vimba_Scripted_2: [0-9]+ frames, .*\n"
                                   "([0-9]+ s: .*\n)*"
                                   "Vimba_Scripted_1: [0-9]+ frames in .*\n"
                                   "Vimba_Scripted_2: [0-9]+ frames in .*\n"));
  EXPECT_EQ(result.exit_code, kDone) << result.err;
}

TEST_F(SeveralCameras, LiveHasADocumentASecondOfEachAndATotal) {
  Script(Codes("snap1", {BError::eTimeout, BError::eSuccess}));

  const std::vector<json> lines = DocumentLines(WithTwo("live", {"--seconds", "1.5"}));

  ASSERT_EQ(lines.size(), 4u);
  for (std::size_t i = 0; i < lines.size(); ++i) {
    EXPECT_EQ(lines[i]["event"], i < 2 ? "second" : "total");
    EXPECT_EQ(lines[i]["camera"], i % 2 ? "Vimba_Scripted_2" : "Vimba_Scripted_1");
    EXPECT_EQ(lines[i]["failures"], i % 2 ? 0 : 1);
  }
}

TEST_F(SeveralCameras, LiveCountsTheFrameIdsOfEachAlone) {
  Script("frame_id1=1,3,4,4 frame_id2=1,2,3,7,7");

  const std::vector<json> lines = DocumentLines(WithTwo("live", {"--seconds", "1.5"}));

  ASSERT_EQ(lines.size(), 4u);
  EXPECT_EQ(lines[2]["missingFrameIds"], 1);
  EXPECT_EQ(lines[3]["missingFrameIds"], 3);
}

#ifndef _WIN32

TEST_F(SeveralCameras, CtrlCEndsALiveRunOfAllAndClosesThem) {
  const ProcessResult result = InterruptedAt("2: Snap(mono, '[l]', 5000 ms)", WithTwo("live", {"-v", "--link"}));

  for (const char* number : {"1", "2"}) {
    const Lines operations = OperationsOf(number);
    EXPECT_EQ(Last(operations, 2)[0], "StopSnap") << number;
  }
  EXPECT_THAT(result.out, AllOf(HasSubstr("Vimba_Scripted_1: "), HasSubstr("\nVimba_Scripted_2: ")));
  EXPECT_EQ(Logged({"Release"}), (Lines{"Release", "Release"}));
  EXPECT_EQ(result.exit_code, kInterrupted);
}

TEST_F(SeveralCameras, CtrlCEndsALongSnapOfAllWithItsTable) {
  const ProcessResult result =
      InterruptedAt("2: Snap(mono, '', 5000 ms)",
                    WithTwo("snap", {"-v", "-n", "1000000", "--mode", "continuous", "-o", In("%c-%d.pgm")}));

  EXPECT_THAT(result.err, AllOf(HasSubstr("\nVimba_Scripted_1  "), HasSubstr(" of 1000000 ")));
  EXPECT_EQ(Logged({"Release"}), (Lines{"Release", "Release"}));
  EXPECT_EQ(result.exit_code, kInterrupted);
}

class SeveralOnATerminal : public SeveralCameras {
 protected:
  std::string On(const Arguments& arguments) const {
    return StartProgram("/usr/bin/script", {"-qec", ShellLine(arguments, ">/dev/null"), "/dev/null"}).Wait().out;
  }
};

TEST_F(SeveralOnATerminal, LiveHasALineForEachWhichChangesInItsPlace) {
  const std::string out = On(WithTwo("live", {"--seconds", "0.8"}));

  // Both lines, then each wiped from the last one up, then both again.
  EXPECT_THAT(out, HasLines("Vimba_Scripted_1: [0-9]+ frames in [^\n]*\n"
                            "Vimba_Scripted_2: [0-9]+ frames in [^\n]*\r +\r\x1b\\[A\r +\r"
                            "Vimba_Scripted_1: [0-9]+ frames in "));
}

TEST_F(SeveralOnATerminal, SnapHasALineForEach) {
  EXPECT_THAT(On(WithTwo("snap", {"-n", "2", "-o", In("%c-%d.pgm")})),
              AllOf(HasSubstr("Vimba_Scripted_1: image 2 of 2"), HasSubstr("Vimba_Scripted_2: image 2 of 2")));
}

#endif

}  // namespace
