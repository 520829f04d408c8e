// scene/still.cpp
// A subject's parts in the form in which frames are made from them: eight-bit sRGB codes of the samples that a format
// needs.
#include "scene/still.h"

#include <algorithm>
#include <cmath>

#include "scene/tone_curve.h"

namespace Simulator {
namespace {

// A band holds about this many rows of the sensor, so that drawing a large picture takes little memory.
constexpr int kBandRows = 64;

// The mean light of one binned pixel.
Light MeanLight(const Canvas& canvas, int column, int top, int binning_x, int binning_y) {
  std::array<std::uint64_t, 3> sums{};
  for (int y = top; y < top + binning_y; ++y) {
    const std::uint16_t* pixel = canvas.Row(y) + std::size_t{3} * static_cast<std::size_t>(column);
    for (int x = 0; x < binning_x; ++x, pixel += 3) {
      for (std::size_t channel = 0; channel < 3; ++channel) sums[channel] += pixel[channel];
    }
  }
  const std::uint64_t count = static_cast<std::uint64_t>(binning_x) * static_cast<std::uint64_t>(binning_y);
  Light mean;
  for (std::size_t channel = 0; channel < 3; ++channel) {
    mean[channel] = static_cast<std::uint16_t>((sums[channel] + count / 2) / count);
  }
  return mean;
}

// What a monochrome sensor sees: the weights of the sRGB primaries, in 1/65536.
std::uint16_t Luminance(const Light& light) {
  return static_cast<std::uint16_t>((13933u * light[0] + 46871u * light[1] + 4732u * light[2] + 32768u) >> 16);
}

void StoreSamples(const Light& light, const StillKind& kind, int x, int y, std::uint8_t* codes) {
  switch (kind.samples) {
    case Samples::kLuminance:
      codes[0] = CodeOfLight(Luminance(light));
      return;
    case Samples::kMosaic:
      codes[0] = CodeOfLight(light[static_cast<std::size_t>(MosaicChannel(kind.bayer_order, x, y))]);
      return;
    case Samples::kRgb:
      for (std::size_t channel = 0; channel < 3; ++channel) codes[channel] = CodeOfLight(light[channel]);
      return;
  }
}

int RoundedDown(double value, int low, int high) {
  return value <= low ? low : value >= high ? high : static_cast<int>(std::floor(value));
}

}  // namespace

int MosaicChannel(BayerOrder bayer_order, int x, int y) {
  const bool red_in_even_columns = bayer_order == BayerOrder::kRggb || bayer_order == BayerOrder::kGbrg;
  const bool red_in_even_rows = bayer_order == BayerOrder::kRggb || bayer_order == BayerOrder::kGrbg;
  const bool red_column = (x % 2 == 0) == red_in_even_columns;
  const bool red_row = (y % 2 == 0) == red_in_even_rows;
  if (red_column != red_row) return 1;
  return red_row ? 0 : 2;
}

bool StillKind::operator==(const StillKind& other) const {
  return samples == other.samples && binning_x == other.binning_x && binning_y == other.binning_y &&
         (samples != Samples::kMosaic || bayer_order == other.bayer_order);
}

void Still::CopyRow(int x, int y, int count, std::uint8_t* row) const {
  const int first = std::max(x, window.left);
  const int end = std::min(x + count, window.left + window.width);
  if (y < window.top || y >= window.top + window.height || first >= end) return;
  const auto channels = static_cast<std::ptrdiff_t>(kind.Channels());
  const std::ptrdiff_t from = static_cast<std::ptrdiff_t>(y - window.top) * window.width + first - window.left;
  std::copy_n(codes.begin() + from * channels, (end - first) * channels, row + (first - x) * channels);
}

Window WindowAround(const Box& box, const StillKind& kind, const Window& bounds) {
  const int right = bounds.left + bounds.width;
  const int bottom = bounds.top + bounds.height;
  const int left = RoundedDown(box.left / kind.binning_x, bounds.left, right);
  const int top = RoundedDown(box.top / kind.binning_y, bounds.top, bottom);
  return {left, top, RoundedDown(box.right / kind.binning_x + 1.0, left, right) - left,
          RoundedDown(box.bottom / kind.binning_y + 1.0, top, bottom) - top};
}

Still DrawStill(const Subject& subject, const std::vector<MovingPart>& parts, const StillKind& kind,
                const Window& window) {
  Still still{kind, window, {}};
  const auto channels = static_cast<std::size_t>(kind.Channels());
  still.codes.resize(static_cast<std::size_t>(window.width) * static_cast<std::size_t>(window.height) * channels);
  std::uint8_t* codes = still.codes.data();
  const int band_rows = std::max(1, kBandRows / kind.binning_y);
  const int bottom = window.top + window.height;
  for (int top = window.top; top < bottom; top += band_rows) {
    const int rows = std::min(band_rows, bottom - top);
    Canvas band(window.left * kind.binning_x, top * kind.binning_y, window.width * kind.binning_x,
                rows * kind.binning_y);
    subject.Paint(band);
    for (const MovingPart& part : parts) part.paint(band);
    for (int y = top; y < top + rows; ++y) {
      for (int x = 0; x < window.width; ++x, codes += channels) {
        const Light light = MeanLight(band, x * kind.binning_x, y * kind.binning_y, kind.binning_x, kind.binning_y);
        StoreSamples(light, kind, window.left + x, y, codes);
      }
    }
  }
  return still;
}

}  // namespace Simulator
