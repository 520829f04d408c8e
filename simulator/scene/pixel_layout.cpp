// scene/pixel_layout.cpp
// The pixel formats of the simulated cameras: the samples each needs and how they lie in memory.
#include "scene/pixel_layout.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string>
#include <vector>

namespace Simulator {
namespace {

// BT.601 in 1/65536. Chroma is centred on 128 and uses the full range of bytes.
int Luma(int red, int green, int blue) { return (19595 * red + 38470 * green + 7471 * blue + 32768) >> 16; }

std::uint8_t Chroma(int weighted_sum) {
  return static_cast<std::uint8_t>(std::clamp(((weighted_sum + 32768) >> 16) + 128, 0, 255));
}

void PackGrey(const std::uint8_t* rgb, std::size_t width, std::uint8_t* out) {
  for (std::size_t x = 0; x < width; ++x, rgb += 3) out[x] = static_cast<std::uint8_t>(Luma(rgb[0], rgb[1], rgb[2]));
}

void PackRgb(const std::uint8_t* rgb, std::size_t width, std::uint8_t* out) { std::copy_n(rgb, 3 * width, out); }

// Two pixels share the chroma of their mean; the last one of an odd row has its own blue difference.
void PackYuv422(const std::uint8_t* rgb, std::size_t width, std::uint8_t* out) {
  for (std::size_t x = 0; x < width; x += 2, rgb += 6, out += 4) {
    const bool pair = x + 1 < width;
    const std::uint8_t* second = pair ? rgb + 3 : rgb;
    const int red = (rgb[0] + second[0] + 1) / 2;
    const int green = (rgb[1] + second[1] + 1) / 2;
    const int blue = (rgb[2] + second[2] + 1) / 2;
    out[0] = Chroma(-11059 * red - 21709 * green + 32768 * blue);
    out[1] = static_cast<std::uint8_t>(Luma(rgb[0], rgb[1], rgb[2]));
    if (!pair) return;
    out[2] = Chroma(32768 * red - 27439 * green - 5329 * blue);
    out[3] = static_cast<std::uint8_t>(Luma(second[0], second[1], second[2]));
  }
}

constexpr std::array<PixelLayout, 7> kLayouts{{
    {VmbPixelFormatMono8, Samples::kRgb, BayerOrder::kBggr, 1, PackGrey},
    {VmbPixelFormatBayerBG8, Samples::kMosaic, BayerOrder::kBggr, 1, nullptr},
    {VmbPixelFormatBayerRG8, Samples::kMosaic, BayerOrder::kRggb, 1, nullptr},
    {VmbPixelFormatBayerGB8, Samples::kMosaic, BayerOrder::kGbrg, 1, nullptr},
    {VmbPixelFormatBayerGR8, Samples::kMosaic, BayerOrder::kGrbg, 1, nullptr},
    {VmbPixelFormatRgb8, Samples::kRgb, BayerOrder::kBggr, 3, PackRgb},
    {VmbPixelFormatYuv422, Samples::kRgb, BayerOrder::kBggr, 2, PackYuv422},
}};

}  // namespace

const PixelLayout& PixelLayout::Of(VmbPixelFormat_t pixel_format) {
  const auto found = std::find_if(kLayouts.begin(), kLayouts.end(), [pixel_format](const PixelLayout& layout) {
    return layout.pixel_format == pixel_format;
  });
  if (found == kLayouts.end()) throw std::invalid_argument("pixel format " + std::to_string(pixel_format));
  return *found;
}

void PixelLayout::PackRow(const std::uint8_t* row, int channels, std::size_t width, std::uint8_t* out) const {
  if (channels == 3) {
    pack(row, width, out);
    return;
  }
  if (bytes_per_pixel == 1) {
    std::copy_n(row, width, out);
    return;
  }
  std::vector<std::uint8_t> rgb(3 * width);
  for (std::size_t i = 0; i < rgb.size(); ++i) rgb[i] = row[i / 3];
  pack(rgb.data(), width, out);
}

}  // namespace Simulator
