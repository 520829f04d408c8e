// scene/sensor_response.cpp
// How a sensor turns light into eight-bit samples: exposure, gain, saturation, noise, tone curve.
#include "scene/sensor_response.h"

#include <algorithm>
#include <cmath>

#include "scene/tone_curve.h"

namespace Simulator {
namespace {

// A machine-vision sensor of ordinary size.
constexpr double kFullWellElectrons = 10500.0;
constexpr double kReadNoiseElectrons = 9.0;
// Light beyond this multiple of saturation stays saturated whatever the noise.
constexpr double kMostSignal = 4.0;
// Levels and spreads count 1/256 of an output step, of which there are 255.
constexpr double kFullLevel = 255.0 * 256.0;

constexpr std::size_t kNoiseTableSize = 32768;

std::uint64_t Mix(std::uint64_t value) {
  value += 0x9E3779B97F4A7C15u;
  value = (value ^ (value >> 30)) * 0xBF58476D1CE4E5B9u;
  value = (value ^ (value >> 27)) * 0x94D049BB133111EBu;
  return value ^ (value >> 31);
}

// The sum of twelve evenly distributed values is near enough to a normal distribution, and sums of whole numbers are
// the same on every platform.
std::vector<std::int16_t> MakeNoiseTable() {
  // Six times the range of one value.
  constexpr std::int64_t kMeanOfSum = std::int64_t{6} * 65536;
  std::vector<std::int16_t> table(kNoiseTableSize + NoiseRow::kSegment);
  for (std::size_t i = 0; i < kNoiseTableSize; ++i) {
    std::int64_t sum = -kMeanOfSum;
    for (std::uint64_t part = 0; part < 3; ++part) {
      std::uint64_t bits = Mix(3 * i + part);
      for (int value = 0; value < 4; ++value, bits >>= 16) sum += static_cast<std::int64_t>(bits & 0xFFFF);
    }
    table[i] = static_cast<std::int16_t>(sum / 64);
  }
  std::copy_n(table.begin(), NoiseRow::kSegment, table.begin() + kNoiseTableSize);
  return table;
}

std::array<double, 256> MakeLights() {
  std::array<double, 256> lights{};
  for (std::size_t code = 0; code < lights.size(); ++code) lights[code] = Decode(static_cast<double>(code) / 255.0);
  return lights;
}

std::int32_t Rounded(double value) { return static_cast<std::int32_t>(std::lround(value)); }

}  // namespace

ChannelResponse MakeChannelResponse(double exposure, double gain, int averaged) {
  static const std::array<double, 256> kLights = MakeLights();
  ChannelResponse response;
  // Written so that a value that is no number counts as 0.
  const double analogue = gain > 0.0 ? gain : 0.0;
  const double light_factor = exposure > 0.0 ? exposure * analogue : 0.0;
  const double read_noise = kReadNoiseElectrons / kFullWellElectrons * analogue;
  for (std::size_t code = 0; code < response.size(); ++code) {
    const double signal = std::min(kMostSignal, kLights[code] * light_factor);
    const double variance = (signal * analogue / kFullWellElectrons + read_noise * read_noise) / averaged;
    const double level = Encode(signal);
    const double spread = std::min(1.0, Encode(signal + std::sqrt(variance)) - level);
    response[code] = {Rounded(level * kFullLevel), Rounded(spread * kFullLevel)};
  }
  return response;
}

NoiseRow::NoiseRow(bool noise, std::uint64_t seed, std::uint64_t frame_number, int row)
    : m_noise(noise), m_key(Mix(Mix(Mix(seed) ^ frame_number) ^ static_cast<std::uint64_t>(row))) {}

const std::int16_t* NoiseRow::Segment(std::size_t segment) const {
  static const std::vector<std::int16_t> kNoise = MakeNoiseTable();
  static const std::vector<std::int16_t> kSilence(kSegment);
  return m_noise ? &kNoise[Mix(m_key ^ segment) % kNoiseTableSize] : kSilence.data();
}

}  // namespace Simulator
