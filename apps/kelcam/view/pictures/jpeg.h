// jpeg.h
// Pictures as JPEG files.
#pragma once

#include <cstdint>
#include <vector>

#include "picture/pixels.h"

namespace Kelcam {

// The rows must lie one after the other without a gap. Throws Failure where the picture is too large for the format.
std::vector<std::uint8_t> EncodeJpeg(const Pixels& pixels);

}  // namespace Kelcam
