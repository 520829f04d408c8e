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

// Two neighbouring pixels share a 16-bit lane: a pair. One of them is a site of the row's chroma (red in a red row,
// blue in a blue one), the other one a green site. So every lane of a vector takes the same formula.
struct Sites {
  V16 chroma;
  V16 green;
};

HWY_INLINE Sites Sum(const Sites& a, const Sites& b) {
  return {hn::Add(a.chroma, b.chroma), hn::Add(a.green, b.green)};
}

// Which pixels of a row are not green, and what they are.
template <bool kChromaFirst, bool kRed>
struct Phase {
  static constexpr bool kIsChromaFirst = kChromaFirst;
  static constexpr bool kIsRed = kRed;
  using Below = Phase<!kChromaFirst, !kRed>;

  // Of the first ones of all pairs, and of the second ones.
  HWY_INLINE static Sites Of(V16 first, V16 second) {
    return kChromaFirst ? Sites{first, second} : Sites{second, first};
  }
  // Limited to bytes; in each block the first ones of its pairs, then the second ones.
  HWY_INLINE static V8 Limited(const Sites& sites) {
    return kChromaFirst ? Packed(sites.chroma, sites.green) : Packed(sites.green, sites.chroma);
  }
};

// A vector of a line's pixels, and the sums along the line that the rows near it share. A field of two has what
// concerns the first ones of all pairs, then the second ones.
struct Line {
  V8 pixels;
  V16 here[2];
  V16 beside[2];      // left and right neighbour
  V16 far_beside[2];  // those two pixels away

  HWY_INLINE explicit Line(const std::uint8_t* at) {
    pixels = hn::LoadU(D8(), at);
    const V16 left = hn::BitCast(D16(), hn::LoadU(D8(), at - 2));
    const V16 right = hn::BitCast(D16(), hn::LoadU(D8(), at + 2));
    const V16 left_second = UpperBytes(left);
    const V16 right_first = LowerBytes(right);
    here[0] = LowerBytes(hn::BitCast(D16(), pixels));
    here[1] = UpperBytes(hn::BitCast(D16(), pixels));
    beside[0] = hn::Add(left_second, here[1]);
    beside[1] = hn::Add(here[0], right_first);
    far_beside[0] = hn::Add(LowerBytes(left), right_first);
    far_beside[1] = hn::Add(left_second, UpperBytes(right));
  }
};

// A vector of a row's pixels and the lines about it; each sum is of the two or four pixels that its name says.
template <class P>
struct Around {
  const Line& far_above;
  const Line& above;
  const Line& row;
  const Line& below;
  const Line& far_below;

  HWY_INLINE Sites Here() const { return Of(row.here); }
  HWY_INLINE Sites Beside() const { return Of(row.beside); }
  HWY_INLINE Sites FarBeside() const { return Of(row.far_beside); }
  HWY_INLINE Sites AboveBelow() const { return Sum(Of(above.here), Of(below.here)); }
  HWY_INLINE Sites FarAboveBelow() const { return Sum(Of(far_above.here), Of(far_below.here)); }
  HWY_INLINE Sites Corners() const { return Sum(Of(above.beside), Of(below.beside)); }

 private:
  HWY_INLINE static Sites Of(const V16 (&values)[2]) { return P::Of(values[0], values[1]); }
};

// Makes a vector of pixels of each row of a band from its row kRow on. `lines` can be read from kBayerReach before `at`
// on, to as many behind the vector there. Each line is loaded once, and its sums are carried from row to row. What does
// not change is passed by value, or it would be read again after every store.
template <class Output, class P, int kRow>
HWY_INLINE void MakeColumns(const std::uint8_t* const* lines, std::ptrdiff_t at, int rows, const Line& far_above,
                            const Line& above, const Line& row, const Line& below, std::uint8_t* target,
                            std::ptrdiff_t target_step_bytes, int x) {
  const Line far_below(lines[kRow + 2 * kBayerReach] + at);
  Output::Put(Around<P>{far_above, above, row, below, far_below}, target, x);
  if constexpr (kRow + 1 < kBandRows) {
    if (kRow + 1 == rows) return;
    MakeColumns<Output, typename P::Below, kRow + 1>(lines, at, rows, above, row, below, far_below,
                                                     target + target_step_bytes, target_step_bytes, x);
  }
}

// A vector's pixels of all lines of a band, with the mirrored ones beyond a row's ends.
class LineEnds {
 public:
  // The vector at x lies within the row.
  HWY_NOINLINE void Take(const BayerBand& band, int x) {
    const int count = static_cast<int>(hn::Lanes(D8()));
    int left[kBayerReach];
    int right[kBayerReach];
    for (int d = 0; d < kBayerReach; ++d) {
      left[d] = Mirrored(x - kBayerReach + d, band.width);
      right[d] = Mirrored(x + count + d, band.width);
    }
    for (int i = 0; i < band.rows + 2 * kBayerReach; ++i) {
      const std::uint8_t* const from = band.lines[i];
      std::uint8_t* const to = m_pixels[i];
      hn::StoreU(hn::LoadU(D8(), from + x), D8(), to + kBayerReach);
      for (int d = 0; d < kBayerReach; ++d) {
        to[d] = from[left[d]];
        to[kBayerReach + count + d] = from[right[d]];
      }
      m_lines[i] = to;
    }
  }
  const std::uint8_t* const* Lines() const { return m_lines; }

 private:
  std::uint8_t m_pixels[kBandRows + 2 * kBayerReach][HWY_MAX_BYTES + 2 * kBayerReach];
  const std::uint8_t* m_lines[kBandRows + 2 * kBayerReach];
};

// Makes whole vectors of pixels from 0 up to end, the last one moved back to end with the row. Returns the first column
// that is left: 0, or at most the last one.
template <class Output, class P>
int BayerSweep(const BayerBand& band, int end, std::uint8_t* target, std::ptrdiff_t target_step_bytes) {
  const int count = static_cast<int>(hn::Lanes(D8()));
  if (end < count) return 0;
  LineEnds ends;
  int x = 0;
  while (true) {
    const bool is_within = x >= kBayerReach && x + count + kBayerReach <= band.width;
    if (!is_within) ends.Take(band, x);
    const std::uint8_t* const* const lines = is_within ? band.lines : ends.Lines();
    const std::ptrdiff_t at = is_within ? x : kBayerReach;
    MakeColumns<Output, P, 0>(lines, at, band.rows, Line(lines[0] + at), Line(lines[1] + at), Line(lines[2] + at),
                              Line(lines[3] + at), target, target_step_bytes, x);
    x += count;
    if (x + 1 >= end) return x;
    // An even column, as that of the first pair.
    if (x + count > end) x = (end - count) & ~1;
  }
}

template <class Output>
int BayerRows(const BayerBand& band, int end, std::uint8_t* target, std::ptrdiff_t target_step_bytes) {
  if (band.chroma_parity == 0) {
    return band.is_red ? BayerSweep<Output, Phase<true, true>>(band, end, target, target_step_bytes)
                       : BayerSweep<Output, Phase<true, false>>(band, end, target, target_step_bytes);
  }
  return band.is_red ? BayerSweep<Output, Phase<false, true>>(band, end, target, target_step_bytes)
                     : BayerSweep<Output, Phase<false, false>>(band, end, target, target_step_bytes);
}

}  // namespace HWY_NAMESPACE
}  // namespace Rows
HWY_AFTER_NAMESPACE();

#endif
