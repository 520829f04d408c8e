// command_line_test.cpp
// What the command line accepts, explains and refuses.
#include "kelcam_test.h"

namespace {

using testing::HasSubstr;

class CommandLine : public ScriptedKelcamTest {
 protected:
  // Usage errors name what is wrong on standard error, print nothing else, and end with 2.
  void ExpectUsageError(const Arguments& arguments, const std::string& reason) const {
    const ProcessResult result = Kelcam(arguments);
    EXPECT_EQ(result.err, "kelcam: " + reason + "\n(see kelcam --help)\n");
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.exit_code, kWrongUsage);
  }
};

TEST_F(CommandLine, HelpNamesCommandsExamplesAndExitCodes) {
  const ProcessResult help = Kelcam({"--help"});

  for (const char* part : {"list ", "info ", "snap ", "live ", "--module FILE", "--log FILE", "--json", "--version",
                           "-q,--quiet", "kelcam snap --profile", "Init.Method = Serial", "0 done", "1 the camera",
                           "2 wrong usage", "130 stopped by Ctrl-C"}) {
    EXPECT_THAT(help.out, HasSubstr(part));
  }
  EXPECT_EQ(help.err, "");
  EXPECT_EQ(help.exit_code, kDone);
}

TEST_F(CommandLine, HelpOfSnapNamesEveryOption) {
  const ProcessResult help = Kelcam({"snap", "--help"});

  for (const char* option : {"--profile FILE", "-n N", "--timeout MS", "--kind mono|rgb", "--color on|off",
                             "--area TEXT", "--mode single|continuous", "--set CONTROL=VALUE",
                             "--trigger software|line|free", "-o PATTERN", "--format png|pgm|ppm|tif", "--raw",
                             "--no-clobber", "--interval S", "--retry N", "--keep-going", "--fail-fast"}) {
    EXPECT_THAT(help.out, HasSubstr(option));
  }
  EXPECT_EQ(help.exit_code, kDone);
}

TEST_F(CommandLine, VersionIsOneLineOverAModuleThatNeedsNoLibrary) {
  const ProcessResult version = Kelcam({"--version", "--module", With("list")[1]});

  EXPECT_EQ(version.out, "kelcam " KEL_VERSION "\n");
  EXPECT_EQ(version.exit_code, kDone);
}

TEST_F(CommandLine, AMissingOrUnknownCommandIsRefused) {
  ExpectUsageError({}, "A subcommand is required");
  ExpectUsageError({"shoot"}, "there is no command shoot");
}

TEST_F(CommandLine, MissingRequiredOptionsAreNamed) {
  ExpectUsageError({"info"}, "--profile or --camera is required");
  ExpectUsageError({"live"}, "--profile or --camera is required");
  ExpectUsageError({"snap", "--profile", m_profile}, "-o is required");
  ExpectUsageError({"info", "--camera"}, "--camera: 1 required TEXT missing");
}

TEST_F(CommandLine, ACameraIsNamedOnce) {
  const std::string again = ": a camera can be named only once";
  std::filesystem::create_directory(PathOf("folder"));

  ExpectUsageError({"info", "--camera", "1", "--camera", "2", "--camera", "1"}, "--camera 1" + again);
  ExpectUsageError(With("info", {"--profile", m_profile}), "--profile " + m_profile + again);
  const std::string other_name = In("folder/../camera.ini");
  ExpectUsageError(With("info", {"--profile", other_name}),
                   "--profile " + other_name + " is --profile " + m_profile + again);
}

TEST_F(CommandLine, ALinkNeedsTwoCameras) {
  ExpectUsageError(With("live", {"--link"}), "--link: one camera has no partner; name another");
}

TEST_F(CommandLine, PicturesOfSeveralCamerasNeedNamesOfTheirOwn) {
  const Arguments cameras{"snap", "--camera", "1", "--camera", "2", "-o"};
  const auto to = [&](const std::string& pattern) {
    Arguments arguments = cameras;
    arguments.push_back(pattern);
    return arguments;
  };

  ExpectUsageError(to("x%t.png"), "-o x%t.png: the pictures of several cameras need a %c in the name for the camera");
  ExpectUsageError(to("-"), "-o -: the pictures of several cameras need files, with a %c in the name");
}

TEST_F(CommandLine, TheLogIsNoneOfTheProfiles) {
  const std::string other = Write("other.ini", "API = Vimba\n");
  m_log = other;

  ExpectUsageError(With("info", {"--profile", other}), "--log " + other + ": this file is the profile");
}

TEST_F(CommandLine, ValuesOutsideAChoiceAreNamed) {
  const std::pair<const char*, const char*> wrong[] = {
      {"--kind", "grey"}, {"--color", "maybe"}, {"--mode", "double"}, {"--trigger", "hand"},
      {"-n", "0"},        {"-n", "many"},       {"--timeout", "-1"},  {"--retries", "0"}};
  for (const auto& [option, value] : wrong) {
    const ProcessResult result = Snap({"-o", In("x.png"), option, value});

    EXPECT_THAT(result.err, HasSubstr(option));
    EXPECT_THAT(result.err, HasSubstr(value));
    EXPECT_EQ(result.exit_code, kWrongUsage) << option;
  }
}

TEST_F(CommandLine, SecondsMustBePositive) {
  for (const std::string seconds : {"0", "-3", "inf", "-inf", "infinity", "nan", "-nan", "1e999", "1s", "soon"}) {
    ExpectUsageError(With("live", {"--seconds", seconds}), "--seconds: " + seconds + " is not a positive number");
  }
}

TEST_F(CommandLine, TheWaitForACameraMustBePositive) {
  ExpectUsageError(With("list", {"--wait", "0"}), "--wait: 0 is not a positive number");
}

TEST_F(CommandLine, SettingsThatAreNoneAreNamed) {
  const auto reason = [&](const std::string& setting) { return Snap({"-o", In("x.png"), "--set", setting}).err; };
  const std::string end = "\n(see kelcam --help)\n";

  EXPECT_EQ(reason("gain"), "kelcam: --set gain: not of the form CONTROL=VALUE" + end);
  EXPECT_EQ(reason("hue=1"),
            "kelcam: --set hue=1: unknown control \"hue\", not one of gain, exposure, wbred, wbblue" + end);
  EXPECT_EQ(reason("gain=loud"), "kelcam: --set gain=loud: \"loud\" does not begin with a number" + end);
  EXPECT_EQ(reason("gain="), "kelcam: --set gain=: \"\" does not begin with a number" + end);
  EXPECT_EQ(reason("gain=1.5"),
            "kelcam: --set gain=1.5: a number without a unit must be whole; write 1.5x (steps of 1 dB)" + end);
  EXPECT_EQ(reason("gain=inf"), "kelcam: --set gain=inf: \"inf\" does not begin with a number" + end);
}

TEST_F(CommandLine, SeveralImagesNeedANumberInTheirName) {
  ExpectUsageError(With("snap", {"-n", "2", "-o", "x.png"}),
                   "-o x.png: 2 pictures need a %d in the name for their numbers");
}

TEST_F(CommandLine, AnEndingThatIsNoPictureFormatIsNamed) {
  ExpectUsageError(With("snap", {"-o", "x.jpg"}), "-o x.jpg: not a .png, .pgm, .ppm or .tif file");
  ExpectUsageError(With("snap", {"-o", "png"}), "-o png: not a .png, .pgm, .ppm or .tif file");
}

TEST_F(CommandLine, AColourPictureInAGreyFormatIsRefused) {
  ExpectUsageError(With("snap", {"-o", "x.pgm", "--kind", "rgb"}),
                   "-o x.pgm: a .pgm file cannot hold the colour picture that --kind rgb asks for");
}

TEST_F(CommandLine, RawIsRefusedTogetherWithAConversion) {
  ExpectUsageError(With("snap", {"-o", "x.pgm", "--raw", "--kind", "mono"}),
                   "--raw and --kind: a raw picture is as the camera's frame is");
  ExpectUsageError(With("snap", {"-o", "x.pgm", "--raw", "--area", "[p]"}),
                   "--raw and --area: a raw picture is not converted");
  ExpectUsageError(With("snap", {"-o", "x.ppm", "--raw"}), "--raw: a .ppm file is for colours, a raw picture is grey");
}

TEST_F(CommandLine, AnIntervalIsRefusedWhereTheCameraSetsTheTime) {
  const std::string reason = "--interval: a continuous run needs --trigger software for it";
  ExpectUsageError(With("snap", {"-o", "x.pgm", "--interval", "1", "--mode", "continuous"}), reason);
  ExpectUsageError(With("snap", {"-o", "x.pgm", "--interval", "1", "--mode", "continuous", "--trigger", "line"}),
                   reason);
}

TEST_F(CommandLine, IntervalsThatAreNoneAreNamed) {
  for (const std::string seconds : {"0", "-3", "nan", "1s"}) {
    ExpectUsageError(With("snap", {"-o", "x.pgm", "--interval", seconds}),
                     "--interval: " + seconds + " is not a positive number");
  }
  EXPECT_EQ(Snap({"-o", "x.pgm", "--interval", "1e300"}).exit_code, kWrongUsage);
}

TEST_F(CommandLine, OptionsThatContradictEachOtherAreRefused) {
  ExpectUsageError(With("snap", {"-o", "x.pgm", "--keep-going", "--fail-fast"}),
                   "--keep-going and --fail-fast: a failure ends the run or it does not");
  ExpectUsageError(With("live", {"-q", "-v"}), "-q and -v: messages of the driver are printed or they are not");
}

TEST_F(CommandLine, GlobalOptionsMayFollowTheCommand) {
  const ProcessResult result = Kelcam(With("list", {"--json"}));

  EXPECT_EQ(nlohmann::json::parse(result.out)["cameras"].size(), 2u);
  EXPECT_EQ(result.exit_code, kDone);
}

}  // namespace
