// snap_explained.h
// Why an image failed, and what to do next.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "base/failure.h"
#include "device/trigger_setting.h"
#include "messages/driver_messages.h"

namespace Kelcam {

// What is known of a failed step of an acquisition.
struct SnapEvidence {
  int code = Fault::kNoCode;
  std::string text;  // the error's
  Lines lines;       // the driver's, since the step began
  TriggerChoice trigger = TriggerChoice::kSoftware;
  bool has_trigger = true;  // without one nothing but the driver's single images fires
  bool camera_is_gone = false;
  bool has_clock = true;  // without one the driver refuses every frame
  std::chrono::milliseconds timeout{0};
  std::chrono::milliseconds needed{0};  // for exposure and transfer at least; 0: not known
  std::int64_t rate_bytes_per_s = 0;
};

// Whether the driver's message of the start says that the camera's clock could be read.
bool HasClock(const Lines& lines_of_start);

// The line that comes with a frame that failed.
inline constexpr const char* kFailedFrame = "ReceiveStatus failure";

// The lines that failed, the cause and the next step. Nothing where the driver has reported nothing.
Reason ExplainSnap(const SnapEvidence& evidence);

}  // namespace Kelcam
