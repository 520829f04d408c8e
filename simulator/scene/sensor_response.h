// scene/sensor_response.h
// How a sensor turns light into eight-bit samples: exposure, gain, saturation, noise, tone curve.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace Simulator {

// What a code of the still picture becomes, and the spread of its noise there, both in 1/256 of an output step.
struct SampleResponse {
  std::int32_t level = 0;
  std::int32_t spread = 0;
};
using ChannelResponse = std::array<SampleResponse, 256>;

// `exposure` is a multiple of the default one, `gain` the analogue factor times the channel's balance, `averaged` the
// number of pixels that make one.
ChannelResponse MakeChannelResponse(double exposure, double gain, int averaged);

// The noise of one row of one frame: normally distributed values in 1/1024 of the spread.
class NoiseRow {
 public:
  // Samples of a segment.
  static constexpr std::size_t kSegment = 4096;

  // Without noise all values are 0.
  NoiseRow(bool noise, std::uint64_t seed, std::uint64_t frame_number, int row);
  // kSegment values for the row's samples from number segment * kSegment.
  const std::int16_t* Segment(std::size_t segment) const;

 private:
  bool m_noise;
  std::uint64_t m_key;
};

inline std::uint8_t Sample(const ChannelResponse& response, std::uint8_t code, std::int16_t noise) {
  const SampleResponse& entry = response[code];
  // A shift rounds down, negative values too; with half a step added first it rounds to the nearest.
  const std::int32_t value = (entry.level + ((entry.spread * noise + 512) >> 10) + 128) >> 8;
  return static_cast<std::uint8_t>(value < 0 ? 0 : value > 255 ? 255 : value);
}

}  // namespace Simulator
