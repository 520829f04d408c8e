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

HWY_INLINE V16 LowerBytes(V16 v) { return hn::And(v, hn::Set(D16(), 0xFF)); }
HWY_INLINE V16 UpperBytes(V16 v) {
  const hn::RebindToUnsigned<D16> du;
  return hn::BitCast(D16(), hn::ShiftRight<8>(hn::BitCast(du, v)));
}

// v / 2^kShift, rounded, halves up: half of a doubled 32-bit product, rounded that way.
template <int kShift>
HWY_INLINE V16 RoundedShift(V16 v) {
  return hn::MulFixedPoint15(v, hn::Set(D16(), 1 << (15 - kShift)));
}

// -v / 2^kShift, likewise.
template <int kShift>
HWY_INLINE V16 RoundedShiftOfNegative(V16 v) {
  return hn::MulFixedPoint15(v, hn::Set(D16(), -(1 << (15 - kShift))));
}

// The bytes of each block that Packed(even, odd) made, in order.
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

}  // namespace HWY_NAMESPACE
}  // namespace Rows
HWY_AFTER_NAMESPACE();

#endif
