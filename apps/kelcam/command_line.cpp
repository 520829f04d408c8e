// command_line.cpp
// What the command line asks for.
#include "command_line.h"

#include <algorithm>
#include <limits>
#include <map>
#include <sstream>

#include "CLI/CLI.hpp"
#include "failure.h"
#include "picture.h"
#include "platform.h"

namespace kelcam {

static constexpr int kMaxImages = 1000000;

// What may stand for a value, in the order of the help text.
template <class Value>
using Choices = std::vector<std::pair<std::string, Value>>;

static const std::map<std::string, Command> kCommands = {
    {"list", Command::eList}, {"info", Command::eInfo}, {"snap", Command::eSnap}, {"live", Command::eLive}};
static const Choices<BBaseAoi::Kind> kKinds = {{"mono", BBaseAoi::eMono8}, {"rgb", BBaseAoi::eRgb}};
static const Choices<bool> kSwitch = {{"on", true}, {"off", false}};
static const Choices<SnapMode> kModes = {{"single", SnapMode::eSingle}, {"continuous", SnapMode::eContinuous}};
static const Choices<TriggerChoice> kTriggers = {
    {"software", TriggerChoice::eSoftware}, {"line", TriggerChoice::eLine}, {"free", TriggerChoice::eFree}};

static constexpr const char* kDescription =
    "kelcam drives a camera through a camera driver module, from the command line.\n";

static constexpr const char* kFooter = R"(Examples:
  kelcam list
  kelcam info --profile colour.ini
  kelcam snap --profile colour.ini -o picture.png
  kelcam snap --profile colour.ini --set exposure=12.5ms --set gain=2x -o bright.png
  kelcam snap --profile mono.ini -n 10 --mode continuous -o "run/%d.pgm"
  kelcam --log messages.txt live --profile mono.ini --seconds 10
"kelcam snap --help" has the options of snap, and so on.

A profile is an ini file that tells which camera to open and how. The smallest one is
  API = Vimba
  Init.Method = Serial
  Serial.Number = 50-0536953957
with the serial number that ends the camera's line in "kelcam list". The driver writes
back to it what it learns, so keep one profile per camera. Commented examples lie in
apps/kelcam/profiles of the sources; docs/profile.md has every key.

Results go to standard output, notices and errors to standard error.
Exit code: 0 done, 1 the camera or an image failed, 2 wrong usage, 130 stopped by Ctrl-C
(the camera is closed properly; a second Ctrl-C ends the program at once).)";

static constexpr const char* kCommandFooter =
    "\"kelcam --help\" has the global options, examples and what a profile is.";

template <class Value, class Target>
static void AddChoice(CLI::App& app, const std::string& name, Target& target, const Choices<Value>& choices,
                      const std::string& description) {
  std::string names;
  for (const auto& choice : choices) names += (names.empty() ? "" : "|") + choice.first;
  const auto take = [&target, &choices](const std::string& text) {
    target =
        std::find_if(choices.begin(), choices.end(), [&](const auto& choice) { return choice.first == text; })->second;
  };
  app.add_option_function<std::string>(name, take, description)->check(CLI::IsMember(choices))->option_text(names);
}

static void AddGlobalOptions(CLI::App& app, Options& options) {
  app.set_help_flag("-h,--help", "print this text, or that of a command");
  app.set_version_flag("--version", std::string("kelcam ") + KELCAM_VERSION, "print the program's version");
  app.add_option("--module", options.module_file,
                 std::string("the camera driver module\n(default: ") + kModuleFileName + " beside this program)")
      ->option_text("FILE");
  app.add_option("--log", options.log_file, "write every message of the driver to this file")->option_text("FILE");
  app.add_flag("--json", options.json, "print the result as one JSON document");
  app.add_flag("-v,--verbose", options.verbose, "show every message of the driver on standard error");
}

static void AddProfileOption(CLI::App& command, Options& options) {
  command
      .add_option("--profile", options.profile_file,
                  "the ini file that names the camera (required);\nthe driver writes back to it")
      ->required()
      ->option_text("FILE");
}

static void AddSnapOptions(CLI::App& command, Options& options, std::vector<std::string>& settings) {
  AddChoice(
      command, "--kind", options.kind, kKinds,
      "kind of picture (default: rgb for a colour camera, but mono for\na .pgm file; mono for a monochrome camera)");
  AddChoice(command, "--color", options.color, kSwitch,
            "switch the camera's colour mode first; without it the camera\n"
            "stays in the mode in which the driver opens it");
  command
      .add_option(
          "--set", settings,
          "set a control: gain, exposure, wbred or wbblue. A plain number is\nin the control's integer unit (see "
          "kelcam info), one with a unit\nin that: exposure=12.5ms, gain=4x. May be given several times")
      ->allow_extra_args(false)
      ->option_text("CONTROL=VALUE");
  AddChoice(command, "--trigger", options.trigger, kTriggers,
            "what starts an image: the program, the camera's input line, or\nthe camera itself (default: software for "
            "single images, else free)");
  command
      .add_option(
          "--area", options.area_text,
          "text of the image area, by which a host chooses the conversion:\n[l] fast, [p] precise (live: [l] by "
          "default)")
      ->option_text("TEXT");
  command.add_option("--timeout", options.timeout_ms, "how long to wait for an image (default: 5000)")
      ->check(CLI::Range(std::uint32_t{0}, std::numeric_limits<std::uint32_t>::max()))
      ->option_text("MS");
}

static void AddSnapCommand(CLI::App& app, Options& options, std::vector<std::string>& settings) {
  CLI::App* snap = app.add_subcommand("snap", "take images and write them as PNG, PGM or PPM files");
  AddProfileOption(*snap, options);
  snap->add_option(
          "-o", options.pattern,
          "the file to write (required); its ending is the format, and %d in\nit becomes the image's number, from 1")
      ->required()
      ->option_text("PATTERN");
  snap->add_option("-n", options.images, "how many images (default: 1)")
      ->check(CLI::Range(1, kMaxImages))
      ->option_text("N");
  AddChoice(*snap, "--mode", options.mode, kModes,
            "start the camera for each image (single, the default), or once\nfor all of them");
  AddSnapOptions(*snap, options, settings);
}

static void AddLiveCommand(CLI::App& app, Options& options, std::vector<std::string>& settings) {
  CLI::App* live = app.add_subcommand("live", "run the camera and tell its rate, failures and bandwidth");
  AddProfileOption(*live, options);
  live->add_option("--seconds", options.seconds, "for how long (default: until Ctrl-C)")
      ->check(CLI::PositiveNumber)
      ->option_text("S");
  AddSnapOptions(*live, options, settings);
}

static void AddCommands(CLI::App& app, Options& options, std::vector<std::string>& settings) {
  app.require_subcommand(1);
  app.add_subcommand("list", "print the identifiers of the attached cameras, one a line");
  AddProfileOption(*app.add_subcommand("info", "print what a camera reports: size, controls, trigger, rates"), options);
  AddSnapCommand(app, options, settings);
  AddLiveCommand(app, options, settings);
}

static void CheckTogether(Options& options) {
  if (options.command != Command::eSnap) return;
  const FilePattern pattern(options.pattern, options.images);
  if (pattern.Format() != PictureFormat::ePgm) return;
  if (options.kind == BBaseAoi::eRgb) {
    throw UsageError("-o " + options.pattern +
                     ": a .pgm file does not take the colour picture that --kind rgb asks for");
  }
  options.kind = BBaseAoi::eMono8;
}

std::variant<Options, std::string> ParseCommandLine(std::vector<std::string> arguments) {
  Options options;
  std::vector<std::string> settings;
  CLI::App app(kDescription, "kelcam");
  app.footer(kCommandFooter);
  app.fallthrough();
  app.get_formatter()->column_width(32);
  app.allow_windows_style_options(false);  // "/home/..." is a file on every system
  AddGlobalOptions(app, options);
  AddCommands(app, options, settings);
  app.footer(kFooter);  // the commands have taken over the one before
  try {
    std::reverse(arguments.begin(), arguments.end());
    app.parse(arguments);
  } catch (const CLI::Success& asked) {
    std::ostringstream text;
    app.exit(asked, text, text);
    return text.str();
  } catch (const CLI::ParseError& error) {
    throw UsageError(error.what());
  }
  options.command = kCommands.at(app.get_subcommands().front()->get_name());
  for (const std::string& setting : settings) options.settings.push_back(ParseControlSetting(setting));
  CheckTogether(options);
  return options;
}

}  // namespace kelcam
