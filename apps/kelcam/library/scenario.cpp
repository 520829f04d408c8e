// scenario.cpp
// Scenarios of simulated cameras: JSON files that the program finds by name, or anywhere.
#include "library/scenario.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <sstream>

#include "base/nearest_name.h"
#include "base/platform.h"
#include "base/report.h"
#include "base/utf8.h"

namespace Kelcam {
namespace {

constexpr const char* kFolderName = "scenarios";
constexpr const char* kEnding = ".json";
constexpr const char* kDescriptionMember = "description";

// A package has them among the files that do not depend on the machine; a build folder has them next to the program.
std::filesystem::path Folder() {
  std::filesystem::path folder = ProgramFolder() / KEL_SHARE_FOLDER / kFolderName;
  if (!std::filesystem::is_directory(folder)) folder = ProgramFolder() / kFolderName;
  if (!std::filesystem::is_directory(folder)) throw Failure("the scenarios are missing: " + Utf8(folder));
  return folder;
}

std::string DescriptionOf(const std::filesystem::path& file) {
  const Json scenario = Json::parse(ReadScenario(file), nullptr, false);
  if (!scenario.is_object()) return {};
  const auto description = scenario.find(kDescriptionMember);
  return description != scenario.end() && description->is_string() ? description->get<std::string>() : std::string();
}

}  // namespace

std::vector<Scenario> InstalledScenarios() {
  std::vector<Scenario> scenarios;
  for (const auto& entry : std::filesystem::directory_iterator(Folder())) {
    if (entry.path().extension() != kEnding) continue;
    scenarios.push_back({Utf8(entry.path().stem()), DescriptionOf(entry.path())});
  }
  std::sort(scenarios.begin(), scenarios.end(), [](const auto& a, const auto& b) { return a.name < b.name; });
  return scenarios;
}

std::filesystem::path ScenarioFile(const std::string& scenario) {
  std::filesystem::path path = Path(scenario);
  if (path.extension() == kEnding || path.has_parent_path()) return path;
  std::vector<std::string> names;
  for (const Scenario& installed : InstalledScenarios()) names.push_back(installed.name);
  if (std::find(names.begin(), names.end(), scenario) == names.end()) {
    throw UsageError("--simulated=" + scenario + ": there is no such scenario" + DidYouMean(scenario, names) +
                     " (--simulated=list names all; a file ends in " + kEnding + ")");
  }
  return Folder() / Path(scenario + kEnding);
}

std::string ReadScenario(const std::filesystem::path& file) {
  const std::string sentence = "the scenario " + Utf8(file) + " cannot be read: ";
  // Some systems open a folder like a file.
  if (std::filesystem::is_directory(file)) throw Failure(sentence + "it is a folder");
  errno = 0;
  std::ifstream in(file, std::ios::binary);
  std::ostringstream text;
  if (in) text << in.rdbuf();
  if (!in) throw Failure(sentence + std::strerror(errno));
  return text.str();
}

}  // namespace Kelcam
