// scene/chart_layout.cpp
// Where the parts of the test chart lie on a sensor of any size.
#include "scene/chart_layout.h"

#include <algorithm>
#include <cmath>

#include "scene/chart_patches.h"

namespace Simulator {
namespace {

// The content's width, as a multiple of its height.
constexpr double kNarrowest = 1.05;
constexpr double kWidest = 1.9;
// Patches on a panel.
constexpr int kColumns = 3;
constexpr int kRows = 4;
// Parts of a patch's size.
constexpr double kGap = 0.09;
constexpr double kMargin = 0.16;
// A panel's size, as multiples of a patch's.
constexpr double kPanelWidth = kColumns + (kColumns - 1) * kGap + 2.0 * kMargin;
constexpr double kPanelHeight = kRows + (kRows - 1) * kGap + 2.0 * kMargin;

Box Within(const Box& box, double low, double high, double unit) {
  return WholePixels({box.left, box.top + low * unit, box.right, box.top + high * unit});
}

double Nearest(double value) { return std::floor(value + 0.5); }

}  // namespace

Box WholePixels(const Box& box) {
  return {Nearest(box.left), Nearest(box.top), Nearest(box.right), Nearest(box.bottom)};
}

ChartLayout::ChartLayout(int sensor_width, int sensor_height)
    : sensor{0.0, 0.0, static_cast<double>(sensor_width), static_cast<double>(sensor_height)},
      middle{0.5 * sensor_width, 0.5 * sensor_height},
      border(0.04 * std::min(sensor_width, sensor_height)) {
  const double inset = 1.5 * border;
  const double room_x = sensor.right - 2.0 * inset;
  const double room_y = sensor.bottom - 2.0 * inset;
  const double height = std::min(room_y, room_x / kNarrowest);
  const double width = std::min(room_x, height * kWidest);
  unit = height / 100.0;
  content = {middle.x - 0.5 * width, middle.y - 0.5 * height, middle.x + 0.5 * width, middle.y + 0.5 * height};
  title = Within(content, 0.0, 10.0, unit);
  resolution = Within(content, 12.0, 22.0, unit);
  steps = Within(content, 78.0, 83.5, unit);
  ramp = Within(content, 83.5, 86.5, unit);
  counter = Within(content, 89.0, 100.0, unit);
  ring_outer = 26.0 * unit;
  ring_inner = 21.5 * unit;
  star_radius = 20.5 * unit;

  const double room = 0.5 * width - ring_outer - 2.0 * unit;
  patch_size = std::min(room / kPanelWidth, 52.0 * unit / kPanelHeight);
  patch_gap = kGap * patch_size;
  const double half_height = 0.5 * kPanelHeight * patch_size;
  const double panel_width = kPanelWidth * patch_size;
  // Half-way between the ring and the content's edge.
  const double offset = ring_outer + 2.0 * unit + 0.5 * (room - panel_width);
  const double top = middle.y - half_height;
  const double bottom = middle.y + half_height;
  panels[0] = WholePixels({middle.x - offset - panel_width, top, middle.x - offset, bottom});
  panels[1] = WholePixels({middle.x + offset, top, middle.x + offset + panel_width, bottom});
}

Box ChartLayout::Patch(int index) const {
  const int column = index % (2 * kColumns);
  const int row = index / (2 * kColumns);
  const Box& panel = panels[column < kColumns ? 0 : 1];
  const double step = patch_size + patch_gap;
  const double left = panel.left + kMargin * patch_size + (column % kColumns) * step;
  const double top = panel.top + kMargin * patch_size + row * step;
  return WholePixels({left, top, left + patch_size, top + patch_size});
}

PatchArea ChartPatchArea(int sensor_width, int sensor_height, int index) {
  const Box patch = ChartLayout(sensor_width, sensor_height).Patch(index);
  return {patch.left, patch.top, patch.right, patch.bottom};
}

}  // namespace Simulator
