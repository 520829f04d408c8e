// untouched_picture.cpp
// How a picture that a driver did not write is told from one that it did.
#include "device/untouched_picture.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace Kelcam {
namespace {

// Where no driver puts an image; one that takes the area over resets it.
constexpr BPoint kMark{-4711, -4711};
// So many bytes are not the pattern's by chance: a picture of fewer counts as written, fewer at a row's end stay.
constexpr std::size_t kLeastPictureBytes = 8;
constexpr std::size_t kLeastTailBytes = 16;

// The finalizer of SplitMix64: every bit of the place changes half of the bits.
std::uint64_t Mixed(std::uint64_t place) {
  place += 0x9E3779B97F4A7C15U;
  place = (place ^ (place >> 30U)) * 0xBF58476D1CE4E5B9U;
  place = (place ^ (place >> 27U)) * 0x94D049BB133111EBU;
  return place ^ (place >> 31U);
}

constexpr std::size_t kWordBytes = sizeof(std::uint64_t);

// Of the pattern, the bytes from a multiple of eight on, in their order from the lowest.
std::uint64_t PatternWord(int y, std::size_t at) {
  constexpr unsigned kRowShift = 32;
  return Mixed((static_cast<std::uint64_t>(y) << kRowShift) + at / kWordBytes);
}

std::uint8_t ByteOf(std::uint64_t word, std::size_t index) { return static_cast<std::uint8_t>(word >> (8 * index)); }

void FillRow(std::uint8_t* row, std::size_t bytes, int y) {
  for (std::size_t at = 0; at < bytes; at += kWordBytes) {
    const std::uint64_t word = PatternWord(y, at);
    for (std::size_t i = 0; i < std::min(kWordBytes, bytes - at); ++i) row[at + i] = ByteOf(word, i);
  }
}

struct Rows {
  std::uint8_t* first;
  std::size_t line_length_bytes;
  std::size_t row_bytes;
  int height;

  std::uint8_t* Row(int y) const { return first + static_cast<std::size_t>(y) * line_length_bytes; }
};

// No rows for an area without an image.
Rows RowsOf(BBaseAoi& area) {
  const BSize size = area.ImageSize();
  const auto width = static_cast<std::size_t>(size.width);
  if (size.height <= 0) return {};
  if (BImage8u* mono = area.Mono()) return {mono->Row(0), mono->LineLength(), width, size.height};
  BImageRgb* rgb = area.Rgb();
  return rgb ? Rows{rgb->Row(0), rgb->LineLength(), width * BImageRgb::kChannels, size.height} : Rows{};
}

// How many bytes at the row's end are the pattern's.
std::size_t UntouchedTail(const Rows& rows, int y) {
  const std::uint8_t* row = rows.Row(y);
  std::size_t tail = 0;
  for (; tail < rows.row_bytes; ++tail) {
    const std::size_t at = rows.row_bytes - tail - 1;
    if (row[at] != ByteOf(PatternWord(y, at), at % kWordBytes)) break;
  }
  return tail;
}

}  // namespace

UntouchedPicture::UntouchedPicture(BBaseAoi& area, const BSize& size) : m_area(area) {
  const BAoiLockRW lock(m_area);
  m_area.Reset(size, kMark);
  const Rows rows = RowsOf(m_area);
  for (int y = 0; y < rows.height; ++y) FillRow(rows.Row(y), rows.row_bytes, y);
}

std::optional<Fault> UntouchedPicture::FaultAfterSnap() {
  const BAoiLockRW lock(m_area);
  if (m_area.Offset() == kMark) return Fault{Fault::kNoCode, "the driver delivered no picture"};
  const Rows rows = RowsOf(m_area);
  bool untouched = rows.row_bytes * static_cast<std::size_t>(rows.height) >= kLeastPictureBytes;
  for (int y = 0; y < rows.height; ++y) {
    const std::size_t tail = UntouchedTail(rows, y);
    untouched = untouched && tail == rows.row_bytes;
    if (tail >= kLeastTailBytes) std::fill_n(rows.Row(y) + rows.row_bytes - tail, tail, std::uint8_t{0});
  }
  if (!untouched) return std::nullopt;
  return Fault{Fault::kNoCode,
               "the driver reports success but wrote no picture: it does not convert the frame's pixel format to this "
               "kind of picture"};
}

}  // namespace Kelcam
