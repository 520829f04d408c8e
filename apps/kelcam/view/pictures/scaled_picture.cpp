// scaled_picture.cpp
// A picture made smaller.
#include "view/pictures/scaled_picture.h"

#include <algorithm>
#include <cmath>

namespace Kelcam {
namespace {

// The weights of one target pixel's sources are 256 in all: a column's sum fits 16 bits, and a pixel's 32.
constexpr unsigned kWhole = 256;
constexpr unsigned kSumShift = 16;
constexpr std::uint32_t kHalfSum = 1U << (kSumShift - 1);

// What one target pixel covers in one direction.
struct Span {
  std::size_t first;
  std::vector<std::uint16_t> weights;
};

// Weights are differences of a rounded running sum, so that no rounding adds up.
std::vector<Span> SpansOf(int source, int target) {
  std::vector<Span> spans(static_cast<std::size_t>(target));
  const double step = static_cast<double>(source) / target;
  for (int i = 0; i < target; ++i) {
    const double begin = step * i;
    const double end = std::min(step * (i + 1), static_cast<double>(source));
    Span& span = spans[static_cast<std::size_t>(i)];
    span.first = static_cast<std::size_t>(begin);
    unsigned given = 0;
    for (std::size_t at = span.first; given < kWhole; ++at) {
      const double covered = std::min(static_cast<double>(at + 1), end) - begin;
      const auto sum = static_cast<unsigned>(std::lround(covered / (end - begin) * kWhole));
      span.weights.push_back(static_cast<std::uint16_t>(sum - given));
      given = sum;
    }
  }
  return spans;
}

void AddRow(std::vector<std::uint16_t>& sums, const std::uint8_t* row, std::uint16_t weight) {
  std::uint16_t* const sum = sums.data();
  const std::size_t count = sums.size();
  for (std::size_t i = 0; i < count; ++i) sum[i] = static_cast<std::uint16_t>(sum[i] + row[i] * weight);
}

// A pixel's sources lie one after the other in every row, so their place and weights are those of a plain list.
struct Taps {
  std::vector<std::size_t> first;     // of each target pixel: the place of its first source value
  std::vector<std::size_t> begin;     // and of its first weight; one more at the end
  std::vector<std::uint16_t> weight;  // of all
};

Taps TapsOf(const std::vector<Span>& spans, std::size_t channels) {
  Taps taps;
  for (const Span& span : spans) {
    taps.first.push_back(span.first * channels);
    taps.begin.push_back(taps.weight.size());
    taps.weight.insert(taps.weight.end(), span.weights.begin(), span.weights.end());
  }
  taps.begin.push_back(taps.weight.size());
  return taps;
}

template <std::size_t kChannels>
void NarrowRow(const std::vector<std::uint16_t>& sums, const Taps& taps, std::uint8_t* target) {
  const std::size_t count = taps.first.size();
  for (std::size_t i = 0; i < count; ++i) {
    std::uint32_t total[kChannels];
    std::fill_n(total, kChannels, kHalfSum);
    const std::uint16_t* source = sums.data() + taps.first[i];
    for (std::size_t tap = taps.begin[i]; tap < taps.begin[i + 1]; ++tap, source += kChannels) {
      for (std::size_t c = 0; c < kChannels; ++c) total[c] += static_cast<std::uint32_t>(source[c]) * taps.weight[tap];
    }
    for (std::size_t c = 0; c < kChannels; ++c) *target++ = static_cast<std::uint8_t>(total[c] >> kSumShift);
  }
}

}  // namespace

int HeightFor(int width, const BSize& size) {
  const double height = static_cast<double>(size.height) * width / size.width;
  return std::max(1, static_cast<int>(std::lround(height)));
}

ScaledPicture ScaledDown(const Pixels& pixels, int width) {
  ScaledPicture scaled;
  scaled.size = {width, HeightFor(width, pixels.size)};
  scaled.channels = pixels.channels;
  scaled.bytes.resize(static_cast<std::size_t>(scaled.size.width) * static_cast<std::size_t>(scaled.size.height) *
                      scaled.channels);
  const Taps taps = TapsOf(SpansOf(pixels.size.width, width), pixels.channels);
  std::vector<std::uint16_t> sums(pixels.RowBytes());
  std::uint8_t* target = scaled.bytes.data();
  for (const Span& span : SpansOf(pixels.size.height, scaled.size.height)) {
    std::fill(sums.begin(), sums.end(), std::uint16_t{0});
    for (std::size_t i = 0; i < span.weights.size(); ++i) {
      AddRow(sums, pixels.Row(static_cast<int>(span.first + i)), span.weights[i]);
    }
    pixels.channels == 1 ? NarrowRow<1>(sums, taps, target) : NarrowRow<3>(sums, taps, target);
    target += static_cast<std::size_t>(width) * scaled.channels;
  }
  return scaled;
}

}  // namespace Kelcam
