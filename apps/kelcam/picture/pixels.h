// pixels.h
// The rows of a picture, whoever owns them.
#pragma once

#include <cstddef>
#include <cstdint>

#include "bsize.h"

namespace Kelcam {

// Eight bits a channel; the memory is not this object's.
struct Pixels {
  const std::uint8_t* first_row = nullptr;
  std::size_t line_length_bytes = 0;  // from one row to the next
  BSize size;
  std::size_t channels = 0;  // 1: grey, 3: red, green, blue

  std::size_t RowBytes() const { return static_cast<std::size_t>(size.width) * channels; }
  std::size_t Bytes() const { return RowBytes() * static_cast<std::size_t>(size.height); }
  const std::uint8_t* Row(int y) const { return first_row + static_cast<std::size_t>(y) * line_length_bytes; }
};

}  // namespace Kelcam
