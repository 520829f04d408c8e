// bayer_rows-inl.h
// Rows of Bayer mosaics in vectors; compiled once for each kind of vector unit.

// No #pragma once: Highway includes this file again for each vector unit, and toggles the guard between.
#if defined(KEL_ROWS_BAYER_ROWS_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KEL_ROWS_BAYER_ROWS_INL_H_
#undef KEL_ROWS_BAYER_ROWS_INL_H_
#else
#define KEL_ROWS_BAYER_ROWS_INL_H_
#endif

#include <cstddef>
#include <cstdint>

#include "bayer_pixel.h"
#include "bayer_sweep-inl.h"
#include "interleave-inl.h"
#include "vectors-inl.h"

HWY_BEFORE_NAMESPACE();
namespace Rows {
namespace HWY_NAMESPACE {

// What is not sampled at a site. Values that a correction took outside 0..255 are still there.
struct Colours {
  Sites near;   // what is sampled beside it: green at a chroma site, the row's chroma at a green one
  Sites other;  // the chroma of the rows above and below
};

HWY_INLINE V16 Twice(V16 v) { return hn::Add(v, v); }

// The means of the nearest samples.
struct BilinearLanes {
  template <class A>
  HWY_INLINE static Colours At(const A& around) {
    const Sites beside = around.Beside();
    const Sites above_below = around.AboveBelow();
    return {{RoundedShift<2>(hn::Add(beside.chroma, above_below.chroma)), RoundedShift<1>(beside.green)},
            {RoundedShift<2>(around.Corners().chroma), RoundedShift<1>(above_below.green)}};
  }
};

struct CorrectedLanes {
  template <class A>
  HWY_INLINE static Colours At(const A& around) {
    const Sites here = around.Here();
    const Sites beside = around.Beside();
    const Sites far_beside = around.FarBeside();
    const Sites above_below = around.AboveBelow();
    const Sites far_above_below = around.FarAboveBelow();
    const Sites corners = around.Corners();

    // The gradient of the sampled chroma, 4 here - far. Green is (gradient + 2 nearest) / 8, the other chroma
    // (3 gradient + 4 corners) / 16.
    const V16 far = hn::Add(far_beside.chroma, far_above_below.chroma);
    const V16 gradient = hn::Sub(hn::ShiftLeft<2>(here.chroma), far);
    const V16 nearest = hn::Add(beside.chroma, above_below.chroma);
    const V16 green = RoundedShift<3>(hn::Add(gradient, Twice(nearest)));
    const V16 other = RoundedShift<4>(hn::Sub(hn::ShiftLeft<2>(hn::Add(gradient, corners.chroma)), gradient));

    // At green sites: (10 here - 2 corners + 8 next - 2 far_next + far_across) / 16, where `next` and `far_next` lie
    // towards the samples of the colour that is made, and `far_across` across. For the one colour far_across - far_next
    // is `turn`, for the other one -turn.
    const V16 five = hn::Sub(hn::Mul(here.green, hn::Set(D16(), 5)), corners.green);
    const V16 common = Twice(five);
    const V16 turn = hn::Sub(far_above_below.green, far_beside.green);
    const V16 own = hn::Sub(hn::Add(common, turn), far_beside.green);
    const V16 across = hn::Sub(hn::Sub(common, turn), far_above_below.green);
    return {{green, RoundedShift<4>(hn::Add(own, hn::ShiftLeft<3>(beside.green)))},
            {other, RoundedShift<4>(hn::Add(across, hn::ShiftLeft<3>(above_below.green)))}};
  }
};

struct AsRgb {
  template <class P>
  HWY_INLINE static void Put(const Around<P>& around, const Colours& c, std::uint8_t* target, int x) {
    StoreMosaic<P>(around.row.pixels, P::Limited(c.near), P::Limited(c.other),
                   target + 3 * static_cast<std::ptrdiff_t>(x));
  }
};

using DU16 = hn::RebindToUnsigned<D16>;
using VU16 = hn::Vec<DU16>;

// Of colours in the upper bytes of the lanes; so is the luma, with a rest below it.
template <class P>
HWY_INLINE VU16 UpperLuma(VU16 own, VU16 green, VU16 other) {
  const VU16 weighted_own = hn::MulHigh(own, hn::Set(DU16(), P::kIsRed ? kLumaRed : kLumaBlue));
  const VU16 weighted_green = hn::MulHigh(green, hn::Set(DU16(), kLumaGreen));
  const VU16 weighted_other = hn::MulHigh(other, hn::Set(DU16(), P::kIsRed ? kLumaBlue : kLumaRed));
  return hn::Add(hn::Add(weighted_own, weighted_other), hn::Add(weighted_green, hn::Set(DU16(), kLumaHalf)));
}

// Bytes as the upper halves of lanes: those of the first ones of all pairs, and of the second ones.
struct UpperPair {
  VU16 first;
  VU16 second;

  // Of pixels in order.
  HWY_INLINE static UpperPair OfPixels(V8 pixels) {
    const VU16 pairs = hn::BitCast(DU16(), pixels);
    return {hn::ShiftLeft<8>(pairs), hn::And(pairs, hn::Set(DU16(), 0xFF00))};
  }
  // Of what Phase::Limited() makes.
  HWY_INLINE static UpperPair OfLimited(V8 bytes) {
    const V8 zero = hn::Zero(D8());
    return {hn::BitCast(DU16(), hn::InterleaveLower(D8(), zero, bytes)),
            hn::BitCast(DU16(), hn::InterleaveUpper(D8(), zero, bytes))};
  }
};

struct AsLuma {
  template <class P>
  HWY_INLINE static void Put(const Around<P>& around, const Colours& c, std::uint8_t* target, int x) {
    const UpperPair here = UpperPair::OfPixels(around.row.pixels);
    const UpperPair near = UpperPair::OfLimited(P::Limited(c.near));
    const UpperPair other = UpperPair::OfLimited(P::Limited(c.other));
    const VU16 first = P::kIsChromaFirst ? UpperLuma<P>(here.first, near.first, other.first)
                                         : UpperLuma<P>(near.first, here.first, other.first);
    const VU16 second = P::kIsChromaFirst ? UpperLuma<P>(near.second, here.second, other.second)
                                          : UpperLuma<P>(here.second, near.second, other.second);
    const VU16 luma = hn::Or(hn::ShiftRight<8>(first), hn::And(second, hn::Set(DU16(), 0xFF00)));
    hn::StoreU(hn::BitCast(D8(), luma), D8(), target + x);
  }
};

// (red + 2 green + blue) / 4.
struct AsWeightedMean {
  template <class P>
  HWY_INLINE static void Put(const Around<P>& around, const Colours& c, std::uint8_t* target, int x) {
    const Sites here = around.Here();
    const V8 own = P::Limited({here.chroma, c.near.green});
    const V8 green = P::Limited({c.near.chroma, here.green});
    const V8 other = P::Limited(c.other);
    // Rounding (own + other) / 2 down and then the mean with green up is what rounding once gives.
    const V8 odd = hn::And(hn::Xor(own, other), hn::Set(D8(), 1));
    const V8 own_other = hn::Sub(hn::AverageRound(own, other), odd);
    hn::StoreU(InOrder(hn::AverageRound(own_other, green)), D8(), target + x);
  }
};

template <class Interpolation, class As>
struct Interpolated {
  template <class P>
  HWY_INLINE static void Put(const Around<P>& around, std::uint8_t* target, int x) {
    As::Put(around, Interpolation::At(around), target, x);
  }
};

// All pixels take the same kernel, whatever their colours.
struct Binomial121 {
  template <class P>
  HWY_INLINE static void Put(const Around<P>& around, std::uint8_t* target, int x) {
    const Sites nearest = Sum(around.Beside(), around.AboveBelow());
    const Sites here = around.Here();
    const Sites corners = around.Corners();
    const V8 mean = P::Limited(
        {Weighted(here.chroma, nearest.chroma, corners.chroma), Weighted(here.green, nearest.green, corners.green)});
    hn::StoreU(InOrder(mean), D8(), target + x);
  }

 private:
  HWY_INLINE static V16 Weighted(V16 here, V16 nearest, V16 corners) {
    return RoundedShift<4>(hn::Add(Twice(hn::Add(Twice(here), nearest)), corners));
  }
};

}  // namespace HWY_NAMESPACE
}  // namespace Rows
HWY_AFTER_NAMESPACE();

#endif
