// scenario_test.cpp
// Scenarios of simulated cameras, by name and by file.
#include "simulated_kelcam_test.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

class Scenarios : public SimulatedKelcamTest {
 protected:
  Lines Cameras(const std::string& option) const { return Document({option, "list"})["cameras"].get<Lines>(); }
  ProcessResult SnapIn(const std::string& scenario, const std::string& profile, const Arguments& more) const {
    Arguments arguments{"--simulated=" + scenario, "snap", "--profile", Profile(profile)};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return Kelcam(arguments);
  }
};

Lines NamesIn(const nlohmann::json& scenarios) {
  Lines names;
  for (const auto& scenario : scenarios) names.push_back(scenario["name"]);
  return names;
}

TEST_F(Scenarios, ThirteenAreListedWithWhatTheyAreFor) {
  const ProcessResult list = KelcamTest::Kelcam({"--simulated=list"});
  const auto scenarios = Document({"--simulated=list"})["scenarios"];

  EXPECT_THAT(NamesIn(scenarios),
              ElementsAre("background-traffic", "dead-cable", "hostile-texts", "in-use", "loose-plug", "lost-packets",
                          "many-cameras", "no-clock", "odd-bayer-order", "shared-link", "slow-camera",
                          "trigger-never-done", "unplugged"));
  for (const auto& scenario : scenarios) {
    const std::string description = scenario["description"];
    EXPECT_FALSE(description.empty()) << scenario;
    EXPECT_THAT(list.out, HasSubstr(description + "\n"));
  }
  EXPECT_EQ(list.exit_code, kDone);
}

TEST_F(Scenarios, EachOfThemListsItsCameras) {
  const std::map<std::string, std::size_t> cameras{
      {"background-traffic", 2}, {"dead-cable", 2},   {"hostile-texts", 5}, {"in-use", 3},
      {"loose-plug", 2},         {"lost-packets", 3}, {"many-cameras", 16}, {"no-clock", 1},
      {"odd-bayer-order", 3},    {"shared-link", 2},  {"slow-camera", 1},   {"trigger-never-done", 1},
      {"unplugged", 3}};
  for (const auto& [name, count] : cameras) EXPECT_EQ(Cameras("--simulated=" + name).size(), count) << name;
}

TEST_F(Scenarios, AFileIsAScenarioToo) {
  const std::string file = Write("mine.json", R"({"cameras": [{"id": "DEV_1", "serial": "one", "name": "Mine"}]})");

  EXPECT_THAT(Cameras("--simulated=" + file), ElementsAre("Vimba_Mine_one"));
}

TEST_F(Scenarios, ComeBeforeTheEnvironmentsConfiguration) {
  Simulate();

  EXPECT_EQ(Cameras("--simulated").size(), 3u);
  EXPECT_EQ(Cameras("--simulated=many-cameras").size(), 16u);
}

TEST_F(Scenarios, AnUnknownNameIsWrongUsageAndTheNearestIsNamed) {
  const ProcessResult result = KelcamTest::Kelcam({"--simulated=lost-pakets", "list"});

  EXPECT_EQ(result.err,
            "kelcam: --simulated=lost-pakets: there is no such scenario; did you mean lost-packets? (--simulated=list "
            "names all; a file ends in .json)\n(see kelcam --help)\n");
  EXPECT_EQ(result.exit_code, kWrongUsage);
}

TEST_F(Scenarios, AFileThatCannotBeUsedIsAnErrorWithItsReason) {
  const std::string wrong = Write("wrong.json", R"({"camras": []})");

  EXPECT_EQ(KelcamTest::Kelcam({"--simulated=" + wrong, "list"}).err,
            "error: the scenario " + wrong + " cannot be used: camras: there is no such member\n");
  EXPECT_THAT(KelcamTest::Kelcam({"--simulated=" + In("none.json"), "list"}).err,
              StartsWith("error: the scenario " + In("none.json") + " cannot be read: "));
}

TEST_F(Scenarios, ACameraInUseIsNotOpenedAndTheOthersAre) {
  const ProcessResult in_use = SnapIn("in-use", "mono", {"-o", In("x.pgm")});
  const ProcessResult free = SnapIn("in-use", "colour", {"-o", In("x.ppm"), "--timeout", "60000"});

  EXPECT_EQ(in_use.exit_code, kFailed);
  EXPECT_THAT(in_use.err, HasSubstr("InitBySerial failed"));
  EXPECT_EQ(free.exit_code, kDone) << free.err;
}

TEST_F(Scenarios, ACameraInUseIsNoAbsentOneByItsAddressToo) {
  const auto why = [&](const std::string& address) {
    return Kelcam({"--simulated=in-use", "info", "--camera", address}).err;
  };

  EXPECT_THAT(why("169.254.76.101"), HasSubstr("\nwhy: the camera at this address is attached and cannot be opened: "));
  EXPECT_THAT(why("169.254.76.201"), HasSubstr("\nwhy: no camera answers at this address; attached: "));
}

TEST_F(Scenarios, AnUnpluggedCameraSendsThreePictures) {
  const ProcessResult result = SnapIn("unplugged", "mono", {"-n", "4", "-o", In("%d.pgm"), "--timeout", "8000"});

  EXPECT_EQ(result.exit_code, kFailed);
  EXPECT_THAT(result.err, HasSubstr("3 of 4 images taken\n"));
}

TEST_F(Scenarios, WithoutAClockEveryPictureTimesOut) {
  const ProcessResult result = SnapIn("no-clock", "mono", {"-o", In("x.pgm"), "--timeout", "1000"});

  EXPECT_THAT(result.err, StartsWith("error 12106: no image arrived in time\n"));
  EXPECT_THAT(result.err, HasSubstr("\nwhy: the camera's clock could not be read"));
}

}  // namespace
