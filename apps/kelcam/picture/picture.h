// picture.h
// Pictures as the bytes of their files.
#pragma once

#include <cstdint>
#include <vector>

#include "bbaseaoi.h"
#include "picture/file_pattern.h"
#include "picture/picture_details.h"
#include "picture/pixels.h"

namespace Kelcam {

// The area's image, which the area keeps. Throws Failure when there is none.
Pixels PixelsOf(BBaseAoi& area);

// A grey image becomes a grey PPM; a colour image cannot become a PGM (Failure). A PGM of a mosaic names the order of
// its colours in a comment; a PNG and a TIFF file hold all details.
std::vector<std::uint8_t> Encode(const Pixels& pixels, PictureFormat format, const PictureDetails& details);

}  // namespace Kelcam
