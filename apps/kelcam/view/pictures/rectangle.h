// rectangle.h
// A part of a picture.
#pragma once

#include "bsize.h"
#include "picture/pixels.h"

namespace Kelcam {

struct Rectangle {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;

  bool operator==(const Rectangle&) const = default;
  auto operator<=>(const Rectangle&) const = default;

  static Rectangle All(const BSize& size) { return {0, 0, size.width, size.height}; }
  // Whether it has pixels, and all of them are in a picture of this size.
  bool IsWithin(const BSize& size) const {
    return x >= 0 && y >= 0 && width > 0 && height > 0 && width <= size.width - x && height <= size.height - y;
  }
  // The pixels in it; it must be within.
  Pixels Of(const Pixels& pixels) const {
    return {pixels.Row(y) + static_cast<std::size_t>(x) * pixels.channels,
            pixels.line_length_bytes,
            {width, height},
            pixels.channels};
  }
};

}  // namespace Kelcam
