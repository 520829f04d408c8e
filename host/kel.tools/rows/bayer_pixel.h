// bayer_pixel.h
// One pixel out of a Bayer mosaic: the definitions that every faster way has to meet.
#pragma once

#include <cstdint>
#include <cstdlib>

namespace Rows {

struct Rgb {
  std::uint8_t red;
  std::uint8_t green;
  std::uint8_t blue;
};

// Pixels that the interpolations look beyond their own on either side.
constexpr int kBayerReach = 2;

// Index `i`, at most kBayerReach outside 0..size-1, mirrored about the edge pixel, which keeps the colour of its column
// or row; in the smallest sizes that takes two turns. A size of 1 leaves only that pixel. Without loops, as every row's
// ends come here.
inline int Mirrored(int i, int size) {
  const int last = size - 1;
  i = std::abs(i);
  i = i > last ? std::abs(2 * last - i) : i;
  return i > last ? last : i;
}

// A row of a mosaic with the two above and the two below it, mirrored at the frame's top and bottom.
struct BayerRow {
  const std::uint8_t* lines[2 * kBayerReach + 1];
  int width;
  int chroma_parity;  // parity of the columns that are not green
  bool is_red;        // those are red, else blue
};

// Rows that a kernel makes together. What it sums up along one line serves five rows, so more rows cost less each; each
// is one more stream of memory to read and one to write.
constexpr int kBandRows = 8;

// Neighbouring rows of a mosaic with the two lines above and the two below them, mirrored at the frame's top and
// bottom.
struct BayerBand {
  const std::uint8_t* lines[kBandRows + 2 * kBayerReach];  // rows + 2 * kBayerReach of them
  int rows;
  int width;
  // As in BayerRow, of the first row. Both alternate from row to row.
  int chroma_parity;
  bool is_red;
};

// A pixel of a row and the columns about it, mirrored at the row's ends.
class BayerSite {
 public:
  BayerSite(const BayerRow& row, int x) : m_lines(row.lines), m_is_red(row.is_red) {
    m_is_chroma = ((x ^ row.chroma_parity) & 1) == 0;
    for (int dx = -kBayerReach; dx <= kBayerReach; ++dx) m_columns[dx + kBayerReach] = Mirrored(x + dx, row.width);
  }

  bool IsChroma() const { return m_is_chroma; }
  int At(int dx, int dy) const { return m_lines[dy + kBayerReach][m_columns[dx + kBayerReach]]; }
  int Beside(int distance) const { return At(-distance, 0) + At(distance, 0); }
  int AboveBelow(int distance) const { return At(0, -distance) + At(0, distance); }
  int Corners() const { return At(-1, -1) + At(1, -1) + At(-1, 1) + At(1, 1); }
  // `own` is the colour of the row's pixels that are not green.
  Rgb Ordered(int own, int green, int other) const {
    const auto a = static_cast<std::uint8_t>(own);
    const auto b = static_cast<std::uint8_t>(other);
    return m_is_red ? Rgb{a, static_cast<std::uint8_t>(green), b} : Rgb{b, static_cast<std::uint8_t>(green), a};
  }

 private:
  const std::uint8_t* const* m_lines;
  int m_columns[2 * kBayerReach + 1];
  bool m_is_red;
  bool m_is_chroma;
};

inline int ClampToByte(int value) { return value < 0 ? 0 : value > 255 ? 255 : value; }

// Mean of the nearest samples of each colour, rounded, halves up.
inline Rgb Bilinear(const BayerSite& site) {
  const int here = site.At(0, 0);
  if (site.IsChroma()) {
    return site.Ordered(here, (site.Beside(1) + site.AboveBelow(1) + 2) >> 2, (site.Corners() + 2) >> 2);
  }
  return site.Ordered((site.Beside(1) + 1) >> 1, here, (site.AboveBelow(1) + 1) >> 1);
}

// Malvar, He, Cutler: bilinear, corrected by the gradient of the colour that was sampled. Sixteenths, rounded once,
// halves up.
inline Rgb GradientCorrected(const BayerSite& site) {
  const int here = site.At(0, 0);
  const int beside = site.Beside(1);
  const int above_below = site.AboveBelow(1);
  const int far_beside = site.Beside(2);
  const int far_above_below = site.AboveBelow(2);
  const int corners = site.Corners();
  const auto sixteenths = [](int sum) { return ClampToByte((sum + 8) >> 4); };
  if (site.IsChroma()) {
    const int far = far_beside + far_above_below;
    return site.Ordered(here, sixteenths(8 * here + 4 * (beside + above_below) - 2 * far),
                        sixteenths(12 * here + 4 * corners - 3 * far));
  }
  const int common = 10 * here - 2 * corners;
  return site.Ordered(sixteenths(common + 8 * beside - 2 * far_beside + far_above_below), here,
                      sixteenths(common + 8 * above_below - 2 * far_above_below + far_beside));
}

// The 3 x 3 binomial kernel, rounded, halves up: (red + 2 green + blue) / 4 of a bilinear interpolation that smooths
// green, too.
inline int Binomial(const BayerSite& site) {
  return (4 * site.At(0, 0) + 2 * (site.Beside(1) + site.AboveBelow(1)) + site.Corners() + 8) >> 4;
}

// Rec. 601 luma: 256ths of weights in 1/65536, each product rounded down. (The upper half of a 16-bit product.)
constexpr int kLumaRed = 19595;
constexpr int kLumaGreen = 38470;
constexpr int kLumaBlue = 7471;
constexpr int kLumaHalf = 128;
inline int Luma(const Rgb& c) {
  return (((kLumaRed * c.red) >> 8) + ((kLumaGreen * c.green) >> 8) + ((kLumaBlue * c.blue) >> 8) + kLumaHalf) >> 8;
}

inline int WeightedMean(const Rgb& c) { return (c.red + 2 * c.green + c.blue + 2) >> 2; }

}  // namespace Rows
