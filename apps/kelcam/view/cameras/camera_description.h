// camera_description.h
// What a device says of itself, as pages show it.
#pragma once

#include <string>
#include <vector>

#include "bimagingdevice.h"
#include "commands/command_line.h"
#include "device/trigger_setting.h"
#include "messages/message_memory.h"
#include "view/cameras/camera_state.h"

namespace Kelcam {

// Those that can be set, with the device's own ranges. color: the white balance is the one of colour mode.
std::vector<ControlState> ControlsOf(BImagingDevice& device, bool color);
std::vector<Temperature> TemperaturesOf(BImagingDevice& device);

// The range of the stream rate, as the driver reports it when it opens the camera; the rate is left open.
StreamRateState StreamRateRangeIn(const MessageMemory& messages);

// The words of --trigger.
std::string NameOf(TriggerChoice choice);
std::vector<std::string> TriggersOf(BImagingDevice& device);
// Throws UsageError for another word.
TriggerChoice TriggerOf(const std::string& name);

// The text of the image area; the fast conversion where none is asked for.
std::string AreaTextOf(const Options& options);

}  // namespace Kelcam
