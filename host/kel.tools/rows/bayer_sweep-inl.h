// bayer_sweep-inl.h
// A Bayer mosaic's rows as vectors of pixels with their neighbours; compiled once for each kind of vector unit.

// No #pragma once: Highway includes this file again for each vector unit, and toggles the guard between.
#if defined(KEL_ROWS_BAYER_SWEEP_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KEL_ROWS_BAYER_SWEEP_INL_H_
#undef KEL_ROWS_BAYER_SWEEP_INL_H_
#else
#define KEL_ROWS_BAYER_SWEEP_INL_H_
#endif

#include <cstddef>
#include <cstdint>

#include "bayer_pixel.h"
#include "vectors-inl.h"

HWY_BEFORE_NAMESPACE();
namespace Rows {
namespace HWY_NAMESPACE {

// Two neighbouring pixels share a 16-bit lane: the one of the row's chroma (red in a red row, blue in a blue one) and
// the green one. So every lane of a vector takes the same formula.
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
  // Limited to bytes, and in Order::kSplit.
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
  // The pair at x in all lanes: enough next to a vector whose outermost lanes alone look at it, and good beyond the
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
// says.
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

}  // namespace HWY_NAMESPACE
}  // namespace Rows
HWY_AFTER_NAMESPACE();

#endif
