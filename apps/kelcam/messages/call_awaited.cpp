// call_awaited.cpp
// What a call of the driver waits for, as far as the driver's messages show it.
#include "messages/call_awaited.h"

#include <algorithm>

namespace Kelcam {
namespace {

// The frame is good and on its way to the snap, which returns as soon as the trigger's command is done.
constexpr std::string_view kFrameIsThere = "process_frame_lambda started";

using Messages = std::vector<DriverMessage>;

const DriverMessage* Newest(const Messages& messages, std::string_view part) {
  const auto found = std::find_if(messages.rbegin(), messages.rend(),
                                  [&](const DriverMessage& message) { return Contains(message.text, part); });
  return found == messages.rend() ? nullptr : &*found;
}

// The driver reports each try to open a camera, and the set-up as a whole when it has ended.
Awaited AwaitedWhileOpening(const Messages& messages) {
  if (Newest(messages, "Initialize by ")) return {"the camera's set-up", {}};
  if (Newest(messages, " success")) {
    return {"the camera's set-up", "perhaps GVSPAdjustPacketSize: the driver sets it no time limit"};
  }
  if (Newest(messages, "InitMethod: ")) return {"the camera to be opened", {}};
  return {"Vimba to start and to search for cameras", {}};
}

}  // namespace

std::chrono::steady_clock::time_point SilentSince(const AwaitedCall& call, const Messages& messages) {
  const auto end_of_wait = call.start + call.may_wait;
  if (call.operation == Operation::kSingleSnap) {
    const DriverMessage* frame = Newest(messages, kFrameIsThere);
    return frame ? std::min(frame->time, end_of_wait) : end_of_wait;
  }
  return messages.empty() || call.operation == Operation::kSnap ? end_of_wait
                                                                : std::max(messages.back().time, end_of_wait);
}

Awaited WhatIsAwaited(const AwaitedCall& call, const Messages& messages) {
  switch (call.operation) {
    case Operation::kListing:
      return {"Vimba to start and to search for cameras", {}};
    case Operation::kOpening:
      return AwaitedWhileOpening(messages);
    case Operation::kControls:
      return {"the camera's controls", {}};
    case Operation::kStart:
      return {"the camera to start", {}};
    case Operation::kFire:
      return {"TriggerSoftware", {}};
    case Operation::kSingleSnap:
      if (Newest(messages, kFrameIsThere)) return {"TriggerSoftware", "the frame has come"};
      return {"the snap, after its time-out,", "perhaps TriggerSoftware: the driver sets it no time limit"};
    case Operation::kSnap:
      return {"the snap, after its time-out,", {}};
    case Operation::kStop:
      return {"the camera to stop", {}};
    case Operation::kClosing:
      return {"the camera to be closed", {}};
  }
  return {"the driver", {}};
}

}  // namespace Kelcam
