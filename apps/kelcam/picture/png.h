// png.h
// Pictures as PNG files.
#pragma once

#include <cstdint>
#include <vector>

#include "picture/picture_details.h"
#include "picture/pixels.h"

namespace Kelcam {

// The file's bytes, with the details as text chunks. Made for speed: every value is replaced by its difference from the
// mean of its left and its upper neighbour, and of the differences only the frequent ones get short codes. The noise of
// a camera leaves little else to find.
std::vector<std::uint8_t> EncodePng(const Pixels& pixels, const PictureDetails& details);

}  // namespace Kelcam
