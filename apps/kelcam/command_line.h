// command_line.h
// What the command line asks for.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "control_setting.h"
#include "snap_cycle.h"

namespace kelcam {

enum class Command { eList, eInfo, eSnap, eLive };
enum class SnapMode { eSingle, eContinuous };

struct Options {
  Command command = Command::eList;
  std::string module_file;  // empty: the one beside the program
  std::string log_file;     // empty: none
  bool json = false;
  bool verbose = false;

  std::string profile_file;  // info, snap, live

  std::uint32_t timeout_ms = 5000;     // snap, live
  std::optional<BBaseAoi::Kind> kind;  // none: as the camera is
  std::optional<bool> color;           // none: as the camera is
  std::string area_text;
  std::vector<ControlSetting> settings;
  std::optional<TriggerChoice> trigger;

  int images = 1;  // snap
  SnapMode mode = SnapMode::eSingle;
  std::string pattern;

  std::optional<double> seconds;  // live; none: until Ctrl-C
};

// The options, or the text that --help or --version asks for. Throws UsageError.
std::variant<Options, std::string> ParseCommandLine(std::vector<std::string> arguments);

}  // namespace kelcam
