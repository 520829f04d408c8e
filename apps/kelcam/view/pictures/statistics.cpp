// statistics.cpp
// What a frame's values say of its exposure and focus.
#include "view/pictures/statistics.h"

#include <algorithm>
#include <numeric>

namespace Kelcam {
namespace {

constexpr int kSobelReach = 1;
constexpr int kLeastSide = 3;

// Neighbours are often equal, and a counter that has just been written is slow to read: they get counters of their own.
constexpr std::size_t kTables = 4;

template <std::size_t kChannels>
void CountRow(const std::uint8_t* row, std::size_t pixels, std::array<std::array<Histogram, kTables>, 3>& counts) {
  std::size_t x = 0;
  for (; x + kTables <= pixels; x += kTables) {
    for (std::size_t table = 0; table < kTables; ++table) {
      for (std::size_t c = 0; c < kChannels; ++c) ++counts[c][table][row[(x + table) * kChannels + c]];
    }
  }
  for (; x < pixels; ++x) {
    for (std::size_t c = 0; c < kChannels; ++c) ++counts[c][0][row[x * kChannels + c]];
  }
}

std::uint64_t CountOf(const Histogram& histogram) {
  return std::accumulate(histogram.begin(), histogram.end(), std::uint64_t{0});
}

double ShareOf(const Histogram& histogram, std::size_t value) {
  const std::uint64_t count = CountOf(histogram);
  return count > 0 ? static_cast<double>(histogram.at(value)) / static_cast<double>(count) : 0.0;
}

// Of ITU-R BT.601, in parts of 256.
constexpr int kRedWeight = 77;
constexpr int kGreenWeight = 150;
constexpr int kBlueWeight = 29;
constexpr int kLumaShift = 8;

void TakeLuma(const std::uint8_t* row, std::size_t channels, std::vector<std::int16_t>& luma) {
  const std::size_t count = luma.size();
  std::int16_t* const target = luma.data();
  if (channels == 1) {
    for (std::size_t x = 0; x < count; ++x) target[x] = row[x];
    return;
  }
  for (std::size_t x = 0; x < count; ++x) {
    const std::uint8_t* const pixel = row + 3 * x;
    const int sum = kRedWeight * pixel[0] + kGreenWeight * pixel[1] + kBlueWeight * pixel[2];
    target[x] = static_cast<std::int16_t>(sum >> kLumaShift);
  }
}

// Of a row's inner pixels. A gradient is at most 4 * 255 in each direction, so 2048 squared gradients fit 32 bits.
constexpr std::size_t kBlock = 2048;

std::uint64_t SquaredGradients(const std::int16_t* above, const std::int16_t* here, const std::int16_t* below,
                               std::size_t width) {
  std::uint64_t total = 0;
  for (std::size_t begin = kSobelReach; begin + kSobelReach < width; begin += kBlock) {
    const std::size_t end = std::min(begin + kBlock, width - kSobelReach);
    std::uint32_t sum = 0;
    for (std::size_t x = begin; x < end; ++x) {
      const int right = above[x + 1] + 2 * here[x + 1] + below[x + 1];
      const int left = above[x - 1] + 2 * here[x - 1] + below[x - 1];
      const int down = below[x - 1] + 2 * below[x] + below[x + 1];
      const int up = above[x - 1] + 2 * above[x] + above[x + 1];
      const int across = right - left;
      const int along = down - up;
      sum += static_cast<std::uint32_t>(across * across + along * along);
    }
    total += sum;
  }
  return total;
}

}  // namespace

std::vector<Histogram> HistogramsOf(const Pixels& pixels) {
  std::array<std::array<Histogram, kTables>, 3> counts{};
  for (int y = 0; y < pixels.size.height; ++y) {
    const auto width = static_cast<std::size_t>(pixels.size.width);
    pixels.channels == 1 ? CountRow<1>(pixels.Row(y), width, counts) : CountRow<3>(pixels.Row(y), width, counts);
  }
  std::vector<Histogram> histograms(pixels.channels);
  for (std::size_t c = 0; c < pixels.channels; ++c) {
    for (std::size_t value = 0; value < kValues; ++value) {
      histograms[c][value] = 0;
      for (const Histogram& table : counts[c]) histograms[c][value] += table[value];
    }
  }
  return histograms;
}

double MeanOf(const Histogram& histogram) {
  const std::uint64_t count = CountOf(histogram);
  std::uint64_t sum = 0;
  for (std::size_t value = 0; value < kValues; ++value) sum += value * histogram[value];
  return count > 0 ? static_cast<double>(sum) / static_cast<double>(count) : 0.0;
}

double DarkShareOf(const Histogram& histogram) { return ShareOf(histogram, 0); }
double BrightShareOf(const Histogram& histogram) { return ShareOf(histogram, kValues - 1); }

double SharpnessOf(const Pixels& pixels) {
  if (pixels.size.width < kLeastSide || pixels.size.height < kLeastSide) return 0.0;
  const auto width = static_cast<std::size_t>(pixels.size.width);
  std::vector<std::int16_t> above(width);
  std::vector<std::int16_t> here(width);
  std::vector<std::int16_t> below(width);
  std::uint64_t gradients = 0;
  std::uint64_t lumas = 0;
  for (int y = 0; y < pixels.size.height; ++y) {
    std::swap(above, here);
    std::swap(here, below);
    TakeLuma(pixels.Row(y), pixels.channels, below);
    lumas += static_cast<std::uint64_t>(std::accumulate(below.begin(), below.end(), 0));
    if (y + 1 >= kLeastSide) gradients += SquaredGradients(above.data(), here.data(), below.data(), width);
  }
  if (lumas == 0) return 0.0;
  const double inner = static_cast<double>(width - 2) * (pixels.size.height - 2);
  const double mean_luma = static_cast<double>(lumas) / (static_cast<double>(width) * pixels.size.height);
  return static_cast<double>(gradients) / inner / (mean_luma * mean_luma);
}

}  // namespace Kelcam
