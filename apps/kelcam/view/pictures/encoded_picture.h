// encoded_picture.h
// A part of a frame as a browser takes it.
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "view/pictures/frame.h"
#include "view/pictures/rectangle.h"

namespace Kelcam {

inline constexpr const char* kPngType = "image/png";
inline constexpr const char* kJpegType = "image/jpeg";

struct EncodedPicture {
  std::uint64_t frame = 0;
  BSize whole;  // of the frame
  Rectangle region;
  int width = 0;  // of the picture
  const char* type = kPngType;
  std::shared_ptr<const std::vector<std::uint8_t>> bytes;
};

// Scaled down to the width as JPEG; where the width is not less than the region's, at its own size and lossless as PNG.
// The region must be within.
EncodedPicture Encoded(const Frame& frame, const Rectangle& region, int width);

// Remembers the last pictures, so that several who look at the same cost one encoding. Not for several threads.
class EncodedPictures {
 public:
  EncodedPicture Get(const Frame& frame, const Rectangle& region, int width);

 private:
  std::deque<EncodedPicture> m_pictures;  // the last one first
};

}  // namespace Kelcam
