// vectors-inl.h
// What all row kernels are made of; compiled once for each kind of vector unit.

// No #pragma once: Highway includes this file again for each vector unit, and toggles the guard between.
#if defined(KEL_ROWS_VECTORS_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KEL_ROWS_VECTORS_INL_H_
#undef KEL_ROWS_VECTORS_INL_H_
#else
#define KEL_ROWS_VECTORS_INL_H_
#endif

#include <cstddef>
#include <cstdint>

#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace Rows {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

using D8 = hn::ScalableTag<std::uint8_t>;
using D16 = hn::ScalableTag<std::int16_t>;
using V8 = hn::Vec<D8>;
using V16 = hn::Vec<D16>;

// Calls step(x) for whole vectors of pixels from x up to end, the last of them moved back so that it ends with the row:
// it makes some pixels a second time, which costs less than making the rest one by one. It is moved by multiples of
// `grain`, so that up to grain - 1 pixels remain. Returns the first pixel that is left.
template <class Step>
HWY_INLINE int Sweep(int x, int end, int grain, const Step& step) {
  const int count = static_cast<int>(hn::Lanes(D8()));
  const int first = x;
  if (end - first < count) return first;
  for (; x + count <= end; x += count) step(x);
  if (x < end) {
    const int last = end - count - (end - count - first) % grain;
    step(last);
    x = last + count;
  }
  return x;
}

// The lanes moved up by one; lane 0 is the last one of the vector on the left.
HWY_INLINE V16 FromLeft(V16 left, V16 v) {
#if HWY_TARGET == HWY_AVX3 || HWY_TARGET == HWY_AVX3_DL
  return V16{_mm512_alignr_epi8(v.raw, _mm512_alignr_epi64(v.raw, left.raw, 6), 14)};
#elif HWY_TARGET == HWY_AVX2
  return V16{_mm256_alignr_epi8(v.raw, _mm256_permute2x128_si256(left.raw, v.raw, 0x21), 14)};
#else
  static_assert(HWY_MAX_BYTES == 16, "wider vectors need their blocks moved, too");
  return hn::CombineShiftRightLanes<7>(D16(), v, left);
#endif
}

// The lanes moved down by one; the last lane is the first one of the vector on the right.
HWY_INLINE V16 FromRight(V16 v, V16 right) {
#if HWY_TARGET == HWY_AVX3 || HWY_TARGET == HWY_AVX3_DL
  return V16{_mm512_alignr_epi8(_mm512_alignr_epi64(right.raw, v.raw, 2), v.raw, 2)};
#elif HWY_TARGET == HWY_AVX2
  return V16{_mm256_alignr_epi8(_mm256_permute2x128_si256(v.raw, right.raw, 0x21), v.raw, 2)};
#else
  return hn::CombineShiftRightLanes<1>(D16(), right, v);
#endif
}

// Bytes in Order::kSplit put into Order::kNatural.
HWY_INLINE V8 InOrder(V8 split) {
  alignas(16) static constexpr std::uint8_t kFrom[16] = {0, 8, 1, 9, 2, 10, 3, 11, 4, 12, 5, 13, 6, 14, 7, 15};
  return hn::TableLookupBytes(split, hn::LoadDup128(D8(), kFrom));
}

// Two vectors' worth of bytes, dealt out block by block, so that Packed() of what is made of them is in order again.
struct Blocks {
  V8 even;
  V8 odd;
};

HWY_INLINE Blocks LoadBlocks(const std::uint8_t* from) {
#if HWY_TARGET == HWY_AVX3 || HWY_TARGET == HWY_AVX3_DL
  const __m512i low = _mm512_loadu_si512(from);
  const __m512i high = _mm512_loadu_si512(from + 64);
  return {V8{_mm512_shuffle_i64x2(low, high, 0x88)}, V8{_mm512_shuffle_i64x2(low, high, 0xDD)}};
#elif HWY_TARGET == HWY_AVX2
  const hn::Half<D8> dh;
  return {hn::Combine(D8(), hn::LoadU(dh, from + 32), hn::LoadU(dh, from)),
          hn::Combine(D8(), hn::LoadU(dh, from + 48), hn::LoadU(dh, from + 16))};
#else
  return {hn::LoadU(D8(), from), hn::LoadU(D8(), from + hn::Lanes(D8()))};
#endif
}

// Where in each 16-byte block of a colour the pixels lie.
enum class Order {
  kNatural,  // pixel 0, 1, 2, ..
  kSplit     // the block's even pixels, then its odd ones: what Packed(even, odd) gives
};

// Both vectors limited to bytes, block by block: eight lanes of `first`, then eight of `second`.
HWY_INLINE V8 Packed(V16 first, V16 second) {
#if HWY_TARGET == HWY_AVX3 || HWY_TARGET == HWY_AVX3_DL
  return V8{_mm512_packus_epi16(first.raw, second.raw)};
#elif HWY_TARGET == HWY_AVX2
  return V8{_mm256_packus_epi16(first.raw, second.raw)};
#elif HWY_TARGET == HWY_SSSE3
  return V8{_mm_packus_epi16(first.raw, second.raw)};
#else
  const V16 zero = hn::Zero(D16());
  const V16 most = hn::Set(D16(), 255);
  const V8 low = hn::BitCast(D8(), hn::Min(hn::Max(first, zero), most));
  const V8 high = hn::BitCast(D8(), hn::Min(hn::Max(second, zero), most));
  static_assert(HWY_MAX_BYTES == 16, "blocks of wider vectors would have to be put in order");
  return hn::ConcatEven(D8(), high, low);
#endif
}

// For byte i of a block of 16 pixels' 48 colour bytes: the byte of the block of one colour that belongs to a place of
// this colour. Colour c of pixel p is in byte 3 p + c; as 3 and 16 share no factor, these bytes lie in 16 different
// places of their blocks, so that one shuffle a colour serves all three blocks.
template <Order kOrder>
struct InterleaveShuffle {
  alignas(16) std::uint8_t byte[3][16] = {};
  constexpr InterleaveShuffle() {
    for (int colour = 0; colour < 3; ++colour) {
      for (int pixel = 0; pixel < 16; ++pixel) {
        const int place = (3 * pixel + colour) % 16;
        const int from = kOrder == Order::kNatural ? pixel : pixel / 2 + pixel % 2 * 8;
        byte[colour][place] = static_cast<std::uint8_t>(from);
      }
    }
  }
};

// 0xFF where byte i of block b of the 48 colour bytes is of colour c.
struct InterleaveMask {
  alignas(16) std::uint8_t byte[3][3][16] = {};
  constexpr InterleaveMask() {
    for (int i = 0; i < 48; ++i) byte[i % 3][i / 16][i % 16] = 0xFF;
  }
};

#if HWY_TARGET == HWY_AVX3_DL
// For each byte of the 192 of 64 pixels: the byte of its colour's vector.
template <Order kOrder>
struct WideInterleave {
  alignas(64) std::uint8_t byte[3][64] = {};
  constexpr WideInterleave() {
    for (int i = 0; i < 192; ++i) {
      const int pixel = i / 3;
      const int split = pixel / 16 * 16 + pixel % 16 / 2 + pixel % 2 * 8;
      byte[i / 64][i % 64] = static_cast<std::uint8_t>(kOrder == Order::kNatural ? pixel : split);
    }
  }
};

template <Order kOrder>
HWY_INLINE void StoreRgb(V8 red, V8 green, V8 blue, std::uint8_t* to) {
  static constexpr WideInterleave<kOrder> kFrom;
  // Bits 0, 3, 6, ..: byte 64 b + i is red where i + b is a multiple of 3, since 64 leaves 1.
  constexpr std::uint64_t kThirds = 0x9249249249249249ULL;
  for (int b = 0; b < 3; ++b) {
    const __mmask64 green_at = b == 0 ? kThirds << 1 : b == 1 ? kThirds : kThirds << 2;
    const __mmask64 blue_at = b == 0 ? kThirds << 2 : b == 1 ? kThirds << 1 : kThirds;
    const __m512i from = _mm512_load_si512(kFrom.byte[b]);
    __m512i bytes = _mm512_permutexvar_epi8(from, red.raw);
    bytes = _mm512_mask_permutexvar_epi8(bytes, green_at, from, green.raw);
    bytes = _mm512_mask_permutexvar_epi8(bytes, blue_at, from, blue.raw);
    _mm512_storeu_si512(to + 64 * b, bytes);
  }
}

HWY_INLINE void StoreGrey(V8 grey, std::uint8_t* to) {
  static constexpr WideInterleave<Order::kNatural> kFrom;
  for (int b = 0; b < 3; ++b) {
    _mm512_storeu_si512(to + 64 * b, _mm512_permutexvar_epi8(_mm512_load_si512(kFrom.byte[b]), grey.raw));
  }
}
#else
template <int kBlock>
HWY_INLINE V8 InterleavedBlocks(V8 red, V8 green, V8 blue) {
  static constexpr InterleaveMask kMask;
  const auto green_at = hn::MaskFromVec(hn::LoadDup128(D8(), kMask.byte[1][kBlock]));
  const auto blue_at = hn::MaskFromVec(hn::LoadDup128(D8(), kMask.byte[2][kBlock]));
  return hn::IfThenElse(blue_at, blue, hn::IfThenElse(green_at, green, red));
}

// Three vectors of blocks, the first holding each first one of three, to memory in order.
HWY_INLINE void StoreThirds(V8 first, V8 second, V8 third, std::uint8_t* to) {
#if HWY_TARGET == HWY_AVX3
  // The blocks f0 f2 s0 s2, then t0 t2 f1 f3, then s1 s3 t1 t3.
  const __m512i a = _mm512_shuffle_i64x2(first.raw, second.raw, 0x88);
  const __m512i b = _mm512_shuffle_i64x2(third.raw, first.raw, 0xD8);
  const __m512i c = _mm512_shuffle_i64x2(second.raw, third.raw, 0xDD);
  // The blocks f0 s0 t0 f1, then s1 t1 f2 s2, then t2 f3 s3 t3.
  _mm512_storeu_si512(to, _mm512_shuffle_i64x2(a, b, 0x88));
  _mm512_storeu_si512(to + 64, _mm512_shuffle_i64x2(c, a, 0xD8));
  _mm512_storeu_si512(to + 128, _mm512_shuffle_i64x2(b, c, 0xDD));
#elif HWY_TARGET == HWY_AVX2
  hn::StoreU(hn::ConcatLowerLower(D8(), second, first), D8(), to);
  hn::StoreU(hn::ConcatUpperLower(D8(), first, third), D8(), to + 32);
  hn::StoreU(hn::ConcatUpperUpper(D8(), third, second), D8(), to + 64);
#else
  hn::StoreU(first, D8(), to);
  hn::StoreU(second, D8(), to + 16);
  hn::StoreU(third, D8(), to + 32);
#endif
}

// Stores the colours of a vector of pixels, three bytes a pixel.
template <Order kOrder>
HWY_INLINE void StoreRgb(V8 red, V8 green, V8 blue, std::uint8_t* to) {
  static constexpr InterleaveShuffle<kOrder> kShuffle;
  const V8 r = hn::TableLookupBytes(red, hn::LoadDup128(D8(), kShuffle.byte[0]));
  const V8 g = hn::TableLookupBytes(green, hn::LoadDup128(D8(), kShuffle.byte[1]));
  const V8 b = hn::TableLookupBytes(blue, hn::LoadDup128(D8(), kShuffle.byte[2]));
  StoreThirds(InterleavedBlocks<0>(r, g, b), InterleavedBlocks<1>(r, g, b), InterleavedBlocks<2>(r, g, b), to);
}

// For byte i of the 48 of a block of 16 pixels: its pixel.
struct GreyShuffle {
  alignas(16) std::uint8_t byte[3][16] = {};
  constexpr GreyShuffle() {
    for (int i = 0; i < 48; ++i) byte[i / 16][i % 16] = static_cast<std::uint8_t>(i / 3);
  }
};

// Stores each pixel three times.
HWY_INLINE void StoreGrey(V8 grey, std::uint8_t* to) {
  static constexpr GreyShuffle kShuffle;
  StoreThirds(hn::TableLookupBytes(grey, hn::LoadDup128(D8(), kShuffle.byte[0])),
              hn::TableLookupBytes(grey, hn::LoadDup128(D8(), kShuffle.byte[1])),
              hn::TableLookupBytes(grey, hn::LoadDup128(D8(), kShuffle.byte[2])), to);
}
#endif

}  // namespace HWY_NAMESPACE
}  // namespace Rows
HWY_AFTER_NAMESPACE();

#endif
