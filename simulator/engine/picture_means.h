// engine/picture_means.h
// How bright a picture is and of what colour, for a camera's automatics.
#pragma once

#include <cstdint>

#include "scene/scene.h"

namespace Simulator {

// In linear light, 0 to 1. All the same for a monochrome picture.
struct PictureMeans {
  double red = 0.0;
  double green = 0.0;
  double blue = 0.0;

  double Brightness() const { return (red + 2.0 * green + blue) / 4.0; }
};

// Of the picture's bytes in the shot's format.
PictureMeans MeansOf(const Shot& shot, const std::uint8_t* picture);

}  // namespace Simulator
