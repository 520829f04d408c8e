// intervals.h
// The time from one frame to the next.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "check/frame_arrivals.h"

namespace Kelcam {

struct Intervals {
  std::size_t count = 0;
  double mean_ms = 0.0;
  double least_ms = 0.0;
  double most_ms = 0.0;
  std::size_t gaps = 0;  // intervals longer than kGap times the median
  bool by_camera_clock = false;

  static constexpr double kGap = 1.5;
};

// Of points in time, in their order. None for fewer than two.
std::optional<Intervals> IntervalsOf(const std::vector<double>& times_ms);

// Of the complete frames of a run: by the camera's clock if its frequency is known and it only goes forward, otherwise
// by the moments at which the driver reported them.
std::optional<Intervals> IntervalsOf(const std::vector<FrameArrival>& arrivals,
                                     std::optional<std::int64_t> ticks_per_s);

}  // namespace Kelcam
