// scene/canvas.cpp
// Anti-aliased drawing in linear light, into a band of rows of the whole picture.
#include "scene/canvas.h"

#include <algorithm>
#include <cmath>

#include "scene/tone_curve.h"

namespace Simulator {
namespace {

// How much of the unit length around `middle` lies between the borders.
double Overlap(double middle, double low, double high) {
  return std::min(middle + 0.5, high) - std::max(middle - 0.5, low);
}

int ClampToInt(double value, int low, int high) {
  return value <= low ? low : value >= high ? high : static_cast<int>(value);
}

Box BoxAround(Point centre, double radius) {
  return {centre.x - radius, centre.y - radius, centre.x + radius, centre.y + radius};
}

// Distance from the stroke's middle line.
class Capsule {
 public:
  Capsule(Point from, Point to) : m_from(from), m_x(to.x - from.x), m_y(to.y - from.y) {
    const double length_squared = m_x * m_x + m_y * m_y;
    m_scale = length_squared > 0.0 ? 1.0 / length_squared : 0.0;
  }

  double DistanceSquared(double x, double y) const {
    const double dx = x - m_from.x;
    const double dy = y - m_from.y;
    const double along = std::clamp((dx * m_x + dy * m_y) * m_scale, 0.0, 1.0);
    const double across_x = dx - along * m_x;
    const double across_y = dy - along * m_y;
    return across_x * across_x + across_y * across_y;
  }

 private:
  Point m_from;
  double m_x;
  double m_y;
  double m_scale;
};

// Signed distance of (x, y) from the line from a to b, growing to its right in a picture whose y grows downwards.
struct Edge {
  Edge(Point a, Point b) : start(a) {
    const double length = std::sqrt((b.x - a.x) * (b.x - a.x) + (b.y - a.y) * (b.y - a.y));
    normal_x = length > 0.0 ? -(b.y - a.y) / length : 0.0;
    normal_y = length > 0.0 ? (b.x - a.x) / length : 0.0;
  }
  double Distance(double x, double y) const { return (x - start.x) * normal_x + (y - start.y) * normal_y; }

  Point start;
  double normal_x;
  double normal_y;
};

}  // namespace

Light LightOfSrgb(int red, int green, int blue) {
  return {LightOfCode(static_cast<std::uint8_t>(red)), LightOfCode(static_cast<std::uint8_t>(green)),
          LightOfCode(static_cast<std::uint8_t>(blue))};
}

Canvas::Canvas(int left, int top, int width, int height)
    : m_left(left),
      m_top(top),
      m_width(width),
      m_height(height),
      m_pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 3) {}

bool Canvas::Touches(const Box& box) const {
  const Window window = Clip(box);
  return window.left < window.right && window.top < window.bottom;
}

void Canvas::Fill(const Light& light) {
  for (std::size_t i = 0; i < m_pixels.size(); i += 3) std::copy(light.begin(), light.end(), &m_pixels[i]);
}

void Canvas::FillBox(const Box& box, const Light& light) {
  Paint(box, light, [&box](double x, double y) {
    const double across = Overlap(x, box.left, box.right);
    const double down = Overlap(y, box.top, box.bottom);
    return across > 0.0 && down > 0.0 ? across * down : 0.0;
  });
}

void Canvas::FillDisc(Point centre, double radius, const Light& light) { Stroke(centre, centre, 2.0 * radius, light); }

void Canvas::FillRing(Point centre, double radius, double thickness, const Light& light) {
  const double outer = radius + 0.5 * thickness;
  const double inner = std::max(0.0, radius - 0.5 * thickness);
  // The ring's hole is most of its box: it is left out before any square root is taken.
  const double hole = inner > 1.0 ? (inner - 1.0) * (inner - 1.0) : -1.0;
  Paint(BoxAround(centre, outer + 1.0), light, [=](double x, double y) {
    const double squared = (x - centre.x) * (x - centre.x) + (y - centre.y) * (y - centre.y);
    if (squared < hole || squared > (outer + 1.0) * (outer + 1.0)) return 0.0;
    return Overlap(std::sqrt(squared), inner, outer);
  });
}

void Canvas::Stroke(Point from, Point to, double thickness, const Light& light) {
  const double radius = 0.5 * thickness;
  // A stroke thinner than a pixel fades instead of breaking up.
  const double strength = std::min(1.0, thickness);
  const double reach = radius + 0.5;
  const Box box{std::min(from.x, to.x) - reach, std::min(from.y, to.y) - reach, std::max(from.x, to.x) + reach,
                std::max(from.y, to.y) + reach};
  const Capsule capsule(from, to);
  Paint(box, light, [=](double x, double y) {
    const double squared = capsule.DistanceSquared(x, y);
    if (squared >= reach * reach) return 0.0;
    return std::min(strength, reach - std::sqrt(squared));
  });
}

void Canvas::FillTriangle(Point a, Point b, Point c, const Light& light) {
  if (Edge(a, b).Distance(c.x, c.y) < 0.0) std::swap(b, c);
  const std::array<Edge, 3> edges{Edge(a, b), Edge(b, c), Edge(c, a)};
  const Box box{std::min({a.x, b.x, c.x}) - 1.0, std::min({a.y, b.y, c.y}) - 1.0, std::max({a.x, b.x, c.x}) + 1.0,
                std::max({a.y, b.y, c.y}) + 1.0};
  Paint(box, light, [&edges](double x, double y) {
    return 0.5 + std::min({edges[0].Distance(x, y), edges[1].Distance(x, y), edges[2].Distance(x, y)});
  });
}

Canvas::Window Canvas::Clip(const Box& box) const {
  const int right = m_left + m_width;
  const int bottom = m_top + m_height;
  return {ClampToInt(std::floor(box.left), m_left, right), ClampToInt(std::floor(box.top), m_top, bottom),
          ClampToInt(std::ceil(box.right), m_left, right), ClampToInt(std::ceil(box.bottom), m_top, bottom)};
}

void Canvas::Blend(std::uint16_t* pixel, const Light& light, double coverage) {
  constexpr int kWeightBits = 15;
  constexpr int kFullWeight = 1 << kWeightBits;
  if (coverage <= 0.0) return;
  const int weight = coverage >= 1.0 ? kFullWeight : static_cast<int>(coverage * kFullWeight);
  for (std::size_t channel = 0; channel < 3; ++channel) {
    const std::int64_t difference = static_cast<std::int64_t>(light[channel]) - pixel[channel];
    pixel[channel] =
        static_cast<std::uint16_t>(pixel[channel] + ((difference * weight + kFullWeight / 2) >> kWeightBits));
  }
}

}  // namespace Simulator
