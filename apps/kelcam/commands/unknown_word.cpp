// unknown_word.cpp
// A word of the command line that the program has no use for, and what may be meant by it.
#include "commands/unknown_word.h"

#include <algorithm>
#include <filesystem>

#include "CLI/CLI.hpp"
#include "base/nearest_name.h"
#include "base/utf8.h"

namespace Kelcam {
namespace {

using Words = std::vector<std::string>;

constexpr const char* kProfileOption = "--profile";
constexpr const char* kOutputOption = "-o";
constexpr const char* kScenarioOption = "--simulated";
constexpr const char* kProfileEnding = ".ini";
constexpr const char* kPictureEndings[] = {".png", ".pgm", ".ppm", ".tif", ".tiff"};
// "-x" is as near to each other option of one letter.
constexpr std::size_t kLeastNameToCompare = 3;

std::size_t PlaceOf(const std::string& word, const Words& arguments) {
  return static_cast<std::size_t>(std::find(arguments.begin(), arguments.end(), word) - arguments.begin());
}

// The first in the order of the command line; empty: none.
std::string FirstUnknown(const CLI::App& app, const Words& arguments) {
  Words unknown = app.remaining(true);
  std::erase(unknown, "--");
  const auto first = std::min_element(unknown.begin(), unknown.end(), [&](const auto& a, const auto& b) {
    return PlaceOf(a, arguments) < PlaceOf(b, arguments);
  });
  return first == unknown.end() ? std::string() : *first;
}

// The command, and the command of that, in which the word stands; the program itself for a word before any.
const CLI::App& CommandAround(const CLI::App& app, const std::string& word, const Words& arguments) {
  const CLI::App* command = &app;
  for (;;) {
    const auto parsed = command->get_subcommands();
    if (parsed.empty() || PlaceOf(parsed.front()->get_name(), arguments) > PlaceOf(word, arguments)) return *command;
    command = parsed.front();
  }
}

std::vector<const CLI::App*> CommandsOf(const CLI::App& app) {
  return app.get_subcommands([](const CLI::App*) { return true; });
}

// "profile check" for that command of profile's; empty for the program itself.
std::string TitleOf(const CLI::App& command) {
  const CLI::App* parent = command.get_parent();
  if (!parent) return {};
  const std::string before = TitleOf(*parent);
  return before.empty() ? command.get_name() : before + " " + command.get_name();
}

Words OptionNamesOf(const CLI::App& app) {
  Words names;
  for (const CLI::Option* option : app.get_options()) {
    for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
    for (const std::string& name : option->get_snames()) names.push_back("-" + name);
  }
  return names;
}

bool HasOption(const CLI::App& app, const std::string& name) {
  const Words names = OptionNamesOf(app);
  return std::find(names.begin(), names.end(), name) != names.end();
}

// An option that may still be given.
bool LacksOption(const CLI::App& command, const std::string& name) {
  return HasOption(command, name) && command.get_option(name)->count() == 0;
}

// The titles of the commands that have an option.
void AppendOwners(const CLI::App& app, const std::string& option, Words& owners) {
  for (const CLI::App* command : CommandsOf(app)) {
    if (HasOption(*command, option) && option != "--help" && option != "-h") owners.push_back(TitleOf(*command));
    AppendOwners(*command, option, owners);
  }
}

// "info, snap and live"
std::string Enumerated(const Words& words) {
  std::string text;
  for (std::size_t i = 0; i < words.size(); ++i) {
    if (i > 0) text += i + 1 < words.size() ? ", " : " and ";
    text += words[i];
  }
  return text;
}

std::string WhyUnknownOption(const CLI::App& app, const CLI::App& command, const std::string& word) {
  const std::string name = word.substr(0, word.find('='));
  std::string why = "there is no option " + name;
  if (&command != &app) why += " of " + TitleOf(command);
  Words owners;
  AppendOwners(app, name, owners);
  if (!owners.empty()) {
    if (&command == &app) why += " before the command";
    return why + "; " + Enumerated(owners) + (owners.size() == 1 ? " has it" : " have it");
  }
  if (name.size() < kLeastNameToCompare) return why;
  Words names = OptionNamesOf(command);
  const Words global = OptionNamesOf(app);
  names.insert(names.end(), global.begin(), global.end());
  return why + DidYouMean(name, names);
}

std::string WhyUnknownCommand(const CLI::App& app, const CLI::App& command, const std::string& word) {
  const std::string group = &command == &app ? std::string() : TitleOf(command) + " ";
  const std::string why = "there is no command " + group + word;
  Words names;
  for (const CLI::App* known : CommandsOf(command)) {
    names.push_back(known->get_name());
    for (const CLI::App* inner : CommandsOf(*known)) {
      if (inner->get_name() == word) return why + "; did you mean " + TitleOf(*inner) + "?";
    }
  }
  const std::string nearest = NearestName(word, names);
  return nearest.empty() ? why : why + "; did you mean " + group + nearest + "?";
}

bool EndsLikePicture(const std::string& word) {
  return std::any_of(std::begin(kPictureEndings), std::end(kPictureEndings),
                     [&](const char* ending) { return word.ends_with(ending); });
}

bool IsFile(const std::string& word) {
  std::error_code ignored;
  return std::filesystem::is_regular_file(Path(word), ignored);
}

// The option that the word is the value of, or the word as an option; empty: none.
std::string WithItsOption(const CLI::App& command, const std::string& word) {
  const bool is_profile = word.ends_with(kProfileEnding);
  const bool is_picture = EndsLikePicture(word);
  if (LacksOption(command, kProfileOption) && (is_profile || (IsFile(word) && !is_picture))) {
    return std::string(kProfileOption) + " " + word;
  }
  // A new profile is written where other commands take one.
  const bool is_output = HasOption(command, kProfileOption) ? is_picture : is_profile;
  if (LacksOption(command, kOutputOption) && is_output) return std::string(kOutputOption) + " " + word;
  return HasOption(command, "--" + word) ? "--" + word : std::string();
}

}  // namespace

std::string WhyUnknownWord(const CLI::App& app, const std::vector<std::string>& arguments) {
  const std::string word = FirstUnknown(app, arguments);
  if (word.empty()) return {};
  const CLI::App& command = CommandAround(app, word, arguments);
  if (word.starts_with("-")) return WhyUnknownOption(app, command, word);
  const std::size_t place = PlaceOf(word, arguments);
  if (place > 0 && arguments[place - 1] == kScenarioOption) {
    return std::string(kScenarioOption) + " takes no word after it; did you mean " + kScenarioOption + "=" + word + "?";
  }
  if (!CommandsOf(command).empty()) return WhyUnknownCommand(app, command, word);
  const std::string meant = WithItsOption(command, word);
  return TitleOf(command) + " does not expect the word " + word +
         (meant.empty() ? "" : "; did you mean " + meant + "?");
}

}  // namespace Kelcam
