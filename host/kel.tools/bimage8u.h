// bimage8u.h
// An 8-bit monochrome image.
#pragma once

#include <cstddef>
#include <cstdint>

#include "bpixelbuffer.h"
#include "bpoint.h"
#include "bsize.h"
#include "kel_tools_api.h"

// A value: copies are deep, a moved-from image is 0 x 0. Not synchronized: one thread at a time, or readers only; an
// image that belongs to an area is guarded by the area's lock (BAoiLockRW). Row 0 is the top, byte 0 of a row its left
// pixel.
class KEL_TOOLS_API BImage8u {
 public:
  BImage8u() = default;                  // 0 x 0
  explicit BImage8u(const BSize& size);  // black

  // A size with a side that is zero or negative becomes 0 x 0. Pixels are unspecified afterwards unless the size stays;
  // memory is kept where it suffices. Throws std::bad_alloc and leaves the image as it was.
  void Resize(const BSize& size);
  const BSize& Size() const { return m_pixels.Size(); }
  std::size_t LineLength() const { return m_pixels.LineLength(); }  // bytes from one row to the next, a multiple of 64
  std::uint8_t* Row(int y) { return m_pixels.Row(y); }              // 0 <= y < height; valid until Resize
  const std::uint8_t* Row(int y) const { return m_pixels.Row(y); }

  // Both copies read `size` pixels, rows `line_length_bytes` apart, from memory that must not be this image's own,
  // and never write outside this image. A source with a side that is zero or negative changes nothing, and may be null.

  // Lays the source into this image with its top left pixel at `at`, which may lie outside, also at negative positions;
  // what falls outside is dropped, the rest of the image stays.
  void CopyRows(const std::uint8_t* pixels, std::size_t line_length_bytes, const BSize& size, const BPoint& at = {});

  // Lays the source into this image turned by a quarter, at (0,0). Clockwise: the source's top left pixel goes to the
  // top right, target(x, y) = source(y, height - 1 - x); counter-clockwise: to the bottom left, target(x, y) =
  // source(width - 1 - y, x). The turned picture has source height columns and source width rows: of one that is larger
  // than this image, the part that does not fit at the right and at the bottom is dropped; in an image that is
  // larger, the rest stays.
  void CopyRotated(const std::uint8_t* pixels, std::size_t line_length_bytes, const BSize& size, bool clockwise);

 private:
  BPixelBuffer m_pixels;
};
