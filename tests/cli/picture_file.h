// picture_file.h
// A picture file taken apart again.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct DecodedPicture {
  int width = 0, height = 0, channels = 0;
  std::vector<std::uint8_t> pixels;  // row by row, without gaps
};

// From the bytes of a PNG, PGM or PPM file; an empty picture when they are none.
DecodedPicture Decoded(const std::string& file);
