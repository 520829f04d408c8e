// engine/capture_settings.h
// What the features say about the next exposure, as the acquisition thread needs it.
#pragma once

#include <cstddef>
#include <cstdint>

#include "engine/clock.h"
#include "scene/scene.h"

namespace Simulator {

enum class FrameStart { kFreerun, kFixedRate, kSoftware, kLine };
enum class Edge { kRising, kFalling, kAny, kLevelHigh, kLevelLow };

// IP, UDP and stream headers, which GVSPPacketSize counts.
inline constexpr std::int64_t kPacketHeaderBytes = 36;

// Input lines are numbered from 1 to this.
inline constexpr int kInputLines = 4;

// What starts an exposure.
struct TriggerSettings {
  FrameStart start = FrameStart::kFreerun;
  int line = 0;
  Edge edge = Edge::kRising;
  Clock::duration delay{};
  // Between the exposures that the source starts by itself; zero: it starts none.
  Clock::duration period{};

  bool IsPeriodic() const { return period > Clock::duration::zero(); }

  bool SameSource(const TriggerSettings& other) const {
    return start == other.start && line == other.line && edge == other.edge;
  }
};

struct CaptureSettings {
  // Area, format, exposure, gain and balance; number and time are the exposure's.
  Shot shot;
  std::size_t image_bytes = 0;
  // An automatic is on: the camera needs the means of its pictures.
  bool automatic = false;
  TriggerSettings trigger;
  // Frames after which an acquisition ends by itself; 0: it does not.
  std::int64_t frame_limit = 0;

  // These three are zero with instant timing.
  Clock::duration exposure{};
  Clock::duration readout{};
  Clock::duration stream{};
  bool instant = false;

  double stream_bytes_per_s = 0.0;
  // Image bytes in one packet.
  std::size_t packet_bytes = 1;

  // A slow read-out holds the stream up.
  double BytesPerSecondSent() const {
    return readout > stream ? static_cast<double>(image_bytes) / Seconds(readout).count() : stream_bytes_per_s;
  }
};

}  // namespace Simulator
