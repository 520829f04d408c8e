// camera_wishes.h
// How a camera shall be set up: by the command line, then by pages.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "commands/command_line.h"

namespace Kelcam {

// Kept over losses: a camera that is back gets all of it again. [the camera's thread]
struct CameraWishes {
  explicit CameraWishes(const Options& from_command_line) : options(from_command_line) {}

  Options options;  // kind, color, settings, trigger and area of this camera
  std::optional<std::int32_t> rate_bytes_per_s;
  bool runs = true;

  TriggerChoice Trigger() const { return options.trigger.value_or(TriggerChoice::kFree); }
  // In place of an earlier one of the same control.
  void Remember(const ControlSetting& setting) {
    std::erase_if(options.settings, [&](const ControlSetting& earlier) { return earlier.control == setting.control; });
    options.settings.push_back(setting);
  }
};

}  // namespace Kelcam
