// camera/pixel_format.h
// The pixel formats of simulated cameras.
#pragma once

#include <algorithm>
#include <array>
#include <string_view>

#include "VimbaC.h"

namespace Simulator {

// Entries of the feature PixelFormat.
namespace PixelFormatName {

inline constexpr char kMono8[] = "Mono8";
inline constexpr char kBayerGR8[] = "BayerGR8";
inline constexpr char kBayerRG8[] = "BayerRG8";
inline constexpr char kBayerGB8[] = "BayerGB8";
inline constexpr char kBayerBG8[] = "BayerBG8";
inline constexpr char kRgb8[] = "RGB8Packed";
inline constexpr char kYuv422[] = "YUV422Packed";

}  // namespace PixelFormatName

struct PixelFormat {
  std::string_view name;
  VmbPixelFormat_t code;
  int bytes_per_pixel;
  // Needs a colour sensor.
  bool colour;
};

inline constexpr std::array<PixelFormat, 7> kPixelFormats{
    {{PixelFormatName::kMono8, VmbPixelFormatMono8, 1, false},
     {PixelFormatName::kBayerGR8, VmbPixelFormatBayerGR8, 1, true},
     {PixelFormatName::kBayerRG8, VmbPixelFormatBayerRG8, 1, true},
     {PixelFormatName::kBayerGB8, VmbPixelFormatBayerGB8, 1, true},
     {PixelFormatName::kBayerBG8, VmbPixelFormatBayerBG8, 1, true},
     {PixelFormatName::kRgb8, VmbPixelFormatRgb8, 3, true},
     {PixelFormatName::kYuv422, VmbPixelFormatYuv422, 2, true}}};

// Null for an unknown name.
constexpr const PixelFormat* FindPixelFormat(std::string_view name) {
  const auto* found = std::find_if(kPixelFormats.begin(), kPixelFormats.end(),
                                   [&](const PixelFormat& format) { return format.name == name; });
  return found == kPixelFormats.end() ? nullptr : found;
}

}  // namespace Simulator
