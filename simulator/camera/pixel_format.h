// camera/pixel_format.h
// The pixel formats that simulated cameras know.
#pragma once

#include <algorithm>
#include <array>
#include <string_view>

#include "VimbaC.h"

namespace Simulator {

struct PixelFormat {
  std::string_view name;
  VmbPixelFormat_t code;
  int bytes_per_pixel;
  // Needs a colour sensor.
  bool colour;
};

inline constexpr std::array<PixelFormat, 7> kPixelFormats{{{"Mono8", VmbPixelFormatMono8, 1, false},
                                                           {"BayerGR8", VmbPixelFormatBayerGR8, 1, true},
                                                           {"BayerRG8", VmbPixelFormatBayerRG8, 1, true},
                                                           {"BayerGB8", VmbPixelFormatBayerGB8, 1, true},
                                                           {"BayerBG8", VmbPixelFormatBayerBG8, 1, true},
                                                           {"RGB8Packed", VmbPixelFormatRgb8, 3, true},
                                                           {"YUV422Packed", VmbPixelFormatYuv422, 2, true}}};

// Null for an unknown name.
constexpr const PixelFormat* FindPixelFormat(std::string_view name) {
  const auto* found = std::find_if(kPixelFormats.begin(), kPixelFormats.end(),
                                   [&](const PixelFormat& format) { return format.name == name; });
  return found == kPixelFormats.end() ? nullptr : found;
}

// The sensor's mosaics, by their Bayer order.
inline constexpr std::array<std::string_view, 4> kBayerOrders{"BGGR", "RGGB", "GBRG", "GRBG"};

}  // namespace Simulator
