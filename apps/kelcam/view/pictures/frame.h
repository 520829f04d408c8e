// frame.h
// A frame that everybody may look at and nobody changes.
#pragma once

#include <cstdint>
#include <memory>

#include "bbaseaoi.h"
#include "bsmartref.h"
#include "picture/picture_details.h"
#include "picture/pixels.h"

namespace Kelcam {

struct Frame {
  std::uint64_t number = 0;  // of its camera, from 1
  PictureDetails details;    // with the time of its arrival
  BSmartRef<BBaseAoi> area;  // owns the pixels
  Pixels pixels;
};

using SharedFrame = std::shared_ptr<const Frame>;

}  // namespace Kelcam
