// tiff.h
// Pictures as TIFF files.
#pragma once

#include <cstdint>
#include <vector>

#include "picture/picture_details.h"
#include "picture/pixels.h"

namespace Kelcam {

// The file's bytes: a baseline file, not compressed, in one strip. The details are in ImageDescription as a whole, and
// in Model, DateTime and the Exif tags as far as these have a place for them. Throws Failure for a picture that is
// larger than the four gigabytes of a TIFF file.
std::vector<std::uint8_t> EncodeTiff(const Pixels& pixels, const PictureDetails& details);

}  // namespace Kelcam
