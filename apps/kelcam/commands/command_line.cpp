// command_line.cpp
// What the command line asks for.
#include "commands/command_line.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <map>
#include <sstream>

#include "CLI/CLI.hpp"
#include "base/failure.h"
#include "base/platform.h"
#include "base/report.h"
#include "commands/command_line_checks.h"
#include "commands/help_texts.h"
#include "commands/unknown_word.h"

namespace Kelcam {
namespace {

constexpr int kMaxImages = 1000000;
constexpr int kMaxRetries = 1000000;
constexpr std::chrono::duration<double> kMaxInterval = std::chrono::hours(366 * 24);
constexpr double kLongestCheckSeconds = 3600.0;
constexpr std::size_t kOptionColumnWidth = 32;
// What the parser calls the value of an option, in its own messages.
constexpr const char* kTextType = "TEXT";

// --simulated without a scenario, and the one that asks for their names.
constexpr const char* kNoScenario = "true";
constexpr const char* kListScenarios = "list";

// Thrown by an option that is a command of its own: it needs no other.
struct CommandByOption {
  Command command;
};

// What may stand for a value, in the order of the help text.
template <class Value>
using Choices = std::vector<std::pair<std::string, Value>>;

const std::map<std::string, Command> kCommands = {{"list", Command::kList}, {"info", Command::kInfo},
                                                  {"snap", Command::kSnap}, {"live", Command::kLive},
                                                  {"view", Command::kView}, {"check", Command::kCheck}};
const std::map<std::string, Command> kProfileCommands = {{"new", Command::kProfileNew},
                                                         {"check", Command::kProfileCheck}};
const Choices<BBaseAoi::Kind> kKinds = {{"mono", BBaseAoi::eMono8}, {"rgb", BBaseAoi::eRgb}};
const Choices<bool> kSwitch = {{"on", true}, {"off", false}};
const Choices<SnapMode> kModes = {{"single", SnapMode::kSingle}, {"continuous", SnapMode::kContinuous}};
const Choices<PictureFormat> kFormats = {{"png", PictureFormat::kPng},
                                         {"pgm", PictureFormat::kPgm},
                                         {"ppm", PictureFormat::kPpm},
                                         {"tif", PictureFormat::kTiff}};
const Choices<TriggerChoice> kTriggers = {
    {"software", TriggerChoice::kSoftware}, {"line", TriggerChoice::kLine}, {"free", TriggerChoice::kFree}};

template <class Value, class Target>
void AddChoice(CLI::App& app, const std::string& name, Target& target, const Choices<Value>& choices,
               const std::string& description) {
  std::string names;
  for (const auto& choice : choices) names += (names.empty() ? "" : "|") + choice.first;
  const auto take = [&target, &choices](const std::string& text) {
    target =
        std::find_if(choices.begin(), choices.end(), [&](const auto& choice) { return choice.first == text; })->second;
  };
  app.add_option_function<std::string>(name, take, description)->check(CLI::IsMember(choices))->option_text(names);
}

void AddGlobalOptions(CLI::App& app, Options& options) {
  app.set_help_flag("-h,--help", "print this text, or that of a command");
  app.add_option("--module", options.module_file,
                 std::string("the camera driver module\n(default: ") + kModuleFileName + " next to this program)")
      ->option_text("FILE");
  app.add_option("--log", options.log_file, "write every message of the driver to this file")->option_text("FILE");
  app.add_flag("--json", options.json,
               "print the result as one JSON document (live: a line a second,\nand one for the total)");
  app.add_flag("-v,--verbose", options.verbose, "print every message of the driver on standard error");
  app.add_flag("-q,--quiet", options.quiet,
               "print only errors, notices and what a command is asked for; of\nsnap that are the files alone");
}

// After the other global options, which hold for them too.
void AddVimbaOptions(CLI::App& app, Options& options) {
  app.add_option("--vimbac", options.vimbac_folder,
                 "take the VimbaC library in this folder, or one that kelcam comes\nwith: aravis (GigE Vision cameras "
                 "on Linux), simulated\n(default: the one that the system finds)")
      ->option_text("FOLDER|NAME");
  const CLI::callback_t take_scenario = [&options](const CLI::results_t& words) {
    if (words.back() == kListScenarios) throw CommandByOption{Command::kScenarios};
    options.simulated = words.back() == kNoScenario ? std::string() : words.back();
    return true;
  };
  // Expects no word: what follows it without a "=" is a command.
  app.add_option(
         "--simulated", take_scenario,
         "use simulated cameras: the built-in ones, or those of a\nscenario, by =NAME or =FILE.json; =list prints "
         "the names")
      ->expected(0)
      ->option_text("[=SCENARIO]");
  app.add_flag_callback(
      "--version", [] { throw CommandByOption{Command::kVersion}; },
      "print the versions of the program and of the VimbaC library,\nand which file that is");
}

// Each time that an option is given; otherwise options are taken one after the other, and not as they were mixed.
CLI::Option* AddEachTime(CLI::App& command, const std::string& name,
                         const std::function<void(const std::string&)>& take, const std::string& description) {
  const CLI::callback_t take_words = [take](const CLI::results_t& words) {
    take(words.back());
    return true;
  };
  return command.add_option(name, take_words, description)->type_name(kTextType)->trigger_on_parse();
}

// How a command gets its cameras.
void AddCameraOptions(CLI::App& command, Options& options) {
  const auto take_profile = [&options](const std::string& file) {
    options.cameras.push_back({.profile_file = file, .word = {}});
  };
  AddEachTime(
      command, "--profile", take_profile,
      "the ini file that names the camera;\nthe driver writes back to it. It and --camera may be given several\n"
      "times, for several cameras")
      ->option_text("FILE");
  const auto take_camera = [&options](const std::string& word) {
    options.cameras.push_back({.profile_file = {}, .word = word});
  };
  AddEachTime(command, "--camera", take_camera,
              "instead of a profile: the camera's serial number, id, address,\nor its number in the list, from 1")
      ->option_text("CAMERA");
}

void AddLinkOption(CLI::App& command, Options& options) {
  command.add_flag("--link", options.link,
                   "the cameras share a link: make them bandwidth partners, each of\neach other one");
}

void AddRetriesOption(CLI::App& command, Options& options) {
  command
      .add_option("--retries", options.lost_after,
                  "end after so many failed images in a row with a camera that does\nnot answer any more (default: " +
                      std::to_string(options.lost_after) + ")")
      ->check(CLI::Range(1, kMaxImages))
      ->option_text("N");
}

// What is wrong with the text of a duration; empty: nothing.
std::string WhyNotPositive(const std::string& text) {
  double number = 0.0;
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number);
  const bool is_positive = error == std::errc() && rest == end && std::isfinite(number) && number > 0.0;
  return is_positive ? std::string() : text + " is not a positive number";
}

void AddReconnectOptions(CLI::App& command, Options& options, const std::string& remark) {
  command.add_flag(
      "--reconnect", options.reconnect,
      "do not end when the camera is lost: close it, and open and set it\nup again until it answers" + remark);
  const auto take_pause = [&options](double seconds) {
    options.longest_pause = std::chrono::duration<double>(seconds);
  };
  command
      .add_option_function<double>("--reconnect-pause", take_pause,
                                   "the longest pause between two tries to open it again\n(default: " +
                                       Fixed(options.longest_pause.count(), 0) + ")")
      ->check(CLI::Validator(WhyNotPositive, {}))
      ->check(CLI::Range(0.0, kMaxInterval.count()))
      ->option_text("S");
}

// What an option that several commands have does in one of them.
struct ImageTexts {
  const char* kind;
  const char* trigger;
  const char* area;
};

constexpr ImageTexts kSnapTexts{
    "kind of picture (default: rgb for a colour camera, but mono for\na .pgm file; mono for a monochrome camera)",
    "what starts an image: the program, the camera's input line, or\nthe camera itself (default: software for single "
    "images, else free)",
    "the text of the image area, which selects the conversion:\n[l] fast, [p] precise"};
constexpr ImageTexts kLiveTexts{
    "kind of picture (default: rgb for a colour camera, mono for a\nmonochrome one)",
    "what starts an image: the program, the camera's input line, or\nthe camera itself (default: free)",
    "the text of the image area, which selects the conversion:\n[l] fast (the default), [p] precise"};

void AddImageOptions(CLI::App& command, Options& options, std::vector<std::string>& settings, const ImageTexts& texts) {
  AddChoice(command, "--kind", options.kind, kKinds, texts.kind);
  AddChoice(command, "--color", options.color, kSwitch,
            "switch the camera's colour mode first; without this option the\n"
            "camera stays in the mode in which the driver opens it");
  command
      .add_option(
          "--set", settings,
          "set a control: gain, exposure, wbred or wbblue. A plain number is\nin the control's integer unit (see "
          "kelcam info), one with a unit\nin that: exposure=12.5ms, gain=4x. May be given several times")
      ->allow_extra_args(false)
      ->option_text("CONTROL=VALUE");
  AddChoice(command, "--trigger", options.trigger, kTriggers, texts.trigger);
  command.add_option("--area", options.area_text, texts.area)->option_text("TEXT");
  const auto take_timeout = [&options](std::uint32_t timeout_ms) {
    options.timeout = std::chrono::milliseconds(timeout_ms);
  };
  command
      .add_option_function<std::uint32_t>(
          "--timeout", take_timeout,
          "how long to wait for an image (default: " + std::to_string(options.timeout.count()) + ")")
      ->check(CLI::Range(std::uint32_t{0}, std::numeric_limits<std::uint32_t>::max()))
      ->option_text("MS");
  AddRetriesOption(command, options);
}

void AddPictureOptions(CLI::App& snap, Options& options) {
  snap.add_option(
          "-o", options.pattern,
          "the file to write (required); its ending is the format. %d becomes\nthe image's number, from 1 "
          "(%04d: 0001), %t its time, %c the\ncamera's identifier, %s its serial number, %% a percent sign;\n-: "
          "standard output")
      ->required()
      ->option_text("PATTERN");
  AddChoice(snap, "--format", options.format, kFormats, "the format, whatever the ending (default for -: png)");
  snap.add_flag("--raw", options.raw,
                "write the camera's frame as it came, grey or a Bayer mosaic, in a\ngrey picture");
  snap.add_flag("--no-clobber", options.no_clobber, "keep files that are there: end before the first image if one is");
}

void AddSeriesOptions(CLI::App& snap, Options& options) {
  snap.add_option("-n", options.images, "how many images (default: 1)")
      ->check(CLI::Range(1, kMaxImages))
      ->option_text("N");
  AddChoice(snap, "--mode", options.mode, kModes,
            "start the camera for each image (single, the default), or once\nfor all of them");
  const auto take_interval = [&options](double seconds) { options.interval = std::chrono::duration<double>(seconds); };
  snap.add_option_function<double>("--interval", take_interval,
                                   "begin an image every S seconds; one that is late takes the next\nturn (default: "
                                   "as soon as the last one is there)")
      ->check(CLI::Validator(WhyNotPositive, {}))
      ->check(CLI::Range(0.0, kMaxInterval.count()))
      ->option_text("S");
  snap.add_option("--retry", options.retries, "how often to try again to take an image that failed (default: 0)")
      ->check(CLI::Range(0, kMaxRetries))
      ->option_text("N");
  snap.add_flag("--keep-going", options.keep_going,
                "try to start a continuous run again for each image that is left\n(default: it ends if it does not "
                "start; a failed image ends no run)");
  snap.add_flag("--fail-fast", options.fail_fast, "end the run with the first image that fails");
}

void AddSnapCommand(CLI::App& app, Options& options, std::vector<std::string>& settings) {
  CLI::App* snap = app.add_subcommand("snap", "take images and write them as PNG, TIFF, PGM or PPM files");
  AddCameraOptions(*snap, options);
  AddPictureOptions(*snap, options);
  AddSeriesOptions(*snap, options);
  AddLinkOption(*snap, options);
  AddImageOptions(*snap, options, settings, kSnapTexts);
  AddReconnectOptions(*snap, options, ";\nneeds --keep-going");
}

void AddLiveCommand(CLI::App& app, Options& options, std::vector<std::string>& settings) {
  CLI::App* live = app.add_subcommand("live", "run the cameras and print rate, failures and bandwidth");
  AddCameraOptions(*live, options);
  const auto take_duration = [&options](double seconds) { options.duration = std::chrono::duration<double>(seconds); };
  live->add_option_function<double>("--seconds", take_duration, "for how long (default: until Ctrl-C)")
      ->check(CLI::Validator(WhyNotPositive, {}))
      ->option_text("S");
  AddLinkOption(*live, options);
  AddImageOptions(*live, options, settings, kLiveTexts);
  AddReconnectOptions(*live, options, "");
}

void AddViewCommand(CLI::App& app, Options& options, std::vector<std::string>& settings) {
  CLI::App* view = app.add_subcommand("view", "show the cameras in the browser, with their controls");
  AddCameraOptions(*view, options);
  view->add_option("--port", options.port,
                   "the port under which the browser finds it; 0: any that is free\n(default: " +
                       std::to_string(options.port) + ")")
      ->option_text("N");
  view->add_option("--listen", options.listen,
                   "an address of this machine at which other machines are served,\n0.0.0.0 for all of them; the "
                   "printed address then has a token,\nwithout which nobody is served (default: 127.0.0.1, for this\n"
                   "machine alone, without a token)")
      ->option_text("ADDRESS");
  AddLinkOption(*view, options);
  AddImageOptions(*view, options, settings, kLiveTexts);
}

void AddCheckCommand(CLI::App& app, Options& options) {
  CLI::App* check = app.add_subcommand("check", "test library, network and cameras, and print a report with verdicts");
  AddCameraOptions(*check, options);
  const auto take_duration = [&options](double seconds) { options.duration = std::chrono::duration<double>(seconds); };
  check->add_option_function<double>("--seconds", take_duration, "how long the run of each camera lasts (default: 5)")
      ->check(CLI::Validator(WhyNotPositive, {}))
      ->check(CLI::Range(0.0, kLongestCheckSeconds))
      ->option_text("S");
  check->add_option("-o", options.report_file, "write the report to this file, and one line to standard output")
      ->option_text("REPORT");
  check->add_flag(
      "--anonymous", options.anonymous,
      "replace serial numbers, ids, addresses and the user's name in the\nreport, each always by the same word");
}

void AddListCommand(CLI::App& app, Options& options) {
  CLI::App* list = app.add_subcommand("list", "print the identifiers of the attached cameras, one a line");
  list->add_flag(
      "--long", options.long_list,
      "print number, id, model, serial number, address and access of\neach camera, and whether it is simulated");
  const auto take_wait = [&options](double seconds) { options.wait = std::chrono::duration<double>(seconds); };
  list->add_option_function<double>("--wait", take_wait, "wait for a camera, for at most so many seconds")
      ->check(CLI::Validator(WhyNotPositive, {}))
      ->option_text("S");
}

void AddProfileCommands(CLI::App& app, Options& options) {
  CLI::App* profile = app.add_subcommand("profile", "write the profile of a camera, or check one");
  profile->require_subcommand(1);
  CLI::App* fresh = profile->add_subcommand("new", "write a commented profile with the camera's present values");
  fresh
      ->add_option("--camera", options.camera,
                   "the camera's serial number, id, address, or its number in the\nlist, from 1 (required)")
      ->required()
      ->option_text("CAMERA");
  fresh->add_option("-o", options.new_file, "the file to write, which must not exist yet (required)")
      ->required()
      ->option_text("FILE");
  CLI::App* check = profile->add_subcommand("check", "print what is wrong with a profile; needs no camera");
  check->add_option("FILE", options.profile_file, "the profile (required)")->required()->option_text(" ");
}

Command CommandIn(const CLI::App& app) {
  const CLI::App* command = app.get_subcommands().front();
  const auto found = kCommands.find(command->get_name());
  return found != kCommands.end() ? found->second : kProfileCommands.at(command->get_subcommands().front()->get_name());
}

void AddCommands(CLI::App& app, Options& options, std::vector<std::string>& settings) {
  app.require_subcommand(1);
  AddListCommand(app, options);
  AddCameraOptions(*app.add_subcommand("info", "print what a camera reports: size, controls, trigger, rates"), options);
  AddSnapCommand(app, options, settings);
  AddLiveCommand(app, options, settings);
  AddViewCommand(app, options, settings);
  AddCheckCommand(app, options);
  AddProfileCommands(app, options);
}

}  // namespace

bool IsStandardOutput(const Options& options) {
  return options.command == Command::kSnap && FilePattern::IsStandardOutput(options.pattern);
}

std::variant<Options, std::string> ParseCommandLine(const std::vector<std::string>& arguments) {
  Options options;
  std::vector<std::string> settings;
  CLI::App app(kDescription, "kelcam");
  app.fallthrough();
  app.get_formatter()->column_width(kOptionColumnWidth);
  // "/home/..." is a file on every system.
  app.allow_windows_style_options(false);
  AddGlobalOptions(app, options);
  AddVimbaOptions(app, options);
  // The commands take over the footer that the program has when they are added.
  app.footer(kCommandFooter);
  AddCommands(app, options, settings);
  app.footer(kFooter);
  try {
    std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());
    app.parse(reversed);
  } catch (const CommandByOption& asked) {
    options.command = asked.command;
    return options;
  } catch (const CLI::Success& asked) {
    std::ostringstream text;
    app.exit(asked, text, text);
    return text.str();
  } catch (const CLI::ParseError& error) {
    const std::string why = WhyUnknownWord(app, arguments);
    throw UsageError(why.empty() ? error.what() : why);
  }
  options.command = CommandIn(app);
  for (const std::string& setting : settings) options.settings.push_back(ParseControlSetting(setting));
  CheckOptions(options);
  return options;
}

}  // namespace Kelcam
