// scene/tone_curve.h
// The sRGB curve and the few functions around it, in arithmetic that gives the same bits on every platform.
#pragma once

#include <cstdint>

namespace Simulator {

// Light in the drawing: 0 to kFullLight, where the sensor saturates at the default exposure.
inline constexpr int kFullLight = 65535;

// The curve for values 0 to 1 and, for Encode, above. Both are built from + - * / and square roots alone, because a
// library's pow may differ in its last bit from one platform to the next and so in a rounded pixel.
double Decode(double code);
double Encode(double light);

std::uint16_t LightOfCode(std::uint8_t code);
std::uint8_t CodeOfLight(std::uint16_t light);

// 10 to the power of decibel / 20.
double GainFactor(double decibel);

struct Direction {
  double x = 0;
  double y = 0;
};
// The unit vector at `turns` full turns clockwise from straight up (y grows downwards).
Direction DirectionAt(double turns);
// The reverse: 0 to below 1. (0, 0) gives 0.
double TurnsOf(double x, double y);

}  // namespace Simulator
