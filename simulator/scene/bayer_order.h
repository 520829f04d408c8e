// scene/bayer_order.h
// How the colour filters lie on a sensor.
#pragma once

#include <array>
#include <string_view>

namespace Simulator {

// Named by the colours of the top left four pixels, row by row.
enum class BayerOrder { kBggr, kRggb, kGbrg, kGrbg };

// By the values above.
inline constexpr std::array<std::string_view, 4> kBayerOrderNames{"BGGR", "RGGB", "GBRG", "GRBG"};

}  // namespace Simulator
