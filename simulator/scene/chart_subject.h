// scene/chart_subject.h
// The built-in test chart.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "scene/bayer_order.h"
#include "scene/chart_layout.h"
#include "scene/subject.h"

namespace Simulator {

// Colour patches, a star and line wedges for resolution, grey steps and a ramp, marks for edges, corners and middle, a
// hand that turns once in a second, and a frame counter.
class ChartSubject : public Subject {
 public:
  ChartSubject(int sensor_width, int sensor_height, bool colour, BayerOrder bayer_order);

  void Paint(Canvas& canvas) const override;
  std::vector<MovingPart> MovingParts(std::uint64_t frame_number, Seconds time) const override;

 private:
  void PaintBackground(Canvas& canvas) const;
  void PaintBorder(Canvas& canvas) const;
  void PaintEdgeMark(Canvas& canvas, std::string_view label, Point edge, double x, double y) const;
  void PaintTitle(Canvas& canvas) const;
  void PaintWedge(Canvas& canvas, const Box& box, bool wide_end_left) const;
  void PaintGrating(Canvas& canvas, const Box& box, int period) const;
  void PaintResolution(Canvas& canvas) const;
  void PaintPatches(Canvas& canvas) const;
  void PaintStar(Canvas& canvas) const;
  void PaintDial(Canvas& canvas) const;
  void PaintGreys(Canvas& canvas) const;
  void PaintCounterPlate(Canvas& canvas) const;
  double CounterHeight() const;
  Point CounterMiddle(std::string_view part) const;
  MovingPart Hand(Seconds time) const;
  MovingPart Counter(std::uint64_t frame_number) const;

  const ChartLayout m_layout;
  const std::string m_size_legend;
  const std::string m_sensor_legend;
};

}  // namespace Simulator
