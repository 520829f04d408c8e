// help_test.cpp
// The help of each command is about that command.
#include <regex>
#include <set>
#include <sstream>

#include "kelcam_test.h"

namespace {

using testing::HasSubstr;
using testing::IsSubsetOf;
using testing::IsSupersetOf;
using testing::Not;

using Names = std::set<std::string>;

// The options and the commands that a help text lists, and the options that it speaks of anywhere.
struct HelpText {
  Names options;
  Names commands;
  Names mentioned;
};

void InsertNames(const std::string& text, Names& names) {
  static const std::regex kName("(^|[^-\\w])(--[a-z][\\w-]*|-[A-Za-z](?![\\w-]))");
  for (std::sregex_iterator match(text.begin(), text.end(), kName), end; match != end; ++match) {
    names.insert((*match)[2]);
  }
}

// A line of a list begins with two blanks and what it explains: "  -q,--quiet   print only errors".
HelpText Parsed(const std::string& text) {
  HelpText help;
  bool is_list_of_commands = false;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("Subcommands:")) is_list_of_commands = true;
    InsertNames(line, help.mentioned);
    if (line.size() < 3 || !line.starts_with("  ") || line[2] == ' ') continue;
    const std::string term = line.substr(2, line.find("  ", 2) - 2);
    if (term.front() == '-') {
      InsertNames(term, help.options);
    } else if (is_list_of_commands && line.find("   ", 2) != std::string::npos) {
      help.commands.insert(term);
    }
  }
  return help;
}

class CommandHelp : public KelcamTest {
 protected:
  std::string HelpOf(const Arguments& command) const {
    Arguments arguments = command;
    arguments.push_back("--help");
    const ProcessResult result = Kelcam(arguments);
    EXPECT_EQ(result.exit_code, kDone);
    EXPECT_EQ(result.err, "");
    return result.out;
  }

  // Each command below this one, and the commands of those, with its help.
  void Collect(const Arguments& command, std::map<std::string, std::string>& texts) const {
    for (const std::string& name : Parsed(HelpOf(command)).commands) {
      Arguments inner = command;
      inner.push_back(name);
      std::string title;
      for (const std::string& word : inner) title += (title.empty() ? "" : " ") + word;
      texts[title] = HelpOf(inner);
      Collect(inner, texts);
    }
  }
};

TEST_F(CommandHelp, SpeaksOfOptionsThatTheCommandHas) {
  const Names global = Parsed(HelpOf({})).options;
  std::map<std::string, std::string> texts;
  Collect({}, texts);

  Names titles;
  for (const auto& [title, text] : texts) {
    titles.insert(title);
    const HelpText help = Parsed(text);
    Names known = global;
    known.insert(help.options.begin(), help.options.end());
    EXPECT_THAT(help.mentioned, IsSubsetOf(known)) << title;
  }
  EXPECT_EQ(titles,
            Names({"list", "info", "snap", "live", "view", "check", "profile", "profile new", "profile check"}));
  EXPECT_THAT(global, IsSupersetOf({"-h", "--help", "--json", "-v", "--verbose", "--simulated"}));
  EXPECT_THAT(Parsed(texts["snap"]).options, IsSupersetOf({"--profile", "-o", "-n", "--no-clobber", "--set"}));
}

// The two commands share options, whose defaults differ.
TEST_F(CommandHelp, OfLiveSpeaksOfNoPictureFiles) {
  const std::string help = HelpOf({"live"});

  EXPECT_THAT(help, Not(HasSubstr(".pgm")));
  EXPECT_THAT(help, HasSubstr("the camera itself (default: free)\n"));
  EXPECT_THAT(help, HasSubstr("[l] fast (the default), [p] precise\n"));
}

TEST_F(CommandHelp, OfSnapSpeaksOfNoOtherCommandsDefaults) {
  const std::string help = HelpOf({"snap"});

  EXPECT_THAT(help, Not(HasSubstr("live")));
  EXPECT_THAT(help, HasSubstr("(default: software for single images, else free)\n"));
}

}  // namespace
