// bimagergb.h
// A colour image, three bytes a pixel: red, green, blue.
#pragma once

#include <cstddef>
#include <cstdint>

#include "bpixelbuffer.h"
#include "bpoint.h"
#include "bsize.h"
#include "kel_tools_api.h"

class BImage8u;

// A value: copies are deep, a moved-from image is 0 x 0. Not synchronized: one thread at a time, or readers only; an
// image that belongs to an area is guarded by the area's lock (BAoiLockRW). Row 0 is the top, bytes 0 to 2 of a row its
// left pixel.
class KEL_TOOLS_API BImageRgb {
 public:
  static constexpr int kChannels = 3;

  BImageRgb() = default;                  // 0 x 0
  explicit BImageRgb(const BSize& size);  // black

  // A size with a side that is zero or negative becomes 0 x 0. Pixels are unspecified afterwards unless the size stays;
  // memory is kept where it suffices. Throws std::bad_alloc and leaves the image as it was.
  void Resize(const BSize& size);
  const BSize& Size() const { return m_pixels.Size(); }
  std::size_t LineLength() const { return m_pixels.LineLength(); }  // bytes from one row to the next, a multiple of 64
  std::uint8_t* Row(int y) { return m_pixels.Row(y); }              // 0 <= y < height; valid until Resize
  const std::uint8_t* Row(int y) const { return m_pixels.Row(y); }

  // Lays a grey image's top left part of `size` into this image, red, green and blue alike, with its top left pixel at
  // `at`. A side of `size` that is negative, or larger than the grey image's, is the grey image's: (-1,-1) takes all of
  // it. What falls outside this image, also at negative positions, is dropped; the rest of this image stays.
  void TakeGrey(const BImage8u& grey, const BSize& size = {-1, -1}, const BPoint& at = {});

  // The same out of memory that holds `size` pixels, rows `line_length_bytes` apart: a frame needs no image of its
  // own on its way here. A size with a side that is zero or negative changes nothing, and the pointer may then be null.
  void TakeGrey(const std::uint8_t* pixels, std::size_t line_length_bytes, const BSize& size, const BPoint& at = {});

 private:
  BPixelBuffer m_pixels;
};
