// hamilton_adams.h
// A directional way to get colours back out of a mosaic, for comparison.
#pragma once

#include <cstdint>
#include <vector>

#include "bsize.h"

// J. F. Hamilton and J. E. Adams, "Adaptive color plan interpolation in single sensor color electronic camera", US
// patent 5,629,734, 1997: green along the smaller gradient, corrected by the second difference of the sampled colour;
// then red and blue along the smaller gradient, corrected by that of green. `mosaic` is R G over G B. The result has
// three bytes a pixel, rows without padding.
std::vector<std::uint8_t> HamiltonAdams(const std::vector<std::uint8_t>& mosaic, const BSize& size);
