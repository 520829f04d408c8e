// scenario.h
// Scenarios of simulated cameras: JSON files that the program finds by name, or anywhere.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "base/failure.h"

namespace Kelcam {

struct Scenario {
  std::string name;
  std::string description;  // empty: the file has none
};

// Those that are installed with the program, by name. Throws Failure when the folder is missing.
std::vector<Scenario> InstalledScenarios();

// The file of a scenario: an installed one by its name, or a file, whose name ends in .json or has a folder. Throws
// UsageError for a name that is none.
std::filesystem::path ScenarioFile(const std::string& scenario);

// The text of the file. Throws Failure with the system's reason.
std::string ReadScenario(const std::filesystem::path& file);

}  // namespace Kelcam
