// transpose-inl.h
// Strips of lines with rows and columns exchanged; compiled once for each kind of vector unit.

// No #pragma once: Highway includes this file again for each vector unit, and toggles the guard between.
#if defined(KEL_ROWS_TRANSPOSE_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KEL_ROWS_TRANSPOSE_INL_H_
#undef KEL_ROWS_TRANSPOSE_INL_H_
#else
#define KEL_ROWS_TRANSPOSE_INL_H_
#endif

#include <cstddef>
#include <cstdint>

#include "hwy/cache_control.h"
#include "row_kernels.h"
#include "vectors-inl.h"

HWY_BEFORE_NAMESPACE();
namespace Rows {
namespace HWY_NAMESPACE {

constexpr int kBlock = 16;  // bytes of a block, and lines that a block is made from
constexpr int kBlocks = HWY_MAX_BYTES / kBlock;

// A tile has as many lines as a vector has bytes, and a block of columns.
constexpr int kTileLines = HWY_MAX_BYTES;
constexpr int kTileColumns = kBlock;

// A strip's lines and rows are too many for the processor to foresee; they are asked for this many columns earlier.
constexpr int kColumnsAhead = 128;

// 16 bytes of every 16th line, a block each.
HWY_INLINE V8 LoadBlockOfLines(const std::uint8_t* source, std::ptrdiff_t step_bytes) {
#if HWY_TARGET == HWY_AVX3 || HWY_TARGET == HWY_AVX3_DL
  const hn::Half<D8> dh;
  const hn::Half<decltype(dh)> dq;
  const auto half = [=](const std::uint8_t* from) HWY_ATTR {
    return hn::Combine(dh, hn::LoadU(dq, from + kBlock * step_bytes), hn::LoadU(dq, from));
  };
  return hn::Combine(D8(), half(source + 2 * kBlock * step_bytes), half(source));
#elif HWY_TARGET == HWY_AVX2
  const hn::Half<D8> dh;
  return hn::Combine(D8(), hn::LoadU(dh, source + kBlock * step_bytes), hn::LoadU(dh, source));
#else
  static_assert(kBlocks == 1, "wider vectors take blocks of more lines");
  (void)step_bytes;
  return hn::LoadU(D8(), source);
#endif
}

// In every block the bytes of 16 lines are exchanged with their columns: four rounds, each of which takes one bit of
// the line's number into that of the byte.
HWY_INLINE void TransposeBlocks(V8 (&lines)[kBlock]) {
  for (int round = 0; round < 4; ++round) {
    V8 mixed[kBlock];
    for (int i = 0; i < kBlock / 2; ++i) {
      mixed[2 * i] = hn::InterleaveLower(D8(), lines[i], lines[i + kBlock / 2]);
      mixed[2 * i + 1] = hn::InterleaveUpper(D8(), lines[i], lines[i + kBlock / 2]);
    }
    for (int i = 0; i < kBlock; ++i) lines[i] = mixed[i];
  }
}

HWY_INLINE void TransposeTile(const std::uint8_t* source, std::ptrdiff_t source_step_bytes, std::uint8_t* target,
                              std::ptrdiff_t target_step_bytes) {
  V8 lines[kBlock];
  for (int i = 0; i < kBlock; ++i) {
    lines[i] = LoadBlockOfLines(source, source_step_bytes);
    source += source_step_bytes;
  }
  TransposeBlocks(lines);
  for (int i = 0; i < kBlock; ++i) {
    hn::StoreU(lines[i], D8(), target);
    target += target_step_bytes;
  }
}

// Asks for what the step kColumnsAhead later begins with: its rows of the target and, as each line of the source is
// used up after four steps, a quarter of those.
HWY_INLINE void PrefetchAhead(const StripOfLines& strip, int column) {
  const int quarter = kStripLines / 4;
  const int line = column / kBlock % 4 * quarter;
  for (int i = 0; i < quarter; ++i) {
    hwy::Prefetch(strip.source + (line + i) * strip.source_step_bytes + column + kColumnsAhead);
  }
  for (int i = 0; i < kTileColumns; ++i) {
    hwy::Prefetch(strip.target + (column + kColumnsAhead + i) * strip.target_step_bytes);
  }
}

// A block of columns from x on, tile by tile, the last one moved back to end with the strip.
HWY_INLINE void TransposeColumns(const StripOfLines& strip, int x) {
  for (int line = 0; line < strip.lines; line += kTileLines) {
    const int y = HWY_MIN(line, strip.lines - kTileLines);
    TransposeTile(strip.source + y * strip.source_step_bytes + x, strip.source_step_bytes,
                  strip.target + x * strip.target_step_bytes + y, strip.target_step_bytes);
  }
}

// Lines that lie a multiple of this apart compete for so few places of the nearest cache that a strip's do not fit.
constexpr std::ptrdiff_t kCompetingStep = 1024;
// Columns that are copied at once: a cache line.
constexpr int kCopiedColumns = 64;

// By way of copies of the lines, so that each cache line of the source is read once. Returns the first column that is
// left.
inline int TransposeCopies(const StripOfLines& strip) {
  alignas(kCopiedColumns) std::uint8_t copies[kStripLines * kCopiedColumns];
  int column = 0;
  for (; column + kCopiedColumns <= strip.columns; column += kCopiedColumns) {
    const std::uint8_t* from = strip.source + column;
    for (int line = 0; line < strip.lines; ++line) {
      for (int i = 0; i < kCopiedColumns; i += HWY_MAX_BYTES) {
        hn::Store(hn::LoadU(D8(), from + i), D8(), copies + line * kCopiedColumns + i);
      }
      hwy::Prefetch(from + kColumnsAhead);
      hwy::Prefetch(strip.target + (column + kColumnsAhead + line) * strip.target_step_bytes);
      from += strip.source_step_bytes;
    }
    const StripOfLines copied{copies,
                              kCopiedColumns,
                              strip.lines,
                              kCopiedColumns,
                              strip.target + column * strip.target_step_bytes,
                              strip.target_step_bytes};
    for (int x = 0; x < kCopiedColumns; x += kTileColumns) TransposeColumns(copied, x);
  }
  return column;
}

// The last block of columns is moved back to end with the strip.
inline void TransposeStrip(const StripOfLines& strip) {
  int column = strip.source_step_bytes % kCompetingStep == 0 ? TransposeCopies(strip) : 0;
  for (; column < strip.columns; column += kTileColumns) {
    PrefetchAhead(strip, column);
    TransposeColumns(strip, HWY_MIN(column, strip.columns - kTileColumns));
  }
}

}  // namespace HWY_NAMESPACE
}  // namespace Rows
HWY_AFTER_NAMESPACE();

#endif
