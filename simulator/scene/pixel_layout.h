// scene/pixel_layout.h
// The pixel formats of the simulated cameras: the samples each needs and how they lie in memory.
#pragma once

#include <cstddef>
#include <cstdint>

#include "VimbaC.h"
#include "scene/still.h"

namespace Simulator {

struct PixelLayout {
  VmbPixelFormat_t pixel_format = 0;
  // Of a colour sensor. A monochrome one has luminance only.
  Samples samples = Samples::kLuminance;
  BayerOrder bayer_order = BayerOrder::kBggr;
  std::size_t bytes_per_pixel = 1;
  void (*pack)(const std::uint8_t* rgb, std::size_t width, std::uint8_t* out) = nullptr;

  // Throws std::invalid_argument for an unknown format.
  static const PixelLayout& Of(VmbPixelFormat_t pixel_format);
  // From `width` pixels of 1 (grey or mosaic) or 3 samples each.
  void PackRow(const std::uint8_t* row, int channels, std::size_t width, std::uint8_t* out) const;
};

}  // namespace Simulator
