// pixel_pattern.h
// What the tests' camera sees: for each pixel of each frame one value, so that a test can check every one.
#pragma once

#include <array>
#include <cstdint>

namespace PixelPattern {

// Mono8: a ramp that moves from frame to frame. x and y are places on the sensor, whatever part of it the frame shows.
// The camera counts its frames from 1 to 65535 and then from 1 again; whoever goes on counting gets the same.
constexpr std::uint8_t Grey(std::uint64_t frame_id, std::uint32_t x, std::uint32_t y) {
  constexpr std::uint64_t kIds = 65'535;
  return static_cast<std::uint8_t>(7 * ((frame_id + kIds - 1) % kIds + 1) + x + std::uint64_t{3} * y);
}

// RGB8 and BayerRG8: a surface of one colour. A mosaic of it gives this colour at every pixel.
struct Colour {
  std::uint8_t red, green, blue;
};
constexpr Colour kColour{200, 120, 40};

constexpr std::array<std::uint8_t, 3> kRgb{kColour.red, kColour.green, kColour.blue};

constexpr std::uint8_t BayerRg(std::uint32_t x, std::uint32_t y) {
  if (x % 2 != y % 2) return kColour.green;
  return y % 2 == 0 ? kColour.red : kColour.blue;
}

}  // namespace PixelPattern
