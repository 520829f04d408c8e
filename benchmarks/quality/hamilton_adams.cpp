// hamilton_adams.cpp
// A directional way to get colours back out of a mosaic, for comparison.
#include "hamilton_adams.h"

#include <cstddef>
#include <cstdlib>

#include "rows/bayer_pixel.h"

namespace {

constexpr int kRed = 0;
constexpr int kGreen = 1;
constexpr int kBlue = 2;

struct Step {
  int x;
  int y;
};
constexpr Step kBeside{1, 0};
constexpr Step kBelow{0, 1};
constexpr Step kFalling{1, 1};
constexpr Step kRising{1, -1};

class Plane {
 public:
  explicit Plane(const BSize& size)
      : m_size(size), m_values(static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height)) {}
  Plane(const BSize& size, const std::vector<std::uint8_t>& values) : m_size(size), m_values(values) {}

  // Mirrored beyond the edges.
  int At(int x, int y) const {
    return m_values[Index(Rows::Mirrored(x, m_size.width), Rows::Mirrored(y, m_size.height))];
  }
  void Set(int x, int y, int value) { m_values[Index(x, y)] = static_cast<std::uint8_t>(Rows::ClampToByte(value)); }
  const BSize& Size() const { return m_size; }

  int Sum(int x, int y, const Step& step, int distance) const {
    return At(x - distance * step.x, y - distance * step.y) + At(x + distance * step.x, y + distance * step.y);
  }
  int Difference(int x, int y, const Step& step) const {
    return std::abs(At(x - step.x, y - step.y) - At(x + step.x, y + step.y));
  }
  // The second difference over samples `distance` apart.
  int Bend(int x, int y, const Step& step, int distance) const { return 2 * At(x, y) - Sum(x, y, step, distance); }

 private:
  std::size_t Index(int x, int y) const {
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(m_size.width) + static_cast<std::size_t>(x);
  }

  BSize m_size;
  std::vector<std::uint8_t> m_values;
};

int ColourAt(int x, int y) { return (x & 1) + (y & 1); }

// Of two estimates the one along the smaller gradient.
int Chosen(int first, int first_gradient, int second, int second_gradient) {
  if (first_gradient == second_gradient) return (first + second + 1) >> 1;
  return first_gradient < second_gradient ? first : second;
}

int GreenAt(const Plane& mosaic, int x, int y) {
  const auto estimate = [&](const Step& step) {
    return (2 * mosaic.Sum(x, y, step, 1) + mosaic.Bend(x, y, step, 2) + 2) >> 2;
  };
  const auto gradient = [&](const Step& step) {
    return mosaic.Difference(x, y, step) + std::abs(mosaic.Bend(x, y, step, 2));
  };
  return Chosen(estimate(kBeside), gradient(kBeside), estimate(kBelow), gradient(kBelow));
}

// The colour of the samples at `step` from a pixel, on both sides.
int ChromaAlong(const Plane& mosaic, const Plane& green, int x, int y, const Step& step) {
  return (mosaic.Sum(x, y, step, 1) + green.Bend(x, y, step, 1) + 1) >> 1;
}

int OppositeChromaAt(const Plane& mosaic, const Plane& green, int x, int y) {
  const auto gradient = [&](const Step& step) {
    return mosaic.Difference(x, y, step) + std::abs(green.Bend(x, y, step, 1));
  };
  return Chosen(ChromaAlong(mosaic, green, x, y, kFalling), gradient(kFalling),
                ChromaAlong(mosaic, green, x, y, kRising), gradient(kRising));
}

int ChromaAt(const Plane& mosaic, const Plane& green, int x, int y, int colour) {
  const int sampled = ColourAt(x, y);
  if (sampled == colour) return mosaic.At(x, y);
  if (sampled != kGreen) return OppositeChromaAt(mosaic, green, x, y);
  const bool in_this_row = ColourAt(x + 1, y) == colour;
  return ChromaAlong(mosaic, green, x, y, in_this_row ? kBeside : kBelow);
}

}  // namespace

std::vector<std::uint8_t> HamiltonAdams(const std::vector<std::uint8_t>& samples, const BSize& size) {
  const Plane mosaic(size, samples);
  Plane green(size);
  for (int y = 0; y < size.height; ++y) {
    for (int x = 0; x < size.width; ++x) {
      green.Set(x, y, ColourAt(x, y) == kGreen ? mosaic.At(x, y) : GreenAt(mosaic, x, y));
    }
  }
  std::vector<std::uint8_t> rgb;
  rgb.reserve(3 * samples.size());
  for (int y = 0; y < size.height; ++y) {
    for (int x = 0; x < size.width; ++x) {
      for (int colour : {kRed, kGreen, kBlue}) {
        const int value = colour == kGreen ? green.At(x, y) : ChromaAt(mosaic, green, x, y, colour);
        rgb.push_back(static_cast<std::uint8_t>(Rows::ClampToByte(value)));
      }
    }
  }
  return rgb;
}
