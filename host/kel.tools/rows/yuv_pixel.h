// yuv_pixel.h
// One pixel out of luma and chroma: the definitions that every faster way has to meet.
#pragma once

#include <cstdint>

#include "bayer_pixel.h"

namespace Rows {

// The chroma weights of BT.601 at full range, in 1/16384.
constexpr int kRedOfV = 22970;    // 1.402
constexpr int kGreenOfU = 5638;   // 0.344136
constexpr int kGreenOfV = 11700;  // 0.714136
constexpr int kBlueOfU = 29032;   // 1.772

// A chroma value less 128, weighted: 1/64, rounded down. (The upper half of a 16-bit product, which is what vector
// units offer.)
inline int WeightedChroma(int weight, int chroma) { return (weight * chroma) >> 8; }

inline Rgb YuvToRgb(int y, int u, int v) {
  const auto from_64ths = [](int sum) { return static_cast<std::uint8_t>(ClampToByte((sum + 32) >> 6)); };
  const int cb = u - 128;
  const int cr = v - 128;
  return Rgb{from_64ths(64 * y + WeightedChroma(kRedOfV, cr)),
             from_64ths(64 * y - (WeightedChroma(kGreenOfU, cb) + WeightedChroma(kGreenOfV, cr))),
             from_64ths(64 * y + WeightedChroma(kBlueOfU, cb))};
}

// Luma 16..235 stretched to 0..255: (y - 16) * 255 / 219 rounded, halves cannot occur. 255 / 219 = 85 / 73.
constexpr int kStretchFrom = 16;
constexpr int kStretchSpan = 219;
inline int Stretched(int y) {
  const int above = y < kStretchFrom ? 0 : y - kStretchFrom > kStretchSpan ? kStretchSpan : y - kStretchFrom;
  return (above * 85 + 36) / 73;
}

}  // namespace Rows
