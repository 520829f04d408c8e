// engine/picture_means.cpp
// How bright a picture is and of what colour, for a camera's automatics.
#include "engine/picture_means.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include "VimbaC.h"

namespace Simulator {
namespace {

enum Channel { kRed, kGreen, kBlue };

// The colours of a mosaic's top left four pixels, row by row.
using Mosaic = std::array<Channel, 4>;

Mosaic MosaicOf(VmbPixelFormat_t format) {
  switch (format) {
    case VmbPixelFormatBayerGR8:
      return {kGreen, kRed, kBlue, kGreen};
    case VmbPixelFormatBayerRG8:
      return {kRed, kGreen, kGreen, kBlue};
    case VmbPixelFormatBayerGB8:
      return {kGreen, kBlue, kRed, kGreen};
    default:
      return {kBlue, kGreen, kGreen, kRed};
  }
}

class Means {
 public:
  void Add(Channel channel, double coded) {
    const double value = std::clamp(coded / 255.0, 0.0, 1.0);
    m_sum[channel] += value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    m_count[channel] += 1.0;
  }
  double Of(Channel channel) const { return m_count[channel] > 0.0 ? m_sum[channel] / m_count[channel] : 0.0; }

 private:
  std::array<double, 3> m_sum{};
  std::array<double, 3> m_count{};
};

// U Y V Y, BT.601, full range. The last pixel of an odd row ends after its Y, and the next row follows. It takes the V
// of the pair before. A row of one pixel has no colour.
void AddYuv(Means& means, const std::uint8_t* pixel, int x, int width) {
  const std::uint8_t* const pair = pixel - 2 * std::ptrdiff_t{x % 2};
  const double y = pixel[1];
  const bool whole = x % 2 == 1 || x + 1 < width;
  const double u = width > 1 ? pair[0] - 128.0 : 0.0;
  const double v = whole ? pair[2] - 128.0 : width > 1 ? pair[-2] - 128.0 : 0.0;
  means.Add(kRed, y + 1.402 * v);
  means.Add(kGreen, y - 0.344136 * u - 0.714136 * v);
  means.Add(kBlue, y + 1.772 * u);
}

void AddPixel(Means& means, const Shot& shot, const std::uint8_t* picture, int x, int y) {
  const std::size_t at =
      static_cast<std::size_t>(y) * static_cast<std::size_t>(shot.width) + static_cast<std::size_t>(x);
  switch (shot.pixel_format) {
    case VmbPixelFormatMono8:
      for (const Channel channel : {kRed, kGreen, kBlue}) means.Add(channel, picture[at]);
      return;
    case VmbPixelFormatRgb8:
      for (const Channel channel : {kRed, kGreen, kBlue}) means.Add(channel, picture[3 * at + channel]);
      return;
    case VmbPixelFormatYuv422:
      return AddYuv(means, picture + 2 * at, x, shot.width);
    default:
      const int phase = 2 * ((shot.offset_y + y) % 2) + (shot.offset_x + x) % 2;
      means.Add(MosaicOf(shot.pixel_format)[static_cast<std::size_t>(phase)], picture[at]);
  }
}

}  // namespace

PictureMeans MeansOf(const Shot& shot, const std::uint8_t* picture) {
  // Some thousands of pixels are enough. An odd step meets every place of the mosaic.
  constexpr int kSamples = 101;
  const int step_x = std::max(1, shot.width / kSamples) | 1;
  const int step_y = std::max(1, shot.height / kSamples) | 1;
  Means means;
  for (int y = 0; y < shot.height; y += step_y) {
    for (int x = 0; x < shot.width; x += step_x) AddPixel(means, shot, picture, x, y);
  }
  return {means.Of(kRed), means.Of(kGreen), means.Of(kBlue)};
}

}  // namespace Simulator
