// transpose-inl.h
// Square tiles of pixels with rows and columns exchanged; compiled once for each kind of vector unit.

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
#include "vectors-inl.h"

HWY_BEFORE_NAMESPACE();
namespace Rows {
namespace HWY_NAMESPACE {

constexpr int kBlock = 16;                       // bytes of a block, lines of a group
constexpr int kGroups = HWY_MAX_BYTES / kBlock;  // blocks of a vector, groups of a tile
constexpr int kTileSide = HWY_MAX_BYTES;

// A tile's lines are too many for the processor to foresee; they are asked for this many tiles earlier, on both sides.
constexpr int kTilesAhead = 2;

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

// Block b of vector g becomes block g of vector b.
HWY_INLINE void ExchangeBlocks(V8 (&v)[kGroups]) {
#if HWY_TARGET == HWY_AVX3 || HWY_TARGET == HWY_AVX3_DL
  const __m512i even01 = _mm512_shuffle_i64x2(v[0].raw, v[1].raw, 0x88);
  const __m512i odd01 = _mm512_shuffle_i64x2(v[0].raw, v[1].raw, 0xDD);
  const __m512i even23 = _mm512_shuffle_i64x2(v[2].raw, v[3].raw, 0x88);
  const __m512i odd23 = _mm512_shuffle_i64x2(v[2].raw, v[3].raw, 0xDD);
  v[0] = V8{_mm512_shuffle_i64x2(even01, even23, 0x88)};
  v[1] = V8{_mm512_shuffle_i64x2(odd01, odd23, 0x88)};
  v[2] = V8{_mm512_shuffle_i64x2(even01, even23, 0xDD)};
  v[3] = V8{_mm512_shuffle_i64x2(odd01, odd23, 0xDD)};
#elif HWY_TARGET == HWY_AVX2
  const V8 low = hn::ConcatLowerLower(D8(), v[1], v[0]);
  v[1] = hn::ConcatUpperUpper(D8(), v[1], v[0]);
  v[0] = low;
#else
  static_assert(kGroups == 1, "wider vectors need their blocks exchanged");
  (void)v;
#endif
}

inline void TransposeTile(const std::uint8_t* source, std::ptrdiff_t source_step_bytes, std::uint8_t* target,
                          std::ptrdiff_t target_step_bytes) {
  V8 groups[kGroups][kBlock];
  for (int g = 0; g < kGroups; ++g) {
    for (int i = 0; i < kBlock; ++i) {
      const std::uint8_t* const line = source + (g * kBlock + i) * source_step_bytes;
      groups[g][i] = hn::LoadU(D8(), line);
      hwy::Prefetch(line + kTilesAhead * kTileSide);
      hwy::Prefetch(target + (kTilesAhead * kTileSide + g * kBlock + i) * target_step_bytes);
    }
    TransposeBlocks(groups[g]);
  }
  for (int i = 0; i < kBlock; ++i) {
    V8 columns[kGroups];
    for (int g = 0; g < kGroups; ++g) columns[g] = groups[g][i];
    ExchangeBlocks(columns);
    for (int g = 0; g < kGroups; ++g) hn::StoreU(columns[g], D8(), target + (g * kBlock + i) * target_step_bytes);
  }
}

}  // namespace HWY_NAMESPACE
}  // namespace Rows
HWY_AFTER_NAMESPACE();

#endif
