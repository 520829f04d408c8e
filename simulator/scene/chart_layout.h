// scene/chart_layout.h
// Where the parts of the test chart lie on a sensor of any size.
#pragma once

#include <array>

#include "scene/canvas.h"

namespace Simulator {

// The box with its edges moved between pixels, so that they are sharp.
Box WholePixels(const Box& box);

// Symmetrical about the sensor's middle.
struct ChartLayout {
  ChartLayout(int sensor_width, int sensor_height);

  Box sensor;
  Point middle;
  double border = 0;
  // One hundredth of the content's height, the measure of everything inside.
  double unit = 0;
  Box content;
  Box title;
  // Strips across the content.
  Box resolution;
  Box steps;
  Box ramp;
  Box counter;
  // The star, within the ring on which the hand turns.
  double star_radius = 0;
  double ring_inner = 0;
  double ring_outer = 0;
  // The plates under the patches, left and right of the ring.
  std::array<Box, 2> panels;
  double patch_size = 0;
  double patch_gap = 0;

  // Patches count in rows of six; the first three of a row lie on the left panel.
  Box Patch(int index) const;
};

}  // namespace Simulator
