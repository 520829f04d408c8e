// bayer_rows-inl.h
// Rows of Bayer mosaics in vectors; compiled once for each kind of vector unit.
#if defined(KEL_ROWS_BAYER_ROWS_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KEL_ROWS_BAYER_ROWS_INL_H_
#undef KEL_ROWS_BAYER_ROWS_INL_H_
#else
#define KEL_ROWS_BAYER_ROWS_INL_H_
#endif

#include <cstddef>
#include <cstdint>

#include "bayer_pixel.h"
#include "vectors-inl.h"

HWY_BEFORE_NAMESPACE();
namespace rows {
namespace HWY_NAMESPACE {

// Two neighbouring pixels share a 16-bit lane: the one of the row's chroma (red in a red row, blue in a blue one) and
// the green one. So every lane of a vector wants the same formula.
struct Sites {
  V16 chroma;
  V16 green;
};

// Values that a correction took outside 0..255 are still there.
struct Colours {
  Sites own;  // the row's chroma
  Sites green;
  Sites other;
};

// Which of the pair comes first, and what the row's chroma is.
template <bool kChromaFirst, bool kRed>
struct Phase {
  static constexpr bool kIsChromaFirst = kChromaFirst;
  static constexpr bool kIsRed = kRed;

  HWY_INLINE static V16 First(V16 pairs) { return hn::And(pairs, hn::Set(D16(), 0xFF)); }
  HWY_INLINE static V16 Second(V16 pairs) {
    const hn::RebindToUnsigned<D16> du;
    return hn::BitCast(D16(), hn::ShiftRight<8>(hn::BitCast(du, pairs)));
  }
  HWY_INLINE static Sites Split(V16 pairs) {
    return kChromaFirst ? Sites{First(pairs), Second(pairs)} : Sites{Second(pairs), First(pairs)};
  }
  HWY_INLINE static V8 Joined(const Sites& s) {
    const V16 first = kChromaFirst ? s.chroma : s.green;
    const V16 second = kChromaFirst ? s.green : s.chroma;
    return hn::BitCast(D8(), hn::Or(first, hn::ShiftLeft<8>(second)));
  }
  // Limited to bytes, and in Order::eSplit.
  HWY_INLINE static V8 Limited(const Sites& s) {
    return kChromaFirst ? Packed(s.chroma, s.green) : Packed(s.green, s.chroma);
  }
  // The lanes of the neighbour in the next pair: on the left of a chroma site that comes first, else on the right.
  HWY_INLINE static V16 GreenBeyondChroma(V16 left, V16 centre, V16 right) {
    return kChromaFirst ? FromLeft(left, centre) : FromRight(centre, right);
  }
  HWY_INLINE static V16 ChromaBeyondGreen(V16 left, V16 centre, V16 right) {
    return kChromaFirst ? FromRight(centre, right) : FromLeft(left, centre);
  }
};

using AnyPhase = Phase<true, true>;

HWY_INLINE V16 LoadPairs(const std::uint8_t* from) { return hn::BitCast(D16(), hn::LoadU(D8(), from)); }
HWY_INLINE Sites Sum(const Sites& a, const Sites& b) {
  return {hn::Add(a.chroma, b.chroma), hn::Add(a.green, b.green)};
}

// A vector of pixels, two to a lane, and the sum of those above and below.
template <class P>
struct Columns {
  V16 here;
  Sites above_below;

  HWY_INLINE static Columns Load(const BayerRow& row, int x) {
    const std::uint8_t* const* const line = row.lines + kBayerReach;
    return {LoadPairs(line[0] + x), Sum(P::Split(LoadPairs(line[-1] + x)), P::Split(LoadPairs(line[1] + x)))};
  }
  // The pair at x in all lanes: enough beside a vector whose outermost lanes alone look at it, and good beyond the
  // row's ends.
  HWY_INLINE static Columns Repeat(const BayerRow& row, int x) {
    const int first = Mirrored(x, row.width);
    const int second = Mirrored(x + 1, row.width);
    const auto pairs = [first, second](const std::uint8_t* line) HWY_ATTR {
      return hn::Set(D16(), static_cast<std::int16_t>(line[first] | line[second] << 8));
    };
    const std::uint8_t* const* const line = row.lines + kBayerReach;
    return {pairs(line[0]), Sum(P::Split(pairs(line[-1])), P::Split(pairs(line[1])))};
  }
};

// A vector of pixels and its neighbours to the left and to the right; each sum is of the two pixels that its name
// tells.
template <class P>
struct Around {
  using Lanes = P;
  const BayerRow& row;
  int x;
  const Columns<P>& left;
  const Columns<P>& centre;
  const Columns<P>& right;

  HWY_INLINE Sites Here() const { return P::Split(centre.here); }
  HWY_INLINE V16 GreenBeyondChroma() const {
    return P::Split(P::GreenBeyondChroma(left.here, centre.here, right.here)).green;
  }
  HWY_INLINE V16 ChromaBeyondGreen() const {
    return P::Split(P::ChromaBeyondGreen(left.here, centre.here, right.here)).chroma;
  }
  HWY_INLINE Sites FarBeside() const {
    return Sum(P::Split(FromLeft(left.here, centre.here)), P::Split(FromRight(centre.here, right.here)));
  }
  HWY_INLINE Sites Corners() const {
    const Sites& near = centre.above_below;
    const V16 greens = P::GreenBeyondChroma(left.above_below.green, near.green, right.above_below.green);
    const V16 chromas = P::ChromaBeyondGreen(left.above_below.chroma, near.chroma, right.above_below.chroma);
    return {hn::Add(near.green, greens), hn::Add(near.chroma, chromas)};
  }
  HWY_INLINE Sites FarAboveBelow() const {
    return Sum(P::Split(LoadPairs(row.lines[0] + x)), P::Split(LoadPairs(row.lines[2 * kBayerReach] + x)));
  }
};

// Calls step(around) for whole vectors from 0 up to end, each row loaded once: a vector's neighbours are the vectors
// before and after it. The last one is moved back to end with the row. Returns the first pixel that is left: 0, or at
// most the last one.
template <class P, class Step>
HWY_INLINE int BayerSweep(const BayerRow& row, int end, const Step& step) {
  const int count = static_cast<int>(hn::Lanes(D8()));
  if (end < count) return 0;
  int x = 0;
  Columns<P> left = Columns<P>::Repeat(row, -2);
  Columns<P> centre = Columns<P>::Load(row, 0);
  for (; x + 2 * count <= end; x += count) {
    const Columns<P> right = Columns<P>::Load(row, x + count);
    step(Around<P>{row, x, left, centre, right});
    left = centre;
    centre = right;
  }
  step(Around<P>{row, x, left, centre, Columns<P>::Repeat(row, x + count)});
  x += count;
  const int rest = (end - x) & ~1;
  if (rest == 0) return x;
  x += rest - count;
  const Columns<P> last = Columns<P>::Load(row, x);
  step(Around<P>{row, x, Columns<P>::Repeat(row, x - 2), last, Columns<P>::Repeat(row, x + count)});
  return x + count;
}

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
    StoreRgb<Order::eSplit>(P::kIsRed ? own : other, green, P::kIsRed ? other : own, to);
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

// All pixels want the same kernel here, whatever their colours: columns first, then their sums sideways.
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
}  // namespace rows
HWY_AFTER_NAMESPACE();

#endif
