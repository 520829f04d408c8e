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
#include "vectors-inl.h"

HWY_BEFORE_NAMESPACE();
namespace Rows {
namespace HWY_NAMESPACE {

template <int kShift>
HWY_INLINE V16 RoundedShift(V16 sum) {
  return hn::ShiftRight<kShift>(hn::Add(sum, hn::Set(D16(), 1 << (kShift - 1))));
}

HWY_INLINE V16 Twice(V16 v) { return hn::Add(v, v); }

HWY_INLINE V16 Mean(V16 a, V16 b) {
  const hn::RebindToUnsigned<D16> du;
  return hn::BitCast(D16(), hn::AverageRound(hn::BitCast(du, a), hn::BitCast(du, b)));
}

struct BilinearLanes {
  template <class A>
  HWY_INLINE static Colours At(const A& near) {
    const Sites here = near.Here();
    const Sites& above_below = near.centre.above_below;
    const V16 beside = hn::Add(here.green, near.GreenBeyondChroma());
    return {{here.chroma, Mean(here.chroma, near.ChromaBeyondGreen())},
            {RoundedShift<2>(hn::Add(beside, above_below.chroma)), here.green},
            {RoundedShift<2>(near.Corners().chroma), RoundedShift<1>(above_below.green)}};
  }
};

struct CorrectedLanes {
  // (10 here - 2 corners + 8 next - 2 far_next + far_across) / 16, where common is 5 here - corners, and half the
  // rounding.
  HWY_INLINE static V16 AtGreen(V16 common, V16 next, V16 far_next, V16 far_across) {
    const V16 half = hn::Add(hn::Sub(common, far_next), hn::ShiftLeft<2>(next));
    return hn::ShiftRight<4>(hn::Add(Twice(half), far_across));
  }

  template <class A>
  HWY_INLINE static Colours At(const A& near) {
    const Sites here = near.Here();
    const Sites& above_below = near.centre.above_below;
    const Sites corners = near.Corners();
    const Sites far_beside = near.FarBeside();
    const Sites far_above_below = near.FarAboveBelow();
    const V16 beside_chroma = hn::Add(here.green, near.GreenBeyondChroma());
    const V16 beside_green = hn::Add(here.chroma, near.ChromaBeyondGreen());

    // Green: (8 here + 4 nearest - 2 far) / 16. The other colour: (12 here + 4 corners - 3 far) / 16.
    const V16 far = hn::Add(far_beside.chroma, far_above_below.chroma);
    const V16 here_less_far = hn::Sub(hn::ShiftLeft<2>(here.chroma), far);
    const V16 green = RoundedShift<3>(hn::Add(here_less_far, Twice(hn::Add(beside_chroma, above_below.chroma))));
    const V16 three = hn::Mul(here_less_far, hn::Set(D16(), 3));
    const V16 other = RoundedShift<4>(hn::Add(three, hn::ShiftLeft<2>(corners.chroma)));

    const V16 five = hn::Mul(here.green, hn::Set(D16(), 5));
    const V16 common = hn::Add(hn::Sub(five, corners.green), hn::Set(D16(), 4));
    return {{here.chroma, AtGreen(common, beside_green, far_beside.green, far_above_below.green)},
            {green, here.green},
            {other, AtGreen(common, above_below.green, far_above_below.green, far_beside.green)}};
  }
};

struct AsRgb {
  template <class P>
  HWY_INLINE static void Put(const Colours& c, std::uint8_t* target, int x) {
    const V8 own = P::Limited(c.own);
    const V8 green = P::Limited(c.green);
    const V8 other = P::Limited(c.other);
    std::uint8_t* const to = target + 3 * static_cast<std::ptrdiff_t>(x);
    StoreRgb<Order::kSplit>(P::kIsRed ? own : other, green, P::kIsRed ? other : own, to);
  }
};

using DU16 = hn::RebindToUnsigned<D16>;
using VU16 = hn::Vec<DU16>;

// Of colours in the upper bytes of the lanes; so is the luma, with a rest below it.
HWY_INLINE VU16 UpperLuma(VU16 red, VU16 green, VU16 blue) {
  const VU16 weighted_red = hn::MulHigh(red, hn::Set(DU16(), kLumaRed));
  const VU16 weighted_green = hn::MulHigh(green, hn::Set(DU16(), kLumaGreen));
  const VU16 weighted_blue = hn::MulHigh(blue, hn::Set(DU16(), kLumaBlue));
  return hn::Add(hn::Add(weighted_red, weighted_blue), hn::Add(weighted_green, hn::Set(DU16(), kLumaHalf)));
}

// Luma of colours that are within 0..255.
struct AsLuma {
  HWY_INLINE static VU16 Upper(V16 colour) { return hn::BitCast(DU16(), hn::ShiftLeft<8>(colour)); }
  template <class P>
  HWY_INLINE static void Put(const Colours& c, std::uint8_t* target, int x) {
    const Sites& red = P::kIsRed ? c.own : c.other;
    const Sites& blue = P::kIsRed ? c.other : c.own;
    const VU16 chroma = UpperLuma(Upper(red.chroma), Upper(c.green.chroma), Upper(blue.chroma));
    const VU16 green = UpperLuma(Upper(red.green), Upper(c.green.green), Upper(blue.green));
    const VU16 first = hn::ShiftRight<8>(P::kIsChromaFirst ? chroma : green);
    const VU16 second = hn::And(P::kIsChromaFirst ? green : chroma, hn::Set(DU16(), 0xFF00));
    hn::StoreU(hn::BitCast(D8(), hn::Or(first, second)), D8(), target + x);
  }
};

// Luma of colours that have to be limited first: as packed bytes, which costs less than in lanes.
struct AsLimitedLuma {
  HWY_INLINE static VU16 Even(V8 bytes) { return hn::ShiftLeft<8>(hn::BitCast(DU16(), bytes)); }
  HWY_INLINE static VU16 Odd(V8 bytes) { return hn::And(hn::BitCast(DU16(), bytes), hn::Set(DU16(), 0xFF00)); }
  template <class P>
  HWY_INLINE static void Put(const Colours& c, std::uint8_t* target, int x) {
    const V8 red = P::Limited(P::kIsRed ? c.own : c.other);
    const V8 green = P::Limited(c.green);
    const V8 blue = P::Limited(P::kIsRed ? c.other : c.own);
    const VU16 even = hn::ShiftRight<8>(UpperLuma(Even(red), Even(green), Even(blue)));
    const VU16 odd = hn::And(UpperLuma(Odd(red), Odd(green), Odd(blue)), hn::Set(DU16(), 0xFF00));
    hn::StoreU(InOrder(hn::BitCast(D8(), hn::Or(odd, even))), D8(), target + x);
  }
};

// (red + 2 green + blue) / 4 of colours that may have to be limited.
struct AsWeightedMean {
  template <class P>
  HWY_INLINE static void Put(const Colours& c, std::uint8_t* target, int x) {
    const V8 own = P::Limited(c.own);
    const V8 other = P::Limited(c.other);
    // Rounding (own + other) / 2 down and then the mean with green up is what rounding once gives.
    const V8 odd = hn::And(hn::Xor(own, other), hn::Set(D8(), 1));
    const V8 own_other = hn::Sub(hn::AverageRound(own, other), odd);
    hn::StoreU(InOrder(hn::AverageRound(own_other, P::Limited(c.green))), D8(), target + x);
  }
};

template <class Interpolation, class Output>
struct InterpolatedStep {
  std::uint8_t* target;
  template <class A>
  HWY_INLINE void operator()(const A& near) const {
    Output::template Put<typename A::Lanes>(Interpolation::At(near), target, near.x);
  }
};

template <class Interpolation, class Output>
int Interpolated(const BayerRow& row, int end, std::uint8_t* target) {
  const InterpolatedStep<Interpolation, Output> step{target};
  if (row.chroma_parity == 0) {
    return row.is_red ? BayerSweep<Phase<true, true>>(row, end, step) : BayerSweep<Phase<true, false>>(row, end, step);
  }
  return row.is_red ? BayerSweep<Phase<false, true>>(row, end, step) : BayerSweep<Phase<false, false>>(row, end, step);
}

// All pixels take the same kernel here, whatever their colours: columns first, then their sums sideways.
struct BinomialStep {
  std::uint8_t* target;
  template <class C>
  HWY_INLINE static Sites Column(const C& c) {
    const Sites here = AnyPhase::Split(c.here);
    return Sum(c.above_below, Sum(here, here));
  }
  template <class A>
  HWY_INLINE void operator()(const A& near) const {
    const Sites column = Column(near.centre);
    const V16 between = hn::Add(column.chroma, column.green);
    const V16 left = hn::Add(FromLeft(Column(near.left).green, column.green), column.chroma);
    const V16 right = hn::Add(column.green, FromRight(column.chroma, Column(near.right).chroma));
    const Sites sum{RoundedShift<4>(hn::Add(left, between)), RoundedShift<4>(hn::Add(between, right))};
    hn::StoreU(AnyPhase::Joined(sum), D8(), target + near.x);
  }
};

inline int Binomials(const BayerRow& row, int end, std::uint8_t* target) {
  return BayerSweep<AnyPhase>(row, end, BinomialStep{target});
}

}  // namespace HWY_NAMESPACE
}  // namespace Rows
HWY_AFTER_NAMESPACE();

#endif
