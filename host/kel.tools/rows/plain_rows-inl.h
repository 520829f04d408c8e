// plain_rows-inl.h
// Rows of YUV, luma and grey in vectors; compiled once for each kind of vector unit.

// No #pragma once: Highway includes this file again for each vector unit, and toggles the guard between.
#if defined(KEL_ROWS_PLAIN_ROWS_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KEL_ROWS_PLAIN_ROWS_INL_H_
#undef KEL_ROWS_PLAIN_ROWS_INL_H_
#else
#define KEL_ROWS_PLAIN_ROWS_INL_H_
#endif

#include <cstddef>
#include <cstdint>

#include "interleave-inl.h"
#include "vectors-inl.h"
#include "yuv_pixel.h"

HWY_BEFORE_NAMESPACE();
namespace Rows {
namespace HWY_NAMESPACE {

// Red, green and blue of half a vector of pixels, in 16 bits, not yet limited to a byte.
struct WideRgb {
  V16 red;
  V16 green;
  V16 blue;
};

struct YuvStep {
  const std::uint8_t* source;
  std::uint8_t* target;

  // Lanes U V U V ..: 16-bit values that repeat every 32 bits.
  HWY_INLINE static V16 Alternating(int first, int second) {
    const hn::Repartition<std::int32_t, D16> d32;
    return hn::BitCast(D16(), hn::Set(d32, static_cast<std::int32_t>((static_cast<std::uint32_t>(second) << 16) |
                                                                     (static_cast<std::uint32_t>(first) & 0xFFFF))));
  }
  template <int kFirst, int kSecond>
  HWY_INLINE static V16 LanesOfPairs(V16 v) {
    alignas(16) static constexpr std::uint8_t kBytes[16] = {
        2 * kFirst,      2 * kFirst + 1,  2 * kSecond,      2 * kSecond + 1, 2 * kFirst + 4,  2 * kFirst + 5,
        2 * kSecond + 4, 2 * kSecond + 5, 2 * kFirst + 8,   2 * kFirst + 9,  2 * kSecond + 8, 2 * kSecond + 9,
        2 * kFirst + 12, 2 * kFirst + 13, 2 * kSecond + 12, 2 * kSecond + 13};
    return hn::BitCast(D16(), hn::TableLookupBytes(hn::BitCast(D8(), v), hn::LoadDup128(D8(), kBytes)));
  }

  HWY_INLINE static WideRgb Wide(V16 packed) {
    // (chroma - 128) * 256 is the lower byte moved up, with its top bit flipped.
    const V16 chroma = hn::Xor(hn::ShiftLeft<8>(packed), hn::Set(D16(), -0x8000));
    // As luma counts 64 64ths, (64 luma + offset + 32) >> 6 is luma + ((offset + 32) >> 6): the offsets are rounded
    // once for two pixels. Green's are taken away before they are rounded.
    const V16 blue_red = RoundedShift<6>(hn::MulHigh(chroma, Alternating(kBlueOfU, kRedOfV)));
    const V16 greens = hn::MulHigh(chroma, Alternating(kGreenOfU, kGreenOfV));
    const V16 green = RoundedShiftOfNegative<6>(hn::Add(greens, LanesOfPairs<1, 0>(greens)));
    const V16 luma = UpperBytes(packed);
    return {hn::Add(luma, LanesOfPairs<1, 1>(blue_red)), hn::Add(luma, green),
            hn::Add(luma, LanesOfPairs<0, 0>(blue_red))};
  }

  HWY_INLINE void operator()(int x) const {
    const Blocks blocks = LoadBlocks(source + 2 * static_cast<std::ptrdiff_t>(x));
    const WideRgb a = Wide(hn::BitCast(D16(), blocks.even));
    const WideRgb b = Wide(hn::BitCast(D16(), blocks.odd));
    StoreRgb(Packed(a.red, b.red), Packed(a.green, b.green), Packed(a.blue, b.blue),
             target + 3 * static_cast<std::ptrdiff_t>(x));
  }
};

struct StretchStep {
  const std::uint8_t* source;
  std::uint8_t* target;

  using DU16 = hn::RebindToUnsigned<D16>;
  // n / 73 for the n below 2^15 that occur: the upper half of a product with 2^22 / 73, six bits on.
  HWY_INLINE static hn::Vec<DU16> Stretch16(hn::Vec<DU16> above) {
    const DU16 d;
    const auto n = hn::Add(hn::Mul(above, hn::Set(d, 85)), hn::Set(d, 36));
    return hn::ShiftRight<6>(hn::MulHigh(n, hn::Set(d, 57457)));
  }
  HWY_INLINE void operator()(int x) const {
    const DU16 d;
    const V8 y = hn::LoadU(D8(), source + x);
    const V8 above = hn::Min(hn::SaturatedSub(y, hn::Set(D8(), kStretchFrom)), hn::Set(D8(), kStretchSpan));
    const auto pairs = hn::BitCast(d, above);
    const auto even = Stretch16(hn::And(pairs, hn::Set(d, 0xFF)));
    const auto odd = Stretch16(hn::ShiftRight<8>(pairs));
    hn::StoreU(hn::BitCast(D8(), hn::Or(even, hn::ShiftLeft<8>(odd))), D8(), target + x);
  }
};

struct GreyStep {
  const std::uint8_t* source;
  std::uint8_t* target;
  HWY_INLINE void operator()(int x) const {
    StoreGrey(hn::LoadU(D8(), source + x), target + 3 * static_cast<std::ptrdiff_t>(x));
  }
};

struct CopyStep {
  const std::uint8_t* source;
  std::uint8_t* target;
  HWY_INLINE void operator()(int x) const { hn::StoreU(hn::LoadU(D8(), source + x), D8(), target + x); }
};

template <class Step, int kGrain>
int RowSweep(const std::uint8_t* source, int x, int end, std::uint8_t* target) {
  return Sweep(x, end, kGrain, Step{source, target});
}

}  // namespace HWY_NAMESPACE
}  // namespace Rows
HWY_AFTER_NAMESPACE();

#endif
