// link/link_settings.h
// What a network link is between its cameras and the computer: everything that does not change.
#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "link/bottleneck.h"
#include "link/period.h"

namespace Simulator {

struct BackgroundTraffic {
  double rate_bytes_per_s = 0.0;
  Period when;
};

struct LinkSettings {
  std::string name = "link";
  // The switch sends what the cameras send, and the background traffic, to the computer.
  Bottleneck network{124'000'000.0, 0.0};
  // The computer takes what the cameras send.
  Bottleneck receiver{std::numeric_limits<double>::infinity(), 0.0};
  // The largest packet that the computer's network adapter takes.
  std::int64_t mtu_bytes = 9000;
  std::vector<BackgroundTraffic> background;
  // When the cable is dead.
  std::vector<Period> dead;
  // Lost packets are sent again until the frame's time-out.
  bool resends = false;
  // A frame with lost packets arrives so long after its end.
  Milliseconds frame_timeout{0.0};
};

}  // namespace Simulator
