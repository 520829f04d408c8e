// scene/chart_subject.cpp
// The built-in test chart.
#include "scene/chart_subject.h"

#include <algorithm>
#include <cmath>

#include "scene/chart_colours.h"
#include "scene/stroke_font.h"

namespace Simulator {
namespace {

std::string SensorLegend(bool colour, BayerOrder bayer_order) {
  if (!colour) return "MONO";
  return "COLOUR " + std::string(kBayerOrderNames[static_cast<std::size_t>(bayer_order)]);
}

// The length of the border's blocks: of 4 n + 1 of them, the first, the middle and the last are light.
double BorderStep(double length, double border) {
  return length / (4 * std::max(1, static_cast<int>(length / (4.0 * 2.3 * border))) + 1);
}

}  // namespace

ChartSubject::ChartSubject(int sensor_width, int sensor_height, bool colour, BayerOrder bayer_order)
    : m_layout(sensor_width, sensor_height),
      m_size_legend(std::to_string(sensor_width) + " x " + std::to_string(sensor_height)),
      m_sensor_legend(SensorLegend(colour, bayer_order)) {}

void ChartSubject::Paint(Canvas& canvas) const {
  PaintBackground(canvas);
  PaintBorder(canvas);
  // Most canvases are bands or small windows: parts that lie outside are not even drawn.
  const Point middle = m_layout.middle;
  const double ring = m_layout.ring_outer + 1.0;
  if (canvas.Touches(m_layout.title)) PaintTitle(canvas);
  if (canvas.Touches(m_layout.resolution)) PaintResolution(canvas);
  if (canvas.Touches(m_layout.panels[0]) || canvas.Touches(m_layout.panels[1])) PaintPatches(canvas);
  if (canvas.Touches({middle.x - ring, middle.y - ring, middle.x + ring, middle.y + ring})) {
    PaintDial(canvas);
    PaintStar(canvas);
  }
  if (canvas.Touches(m_layout.steps) || canvas.Touches(m_layout.ramp)) PaintGreys(canvas);
  if (canvas.Touches(m_layout.counter)) PaintCounterPlate(canvas);
}

std::vector<MovingPart> ChartSubject::MovingParts(std::uint64_t frame_number, Seconds time) const {
  return {Hand(time), Counter(frame_number)};
}

void ChartSubject::PaintBackground(Canvas& canvas) const {
  canvas.Fill(kBackground);
  const double spacing = 8.0 * m_layout.unit;
  const double thickness = std::max(1.0, 0.14 * m_layout.unit);
  const Box& sensor = m_layout.sensor;
  const double first_x = std::fmod(m_layout.middle.x, spacing) - 0.5 * thickness;
  const double first_y = std::fmod(m_layout.middle.y, spacing) - 0.5 * thickness;
  for (int i = 0; first_x + i * spacing < sensor.right; ++i) {
    const double x = first_x + i * spacing;
    canvas.FillBox({x, sensor.top, x + thickness, sensor.bottom}, kGrid);
  }
  for (int i = 0; first_y + i * spacing < sensor.bottom; ++i) {
    const double y = first_y + i * spacing;
    canvas.FillBox({sensor.left, y, sensor.right, y + thickness}, kGrid);
  }
}

// Blocks along the edges, so that a missing line or column at the border shows, and in the middle of each edge a plate
// with its name.
void ChartSubject::PaintBorder(Canvas& canvas) const {
  const double border = m_layout.border;
  const Box& sensor = m_layout.sensor;
  const double across = BorderStep(sensor.right, border);
  const double down = BorderStep(sensor.bottom, border);
  for (int i = 0; i * across < sensor.right - 0.5; ++i) {
    const Light& light = i % 2 == 0 ? kPaper : kInk;
    canvas.FillBox(WholePixels({i * across, 0.0, (i + 1) * across, border}), light);
    canvas.FillBox(WholePixels({i * across, sensor.bottom - border, (i + 1) * across, sensor.bottom}), light);
  }
  for (int i = 0; i * down < sensor.bottom - 0.5; ++i) {
    const Light& light = i % 2 == 0 ? kPaper : kInk;
    canvas.FillBox(WholePixels({0.0, i * down, border, (i + 1) * down}), light);
    canvas.FillBox(WholePixels({sensor.right - border, i * down, sensor.right, (i + 1) * down}), light);
  }
  PaintEdgeMark(canvas, "TOP", {m_layout.middle.x, 0.0}, 0.0, 1.0);
  PaintEdgeMark(canvas, "BOTTOM", {m_layout.middle.x, sensor.bottom}, 0.0, -1.0);
  PaintEdgeMark(canvas, "LEFT", {0.0, m_layout.middle.y}, 1.0, 0.0);
  PaintEdgeMark(canvas, "RIGHT", {sensor.right, m_layout.middle.y}, -1.0, 0.0);
}

// (x, y) points from the edge into the picture.
void ChartSubject::PaintEdgeMark(Canvas& canvas, std::string_view label, Point edge, double x, double y) const {
  const double border = m_layout.border;
  const bool upright = y != 0.0;
  // As long as three of the border's blocks, whose neighbours are light.
  const double half = 1.5 * BorderStep(upright ? m_layout.sensor.right : m_layout.sensor.bottom, border);
  const Point middle{edge.x + 0.5 * border * x, edge.y + 0.5 * border * y};
  const double half_x = upright ? half : 0.5 * border;
  const double half_y = upright ? 0.5 * border : half;
  canvas.FillBox(WholePixels({middle.x - half_x, middle.y - half_y, middle.x + half_x, middle.y + half_y}), kPlate);
  const Turn turn = upright ? Turn::kUpright : x > 0.0 ? Turn::kUpwards : Turn::kDownwards;
  WriteText(canvas, {label, middle, 0.48 * border, turn}, kPaper);
  for (const double side : {-1.0, 1.0}) {
    const double along = side * (half - 0.9 * border);
    const Point base{edge.x + y * y * along + x * 0.8 * border, edge.y + x * x * along + y * 0.8 * border};
    const Point tip{base.x - x * 0.65 * border, base.y - y * 0.65 * border};
    const double reach = 0.38 * border;
    canvas.FillTriangle(tip, {base.x + y * reach, base.y + x * reach}, {base.x - y * reach, base.y - x * reach},
                        kPaper);
  }
}

}  // namespace Simulator
