// statistics.h
// What a frame's values say of its exposure and focus.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "picture/pixels.h"

namespace Kelcam {

inline constexpr std::size_t kValues = 256;
using Histogram = std::array<std::uint32_t, kValues>;

// One for each channel.
std::vector<Histogram> HistogramsOf(const Pixels& pixels);

double MeanOf(const Histogram& histogram);
// Of all pixels, how many have the darkest and the brightest value.
double DarkShareOf(const Histogram& histogram);
double BrightShareOf(const Histogram& histogram);

// The Tenengrad, relative to the brightness: the mean squared Sobel gradient of the luma over its squared mean. It
// grows with the contrast of edges, so it is highest in focus, and it does not change with the exposure. 0 for fewer
// than 3 x 3 pixels, and for black.
double SharpnessOf(const Pixels& pixels);

}  // namespace Kelcam
