// command_line.h
// What the command line asks for.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "bbaseaoi.h"
#include "device/camera_choice.h"
#include "device/control_setting.h"
#include "device/trigger_setting.h"
#include "picture/file_pattern.h"

namespace Kelcam {

enum class Command { kVersion, kScenarios, kList, kInfo, kSnap, kLive, kView, kCheck, kProfileNew, kProfileCheck };
enum class SnapMode { kSingle, kContinuous };

struct Options {
  Command command = Command::kList;
  std::string module_file;  // empty: the one next to the program
  std::string log_file;     // empty: none
  bool json = false;
  bool verbose = false;
  bool quiet = false;
  // Which VimbaC library the module gets; neither: the one that the loader finds.
  std::string vimbac_folder;
  std::optional<std::string> simulated;  // a scenario; empty: the built-in cameras, or those of VIMBA_SIM_CONFIG

  // info, snap, live, view, check: in the order of the command line
  std::vector<CameraChoice> cameras;

  // profile new: the word that names its camera, and the file to write
  std::string camera;
  std::string new_file;
  // profile check
  std::string profile_file;

  // list
  bool long_list = false;
  std::optional<std::chrono::duration<double>> wait;  // for a camera; none: not at all

  // snap, live, view
  std::chrono::milliseconds timeout{5000};
  std::optional<BBaseAoi::Kind> kind;  // none: as the camera is
  std::optional<bool> color;           // none: as the camera is
  std::string area_text;
  std::vector<ControlSetting> settings;
  std::optional<TriggerChoice> trigger;
  int lost_after = 3;                                // failures in a row of a camera that seems to be gone
  bool link = false;                                 // the cameras become bandwidth partners
  bool reconnect = false;                            // a lost camera is opened again until it answers
  std::chrono::duration<double> longest_pause{5.0};  // between two tries of it

  // snap
  int images = 1;
  SnapMode mode = SnapMode::kSingle;
  std::string pattern;
  std::optional<PictureFormat> format;  // none: that of the pattern's ending
  bool is_grey_by_format = false;       // the kind is that of the format, and no option asks for it
  bool raw = false;
  bool no_clobber = false;
  std::optional<std::chrono::duration<double>> interval;  // none: one image after the other
  int retries = 0;                                        // of each image
  bool keep_going = false;                                // a continuous run that does not start is started again
  bool fail_fast = false;                                 // a failed image ends the run

  // live, check
  std::optional<std::chrono::duration<double>> duration;  // none: until Ctrl-C; of check the usual time

  // check
  std::string report_file;  // empty: standard output
  bool anonymous = false;   // nothing in the report names cameras or people

  // view
  std::uint16_t port = 8480;          // 0: any that is free
  std::optional<std::string> listen;  // an address; none: this machine's own, for itself alone
};

// Whether pictures go to standard output, which then has nothing else.
bool IsStandardOutput(const Options& options);

// The options, or the text that --help asks for. Throws UsageError.
std::variant<Options, std::string> ParseCommandLine(const std::vector<std::string>& arguments);

}  // namespace Kelcam
