// frame_report.h
// What is found out of a frame for those who look at it.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <vector>

#include "bsize.h"
#include "view/pictures/rectangle.h"
#include "view/pictures/statistics.h"

namespace Kelcam {

struct FrameReport {
  std::uint64_t frame = 0;
  std::chrono::system_clock::time_point time;
  BSize size;
  std::vector<Histogram> histograms;  // by channel
  double sharpness = 0.0;
  std::optional<Rectangle> sharpness_area;  // none: all of the frame
  double frames_per_s = 0.0;
};

}  // namespace Kelcam
