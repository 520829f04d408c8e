// bayer_reference.h
// Demosaicing written down as the definitions say it, pixel by pixel, in real numbers.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "pictures.h"

namespace BayerReference {

using Pictures::Bytes;
using Pictures::Frame;
using Kernel = std::array<std::array<double, 5>, 5>;

struct Colour {
  double red = 0;
  double green = 0;
  double blue = 0;
};

inline std::string_view Tile(int order) {
  return order == 0 ? "BGGR" : order == 1 ? "RGGB" : order == 2 ? "GBRG" : "GRBG";
}

// The colour of any column and row, also of those outside the frame.
inline char ColourAt(int order, int x, int y) {
  const auto odd = [](int i) { return static_cast<std::size_t>(std::abs(i) % 2); };
  return Tile(order)[2 * odd(y) + odd(x)];
}

inline int Reflected(int i, int size) {
  if (size == 1) return 0;
  if (i >= 0 && i < size) return i;
  const int period = 2 * (size - 1);
  const int within = ((i % period) + period) % period;
  return within < size ? within : period - within;
}

inline double Sample(const Frame& frame, int x, int y) {
  return frame.At(Reflected(x, frame.size.width), Reflected(y, frame.size.height));
}

inline double Rounded(double value) { return std::clamp(std::floor(value + 0.5), 0.0, 255.0); }

// The mean of the samples of one colour among the pixel and its eight neighbours, of the pixel alone if it has the
// colour.
inline double BilinearValue(const Frame& frame, int order, int x, int y, char colour) {
  if (ColourAt(order, x, y) == colour) return Sample(frame, x, y);
  double sum = 0;
  int count = 0;
  for (int dy = -1; dy <= 1; ++dy) {
    for (int dx = -1; dx <= 1; ++dx) {
      if (ColourAt(order, x + dx, y + dy) != colour) continue;
      sum += Sample(frame, x + dx, y + dy);
      ++count;
    }
  }
  return sum / count;
}

inline double Filtered(const Frame& frame, int x, int y, const Kernel& kernel) {
  double sum = 0;
  for (int dy = -2; dy <= 2; ++dy) {
    for (int dx = -2; dx <= 2; ++dx) {
      const double weight = kernel.begin()[dy + 2].begin()[dx + 2];
      if (weight != 0) sum += weight * Sample(frame, x + dx, y + dy);
    }
  }
  return sum / 8;
}

// Malvar, He, Cutler, "High-quality linear interpolation for demosaicing of Bayer-patterned color images", ICASSP 2004,
// figure 2.
constexpr Kernel kGreenAtChroma = {
    {{{0, 0, -1, 0, 0}}, {{0, 0, 2, 0, 0}}, {{-1, 2, 4, 2, -1}}, {{0, 0, 2, 0, 0}}, {{0, 0, -1, 0, 0}}}};
constexpr Kernel kChromaBeside = {
    {{{0, 0, 0.5, 0, 0}}, {{0, -1, 0, -1, 0}}, {{-1, 4, 5, 4, -1}}, {{0, -1, 0, -1, 0}}, {{0, 0, 0.5, 0, 0}}}};
constexpr Kernel kChromaAboveBelow = {
    {{{0, 0, -1, 0, 0}}, {{0, -1, 4, -1, 0}}, {{0.5, 0, 5, 0, 0.5}}, {{0, -1, 4, -1, 0}}, {{0, 0, -1, 0, 0}}}};
constexpr Kernel kChromaAtOther = {
    {{{0, 0, -1.5, 0, 0}}, {{0, 2, 0, 2, 0}}, {{-1.5, 0, 6, 0, -1.5}}, {{0, 2, 0, 2, 0}}, {{0, 0, -1.5, 0, 0}}}};

inline double CorrectedValue(const Frame& frame, int order, int x, int y, char colour) {
  const char here = ColourAt(order, x, y);
  if (here == colour) return Sample(frame, x, y);
  if (colour == 'G') return Filtered(frame, x, y, kGreenAtChroma);
  if (here != 'G') return Filtered(frame, x, y, kChromaAtOther);
  return Filtered(frame, x, y, ColourAt(order, x + 1, y) == colour ? kChromaBeside : kChromaAboveBelow);
}

template <class Value>
Colour ColourOf(const Frame& frame, int order, int x, int y, Value value) {
  return {Rounded(value(frame, order, x, y, 'R')), Rounded(value(frame, order, x, y, 'G')),
          Rounded(value(frame, order, x, y, 'B'))};
}

inline Colour Bilinear(const Frame& frame, int order, int x, int y) {
  return ColourOf(frame, order, x, y, BilinearValue);
}
inline Colour Corrected(const Frame& frame, int order, int x, int y) {
  return ColourOf(frame, order, x, y, CorrectedValue);
}
inline double Binomial(const Frame& frame, int, int x, int y) {
  constexpr Kernel kBinomial = {
      {{{0, 0, 0, 0, 0}}, {{0, .5, 1, .5, 0}}, {{0, 1, 2, 1, 0}}, {{0, .5, 1, .5, 0}}, {{0, 0, 0, 0, 0}}}};
  return Rounded(Filtered(frame, x, y, kBinomial));
}
inline double Luma(const Colour& c) {
  const auto in_256ths = [](double weight, double value) { return std::floor(weight * value / 256); };
  return Rounded((in_256ths(19595, c.red) + in_256ths(38470, c.green) + in_256ths(7471, c.blue)) / 256);
}
inline double WeightedMean(const Colour& c) { return Rounded((c.red + 2 * c.green + c.blue) / 4); }

// The pixels of the part of the frame, from its top left, that `size` covers.
template <class Pixel>
Bytes Image(const Frame& frame, int order, const BSize& size, Pixel pixel) {
  Bytes bytes;
  for (int y = 0; y < std::min(size.height, frame.size.height); ++y) {
    for (int x = 0; x < std::min(size.width, frame.size.width); ++x) {
      if constexpr (std::is_same_v<decltype(pixel(frame, order, x, y)), Colour>) {
        const Colour colour = pixel(frame, order, x, y);
        for (double value : {colour.red, colour.green, colour.blue}) bytes.push_back(static_cast<std::uint8_t>(value));
      } else {
        bytes.push_back(static_cast<std::uint8_t>(pixel(frame, order, x, y)));
      }
    }
  }
  return bytes;
}

}  // namespace BayerReference
