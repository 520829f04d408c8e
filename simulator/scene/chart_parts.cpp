// scene/chart_parts.cpp
// The test chart's content, part by part from the top.
#include <algorithm>
#include <array>
#include <cmath>

#include "scene/chart_colours.h"
#include "scene/chart_patches.h"
#include "scene/chart_subject.h"
#include "scene/stroke_font.h"
#include "scene/tone_curve.h"

namespace Simulator {
namespace {

constexpr std::string_view kTitle = "kelCameraVimba simulated camera";
constexpr std::string_view kCounterLabel = "FRAME ";
constexpr std::string_view kCounterWidest = "FRAME 000000";
constexpr std::size_t kCounterDigits = 6;
constexpr std::uint64_t kCounterEnd = 1'000'000;
constexpr int kStarCycles = 36;
constexpr int kDialMarks = 40;
constexpr int kGreySteps = 11;
constexpr int kWedgeLines = 13;
// Sensor pixels from line to line.
constexpr std::array<int, 5> kGratingPeriods{16, 12, 8, 6, 4};
// In the layout's units.
constexpr double kGratingWidth = 7.0;
constexpr double kPi = 3.14159265358979323846;

Point Offset(Point from, const Direction& direction, double length) {
  return {from.x + direction.x * length, from.y + direction.y * length};
}

Box Inset(const Box& box, double by) { return {box.left + by, box.top + by, box.right - by, box.bottom - by}; }

Light Grey(double code) {
  const int step = static_cast<int>(std::lround(code));
  return LightOfSrgb(step, step, step);
}

// The text of the number's last six digits.
std::string CounterText(std::uint64_t frame_number) {
  std::string text = std::to_string(frame_number % kCounterEnd);
  return std::string(kCounterDigits - text.size(), '0') + text;
}

}  // namespace

void ChartSubject::PaintTitle(Canvas& canvas) const {
  const Box& box = m_layout.title;
  const double unit = m_layout.unit;
  canvas.FillBox(box, kPlate);
  const double bar = 2.6 * unit;
  const double bars = bar * kBars.size();
  const double top = box.top + 1.5 * unit;
  double left = box.right - 1.5 * unit - bars;
  const double room = left - box.left - 5.0 * unit;
  for (const Light& light : kBars) {
    canvas.FillBox(WholePixels({left, top, left + bar, box.bottom - 1.5 * unit}), light);
    left += bar;
  }
  const double height = HeightToFit(kTitle, room, 4.2 * unit);
  const double start = box.left + 2.5 * unit;
  WriteText(canvas, {kTitle, {start + 0.5 * TextWidth(kTitle, height), 0.5 * (box.top + box.bottom)}, height}, kPaper);
}

// Lines that come together from one end to the other. They melt into grey at the camera's resolution.
void ChartSubject::PaintWedge(Canvas& canvas, const Box& box, bool wide_end_left) const {
  const double widest = box.Height() / (kWedgeLines - 0.5);
  const double narrowest = 0.3 * widest;
  const double centre = 0.5 * (box.top + box.bottom);
  canvas.Paint(box, kInk, [=](double x, double y) {
    const double along = std::clamp((x - box.left) / box.Width(), 0.0, 1.0);
    const double period = widest + (narrowest - widest) * (wide_end_left ? along : 1.0 - along);
    const double lines = (y - centre) / period;
    if (std::fabs(lines) > 0.5 * kWedgeLines) return 0.0;
    // Half a period is dark and half is light, with a dark line in the middle.
    const double from_line = std::fabs(lines - std::floor(lines + 0.5));
    return 0.5 + (0.25 - from_line) * period;
  });
}

// Upright lines, `period` sensor pixels from one to the next.
void ChartSubject::PaintGrating(Canvas& canvas, const Box& box, int period) const {
  const int lines = static_cast<int>((box.Width() + 0.5 * period) / period);
  for (int i = 0; i < lines; ++i) {
    const double x = box.left + i * period;
    canvas.FillBox({x, box.top, x + 0.5 * period, box.bottom}, kInk);
  }
}

void ChartSubject::PaintResolution(Canvas& canvas) const {
  const Box& box = m_layout.resolution;
  canvas.FillBox(box, kPaper);
  const double gap = 1.5 * m_layout.unit;
  const Box inside = Inset(box, gap);
  const double middle = m_layout.middle.x;
  const double half = kGratingPeriods.size() * 0.5 * kGratingWidth * m_layout.unit;
  PaintWedge(canvas, {inside.left, inside.top, middle - half - gap, inside.bottom}, true);
  PaintWedge(canvas, {middle + half + gap, inside.top, inside.right, inside.bottom}, false);
  const double width = kGratingWidth * m_layout.unit;
  const double label = 1.7 * m_layout.unit;
  for (std::size_t i = 0; i < kGratingPeriods.size(); ++i) {
    const double left = middle - half + static_cast<double>(i) * width;
    const Box grating{left + 0.3 * gap, inside.top, left + width - 0.3 * gap, inside.bottom - 1.6 * label};
    PaintGrating(canvas, WholePixels(grating), kGratingPeriods[i]);
    WriteText(canvas, {std::to_string(kGratingPeriods[i]), {left + 0.5 * width, inside.bottom - 0.5 * label}, label},
              kInk);
  }
}

void ChartSubject::PaintPatches(Canvas& canvas) const {
  for (const Box& panel : m_layout.panels) canvas.FillBox(panel, kInk);
  for (std::size_t i = 0; i < kChartPatches.size(); ++i) {
    const ChartPatch& patch = kChartPatches[i];
    canvas.FillBox(m_layout.Patch(static_cast<int>(i)), LightOfSrgb(patch.red, patch.green, patch.blue));
  }
}

void ChartSubject::PaintDial(Canvas& canvas) const {
  const double unit = m_layout.unit;
  canvas.FillDisc(m_layout.middle, m_layout.ring_outer, kPlate);
  for (int mark = 0; mark < kDialMarks; ++mark) {
    const Direction direction = DirectionAt(static_cast<double>(mark) / kDialMarks);
    const bool quarter = mark % (kDialMarks / 4) == 0;
    const bool tenth = mark % (kDialMarks / 10) == 0;
    const double outer = m_layout.ring_outer - 0.7 * unit;
    const double inner = outer - (quarter ? 2.6 : tenth ? 2.0 : 1.2) * unit;
    canvas.Stroke(Offset(m_layout.middle, direction, inner), Offset(m_layout.middle, direction, outer),
                  (quarter ? 0.7 : 0.35) * unit, quarter ? kPaper : kLegend);
  }
}

void ChartSubject::PaintStar(Canvas& canvas) const {
  const Point middle = m_layout.middle;
  const double radius = m_layout.star_radius;
  canvas.FillDisc(middle, radius + 0.35 * m_layout.unit, kPaper);
  const Box box{middle.x - radius, middle.y - radius, middle.x + radius, middle.y + radius};
  canvas.Paint(box, kInk, [=](double x, double y) {
    const double squared = (x - middle.x) * (x - middle.x) + (y - middle.y) * (y - middle.y);
    if (squared > (radius + 1.0) * (radius + 1.0)) return 0.0;
    const double distance = std::sqrt(squared);
    const double cycles = TurnsOf(x - middle.x, y - middle.y) * kStarCycles;
    const double from_spoke = std::fabs(cycles - std::floor(cycles + 0.5));
    const double spoke = 0.5 + (0.25 - from_spoke) * (2.0 * kPi / kStarCycles) * distance;
    return std::min({spoke, 1.0, radius + 0.5 - distance});
  });
  const double mark = 0.09 * radius;
  const double line = std::max(1.0, 0.1 * m_layout.unit);
  canvas.FillDisc(middle, mark, kPaper);
  canvas.FillRing(middle, mark, 2.0 * line, kHand);
  canvas.FillBox({middle.x - mark, middle.y - 0.5 * line, middle.x + mark, middle.y + 0.5 * line}, kInk);
  canvas.FillBox({middle.x - 0.5 * line, middle.y - mark, middle.x + 0.5 * line, middle.y + mark}, kInk);
}

void ChartSubject::PaintGreys(Canvas& canvas) const {
  const Box& steps = m_layout.steps;
  const double step = steps.Width() / kGreySteps;
  for (int i = 0; i < kGreySteps; ++i) {
    const Box box{steps.left + i * step, steps.top, steps.left + (i + 1) * step, steps.bottom};
    canvas.FillBox(WholePixels(box), Grey(255.0 * i / (kGreySteps - 1)));
  }
  // From light to dark, so that each step lies next to another grey.
  const Box& ramp = m_layout.ramp;
  const int columns = static_cast<int>(ramp.Width());
  for (int i = 0; i < columns; ++i) {
    canvas.FillBox({ramp.left + i, ramp.top, ramp.left + i + 1.0, ramp.bottom}, Grey(255.0 - 255.0 * i / columns));
  }
}

void ChartSubject::PaintCounterPlate(Canvas& canvas) const {
  const Box& box = m_layout.counter;
  canvas.FillBox(box, kPlate);
  const double height = CounterHeight();
  WriteText(canvas, {kCounterLabel, CounterMiddle(kCounterLabel), height}, kPaper);
  const double half = 0.5 * TextWidth(kCounterWidest, height);
  const double room = 0.5 * box.Width() - half - 6.0 * m_layout.unit;
  const double small = std::min(HeightToFit(m_size_legend, room, 2.6 * m_layout.unit),
                                HeightToFit(m_sensor_legend, room, 2.6 * m_layout.unit));
  const double from_middle = half + 3.0 * m_layout.unit + 0.5 * room;
  WriteText(canvas, {m_size_legend, {m_layout.middle.x - from_middle, 0.5 * (box.top + box.bottom)}, small}, kLegend);
  WriteText(canvas, {m_sensor_legend, {m_layout.middle.x + from_middle, 0.5 * (box.top + box.bottom)}, small}, kLegend);
}

double ChartSubject::CounterHeight() const {
  return HeightToFit(kCounterWidest, 0.56 * m_layout.counter.Width(), 6.6 * m_layout.unit);
}

// Label and digits share one line, whose length does not change with the number.
Point ChartSubject::CounterMiddle(std::string_view part) const {
  const double height = CounterHeight();
  const double half = 0.5 * TextWidth(kCounterWidest, height);
  const double own = 0.5 * TextWidth(part, height);
  const Box& box = m_layout.counter;
  const double x = part == kCounterLabel ? m_layout.middle.x - half + own : m_layout.middle.x + half - own;
  return {x, 0.5 * (box.top + box.bottom)};
}

MovingPart ChartSubject::Hand(Seconds time) const {
  const Direction direction = DirectionAt(time.count());
  const double unit = m_layout.unit;
  const Point from = Offset(m_layout.middle, direction, m_layout.star_radius + 1.9 * unit);
  const Point to = Offset(m_layout.middle, direction, m_layout.ring_outer - 1.6 * unit);
  const double thickness = 2.2 * unit;
  const double reach = 0.5 * thickness + 1.0;
  const Box box{std::min(from.x, to.x) - reach, std::min(from.y, to.y) - reach, std::max(from.x, to.x) + reach,
                std::max(from.y, to.y) + reach};
  return {box, [=](Canvas& canvas) { canvas.Stroke(from, to, thickness, kHand); }};
}

MovingPart ChartSubject::Counter(std::uint64_t frame_number) const {
  const std::string text = CounterText(frame_number);
  const Point middle = CounterMiddle(text);
  const double height = CounterHeight();
  return {TextBox({text, middle, height}), [=](Canvas& canvas) { WriteText(canvas, {text, middle, height}, kDigits); }};
}

}  // namespace Simulator
