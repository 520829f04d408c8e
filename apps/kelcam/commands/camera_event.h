// camera_event.h
// What is reported of a camera that goes away and comes back.
#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "base/failure.h"
#include "base/report.h"

namespace Kelcam {

struct CameraEvent {
  using Seconds = std::chrono::duration<double>;

  std::string camera;  // its identifier at the beginning of the run
  std::chrono::system_clock::time_point time;
  std::optional<Fault> loss;  // why it counts as lost; none: it has returned
  // Of a return:
  Seconds away{0.0};             // since the loss
  int tries = 0;                 // to open it
  std::string returned_as = {};  // its identifier now, if it is another

  // "2026-11-22T05:55:37.123+0100: Vimba_Manta-G-507B_50-0536953957: returned after 12.3 s (6 tries)"
  std::string Line() const;
};

// With "event" being "lost" or "returned".
Json ToJson(const CameraEvent& event);

}  // namespace Kelcam
