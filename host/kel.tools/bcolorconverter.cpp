// bcolorconverter.cpp
// Turns a camera's raw frames into the host's images.
#include "bcolorconverter.h"

#include <algorithm>
#include <cstddef>

#include "bimage8u.h"
#include "bimagergb.h"
#include "rows/bayer_pixel.h"
#include "rows/row_kernels.h"
#include "rows/yuv_pixel.h"

namespace {

using Rows::BayerBand;
using Rows::BayerRow;
using Rows::BayerSite;
using Rows::kBayerReach;
using Rows::Rgb;

// Where in the 2 x 2 tile at the frame's top left the red sample lies; blue lies diagonally opposite.
struct RedPlace {
  int x;
  int y;
};
constexpr RedPlace kRedPlaces[] = {{1, 1}, {0, 0}, {0, 1}, {1, 0}};  // by BayerOrder

int KnownOrder(int bayer_order) {
  const bool known = bayer_order >= BColorConverter::eBGGR && bayer_order <= BColorConverter::eGRBG;
  return known ? bayer_order : static_cast<int>(BColorConverter::eGRBG);
}

// A frame's memory.
struct Frame {
  const std::uint8_t* pixels;
  std::size_t line_length_bytes;
  BSize size;

  const std::uint8_t* Line(int y) const { return pixels + static_cast<std::size_t>(y) * line_length_bytes; }
};

BayerRow RowAt(const Frame& frame, int bayer_order, int y) {
  const RedPlace red = kRedPlaces[bayer_order];
  BayerRow row{};
  for (int dy = -kBayerReach; dy <= kBayerReach; ++dy) {
    row.lines[dy + kBayerReach] = frame.Line(Rows::Mirrored(y + dy, frame.size.height));
  }
  row.width = frame.size.width;
  row.is_red = ((y ^ red.y) & 1) == 0;
  row.chroma_parity = row.is_red ? red.x : 1 - red.x;
  return row;
}

BayerBand BandAt(const Frame& frame, int bayer_order, int y, int rows) {
  const BayerRow first = RowAt(frame, bayer_order, y);
  BayerBand band{{}, rows, first.width, first.chroma_parity, first.is_red};
  for (int i = 0; i < rows + 2 * kBayerReach; ++i) {
    band.lines[i] = frame.Line(Rows::Mirrored(y + i - kBayerReach, frame.size.height));
  }
  return band;
}

BSize Overlap(const BSize& a, const BSize& b) { return {std::min(a.width, b.width), std::min(a.height, b.height)}; }

void Put(const Rgb& colour, std::uint8_t* target, int x) {
  std::uint8_t* pixel = target + 3 * static_cast<std::ptrdiff_t>(x);
  pixel[0] = colour.red;
  pixel[1] = colour.green;
  pixel[2] = colour.blue;
}

// Makes the common part of frame and image: by the kernel as far as it goes, the rest by put(site, line, x).
template <class Image, class PutPixel>
void ConvertBayer(const Frame& frame, int order, Image& target, Rows::BayerKernel kernel, PutPixel put) {
  const BSize part = Overlap(frame.size, target.Size());
  for (int y = 0; y < part.height; y += Rows::kBandRows) {
    const BayerBand band = BandAt(frame, order, y, std::min(Rows::kBandRows, part.height - y));
    const int made = kernel(band, part.width, target.Row(y), static_cast<std::ptrdiff_t>(target.LineLength()));
    if (made == part.width) continue;
    for (int i = 0; i < band.rows; ++i) {
      const BayerRow row = RowAt(frame, order, y + i);
      std::uint8_t* const line = target.Row(y + i);
      for (int x = made; x < part.width; ++x) put(BayerSite(row, x), line, x);
    }
  }
}

template <class Interpolation>
void BayerToRgb(const Frame& frame, int order, BImageRgb& target, Rows::BayerKernel kernel,
                Interpolation interpolation) {
  ConvertBayer(frame, order, target, kernel, [interpolation](const BayerSite& site, std::uint8_t* line, int x) {
    Put(interpolation(site), line, x);
  });
}

template <class Grey>
void BayerToMono(const Frame& frame, int order, BImage8u& target, Rows::BayerKernel kernel, Grey grey) {
  ConvertBayer(frame, order, target, kernel, [grey](const BayerSite& site, std::uint8_t* line, int x) {
    line[x] = static_cast<std::uint8_t>(grey(site));
  });
}

// Pixel x of a row of pairs U Y V Y. A last pixel without a partner has no V of its own: it takes the pair's before it,
// and without one the neutral 128.
Rgb YuvPixelAt(const std::uint8_t* line, int x, int width) {
  constexpr int kNeutral = 128;
  const std::uint8_t* const pair = line + 4 * static_cast<std::ptrdiff_t>(x / 2);
  const bool has_v = (x | 1) < width;
  const int v = has_v ? pair[2] : x >= 2 ? pair[-2] : kNeutral;
  return Rows::YuvToRgb(pair[x % 2 == 0 ? 1 : 3], pair[0], v);
}

}  // namespace

BColorConverter::BColorConverter(const BSize& size, int bayer_order, int line_padding_bytes)
    : m_size{std::max(size.width, 0), std::max(size.height, 0)},
      m_bayer_order(KnownOrder(bayer_order)),
      m_line_padding_bytes(std::max(line_padding_bytes, 0)) {}

std::size_t BColorConverter::LineLength(int bytes_per_pixel) const {
  return static_cast<std::size_t>(m_size.width) * static_cast<std::size_t>(bytes_per_pixel) +
         static_cast<std::size_t>(m_line_padding_bytes);
}

void BColorConverter::ConvertRawToRGB(const std::uint8_t* raw, BImageRgb& target) const {
  BayerToRgb({raw, LineLength(1), m_size}, m_bayer_order, target, Rows::Kernels().corrected_rgb,
             Rows::GradientCorrected);
}

void BColorConverter::ConvertFastRawToRGB(const std::uint8_t* raw, BImageRgb& target) const {
  BayerToRgb({raw, LineLength(1), m_size}, m_bayer_order, target, Rows::Kernels().bilinear_rgb, Rows::Bilinear);
}

void BColorConverter::ConvertRawToMono(const std::uint8_t* raw, BImage8u& target, int flag) const {
  const Frame frame{raw, LineLength(1), m_size};
  if (flag != 0) {
    BayerToMono(frame, m_bayer_order, target, Rows::Kernels().corrected_weighted,
                [](const BayerSite& site) { return Rows::WeightedMean(Rows::GradientCorrected(site)); });
  } else {
    BayerToMono(frame, m_bayer_order, target, Rows::Kernels().corrected_luma,
                [](const BayerSite& site) { return Rows::Luma(Rows::GradientCorrected(site)); });
  }
}

void BColorConverter::ConvertFastRawToMono(const std::uint8_t* raw, BImage8u& target, int flag) const {
  const Frame frame{raw, LineLength(1), m_size};
  if (flag != 0) {
    BayerToMono(frame, m_bayer_order, target, Rows::Kernels().binomial, Rows::Binomial);
  } else {
    BayerToMono(frame, m_bayer_order, target, Rows::Kernels().bilinear_luma,
                [](const BayerSite& site) { return Rows::Luma(Rows::Bilinear(site)); });
  }
}

void BColorConverter::ConvertYUV422ToRGB(const std::uint8_t* yuv, BImageRgb& target) const {
  const Frame frame{yuv, LineLength(2), m_size};
  const BSize part = Overlap(m_size, target.Size());
  for (int y = 0; y < part.height; ++y) {
    const std::uint8_t* const line = frame.Line(y);
    std::uint8_t* const made = target.Row(y);
    for (int x = Rows::Kernels().yuv_rgb(line, 0, part.width, made); x < part.width; ++x) {
      Put(YuvPixelAt(line, x, m_size.width), made, x);
    }
  }
}

void BColorConverter::StretchYUV(const std::uint8_t* luma, BImage8u& target) const {
  const Frame frame{luma, LineLength(1), m_size};
  const BSize part = Overlap(m_size, target.Size());
  for (int y = 0; y < part.height; ++y) {
    const std::uint8_t* const line = frame.Line(y);
    std::uint8_t* const made = target.Row(y);
    for (int x = Rows::Kernels().stretch(line, 0, part.width, made); x < part.width; ++x) {
      made[x] = static_cast<std::uint8_t>(Rows::Stretched(line[x]));
    }
  }
}

WString BColorConverter::ArchiveName() const { return L"BColorConverter"; }

WString BColorConverter::Properties() const {
  static constexpr const wchar_t* kOrderNames[] = {L"BGGR", L"RGGB", L"GBRG", L"GRBG"};
  return WString::Format(L"Bayer %s, %d x %d pixels, %d bytes between lines", kOrderNames[m_bayer_order], m_size.width,
                         m_size.height, m_line_padding_bytes);
}
