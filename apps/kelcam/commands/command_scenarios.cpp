// command_scenarios.cpp
// kelcam --simulated=list: the scenarios of simulated cameras.
#include <algorithm>
#include <iomanip>
#include <iostream>

#include "base/report.h"
#include "commands/commands.h"
#include "library/scenario.h"

namespace Kelcam {

ExitCode PrintScenarios(const Options& options) {
  const std::vector<Scenario> scenarios = InstalledScenarios();
  if (options.json) {
    Json all = Json::array();
    for (const auto& [name, description] : scenarios) all.push_back({{"name", name}, {"description", description}});
    PrintDocument({{"scenarios", all}});
    return kDone;
  }
  std::size_t width = 0;
  for (const Scenario& scenario : scenarios) width = std::max(width, scenario.name.size());
  for (const auto& [name, description] : scenarios) {
    std::cout << std::left << std::setw(static_cast<int>(width)) << name << "  " << description << "\n";
  }
  return kDone;
}

}  // namespace Kelcam
