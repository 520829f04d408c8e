// bimage8u.cpp
// An 8-bit monochrome image.
#include "bimage8u.h"

#include <algorithm>
#include <cstring>

#include "rows/clipping.h"
#include "rows/row_kernels.h"

namespace {

template <class Byte>
struct RowSequence {
  Byte* first;
  std::ptrdiff_t step_bytes;  // to the next row; negative where rows are taken from the bottom up
};

// Target row y, of part.height, is source column y; source row x, of part.width, is target column x. The last strip is
// moved back to end with the picture.
void Transpose(const RowSequence<const std::uint8_t>& source, const RowSequence<std::uint8_t>& target,
               const BSize& part) {
  const Rows::RowKernels& kernels = Rows::Kernels();
  const bool strips = part.width >= kernels.least_lines && part.height >= kernels.least_columns;
  const int lines = strips ? std::min(Rows::kStripLines, part.width) : 1;
  for (int row = 0; row < part.width; row += lines) {
    const int x = std::min(row, part.width - lines);
    const std::uint8_t* const from = source.first + x * source.step_bytes;
    std::uint8_t* const to = target.first + x;
    if (strips) {
      kernels.transpose_strip({from, source.step_bytes, lines, part.height, to, target.step_bytes});
    } else {
      for (int y = 0; y < part.height; ++y) to[y * target.step_bytes] = from[y];
    }
  }
}

}  // namespace

BImage8u::BImage8u(const BSize& size) { Resize(size); }

void BImage8u::Resize(const BSize& size) { m_pixels.Resize(size, 1); }

void BImage8u::CopyRows(const std::uint8_t* pixels, std::size_t line_length_bytes, const BSize& size,
                        const BPoint& at) {
  const Rows::Clip clip = Rows::Clipped(size, at, Size());
  const auto width = static_cast<std::size_t>(clip.size.width);
  const auto height = static_cast<std::size_t>(clip.size.height);
  if (height == 0) return;
  const std::uint8_t* const from = pixels + static_cast<std::size_t>(clip.from.y) * line_length_bytes + clip.from.x;
  std::uint8_t* const to = Row(clip.to.y) + clip.to.x;
  // Rows without gaps on either side are one block.
  if (width == line_length_bytes && width == LineLength()) {
    std::memcpy(to, from, width * height);
    return;
  }
  // memcpy's way for a few kilobytes takes a quarter longer, row by row, than for the whole.
  for (std::size_t y = 0; y < height; ++y) {
    const std::uint8_t* const source = from + y * line_length_bytes;
    std::uint8_t* const target = to + y * LineLength();
    const auto made = static_cast<std::size_t>(Rows::Kernels().copy(source, 0, clip.size.width, target));
    std::memcpy(target + made, source + made, width - made);
  }
}

void BImage8u::CopyRotated(const std::uint8_t* pixels, std::size_t line_length_bytes, const BSize& size,
                           bool clockwise) {
  const BSize part{std::min(size.height, Size().width), std::min(size.width, Size().height)};
  if (part.width <= 0 || part.height <= 0) return;
  const auto step_bytes = static_cast<std::ptrdiff_t>(line_length_bytes);
  const auto target_step_bytes = static_cast<std::ptrdiff_t>(LineLength());
  if (clockwise) {
    // Columns are read from the bottom up.
    const std::uint8_t* const bottom_left = pixels + static_cast<std::size_t>(size.height - 1) * line_length_bytes;
    Transpose({bottom_left, -step_bytes}, {Row(0), target_step_bytes}, part);
  } else {
    // The rightmost column comes first: rows are made from the last one up.
    const std::uint8_t* const first_used = pixels + (size.width - part.height);
    Transpose({first_used, step_bytes}, {Row(part.height - 1), -target_step_bytes}, part);
  }
}
