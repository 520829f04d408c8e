// scaled_picture.h
// A picture made smaller.
#pragma once

#include <cstdint>
#include <vector>

#include "picture/pixels.h"

namespace Kelcam {

struct ScaledPicture {
  std::vector<std::uint8_t> bytes;
  BSize size;
  std::size_t channels = 0;

  Pixels View() const { return {bytes.data(), static_cast<std::size_t>(size.width) * channels, size, channels}; }
};

// The height that keeps the proportions; at least 1.
int HeightFor(int width, const BSize& size);

// Each pixel is the mean of the area that it covers, to one grey value. width: from 1 to that of the pixels.
ScaledPicture ScaledDown(const Pixels& pixels, int width);

}  // namespace Kelcam
