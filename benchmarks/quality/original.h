// original.h
// Full-colour pictures to take mosaics of.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "bsize.h"

// Three bytes a pixel, rows without padding; sides are even.
struct Original {
  std::string name;
  BSize size;
  std::vector<std::uint8_t> rgb;
};

// A PNG or JPEG photograph at half its size, each pixel the mean of four: that takes out what the camera's own
// demosaicing and the file's coarser chroma left. Throws std::runtime_error that names the file.
Original HalvedPhotograph(const std::string& path);

// The simulated cameras' test chart, without noise.
Original TestChart();
