// scene/tone_curve.cpp
// The sRGB curve and the few functions around it, in arithmetic that gives the same bits on every platform.
#include "scene/tone_curve.h"

#include <array>
#include <cmath>
#include <vector>

namespace Simulator {
namespace {

constexpr double kPi = 3.14159265358979323846;

// Newton's method for the n-th root of x > 0, n from 3 to 8. It begins above the root and falls until it stops.
double Root(double x, int n) {
  double root = x > 1.0 ? std::sqrt(x) : std::sqrt(std::sqrt(std::sqrt(x)));
  for (;;) {
    double power = 1.0;
    for (int i = 1; i < n; ++i) power *= root;
    const double next = ((n - 1) * root + x / power) / n;
    if (next >= root) return root;
    root = next;
  }
}

double SineTaylor(double angle) {
  double sum = 0.0;
  double term = angle;
  for (int i = 1; i < 24; i += 2) {
    sum += term;
    term *= -angle * angle / ((i + 1) * (i + 2));
  }
  return sum;
}

// For 0 <= x <= 1; the half-angle step brings the series into its fast range.
double ArcTangent(double x) {
  const double reduced = x / (1.0 + std::sqrt(1.0 + x * x));
  double sum = 0.0;
  double power = reduced;
  for (int i = 1; i < 36; i += 2) {
    sum += power / i;
    power *= -reduced * reduced;
  }
  return 2.0 * sum;
}

std::vector<std::uint8_t> MakeCodeTable() {
  std::vector<std::uint8_t> codes(kFullLight + 1);
  for (std::size_t code = 0, light = 0; code < 256; ++code) {
    const double border = code == 255 ? 2.0 : Decode((static_cast<double>(code) + 0.5) / 255.0);
    while (light < codes.size() && static_cast<double>(light) < border * kFullLight) {
      codes[light++] = static_cast<std::uint8_t>(code);
    }
  }
  return codes;
}

std::array<std::uint16_t, 256> MakeLightTable() {
  std::array<std::uint16_t, 256> lights{};
  for (std::size_t code = 0; code < lights.size(); ++code) {
    lights[code] = static_cast<std::uint16_t>(std::lround(Decode(static_cast<double>(code) / 255.0) * kFullLight));
  }
  return lights;
}

}  // namespace

double Decode(double code) {
  if (code <= 0.04045) return code / 12.92;
  const double base = (code + 0.055) / 1.055;
  return base * base * Root(base * base, 5);
}

double Encode(double light) {
  if (light <= 0.0031308) return light * 12.92;
  const double twelfth = std::sqrt(std::sqrt(Root(light, 3)));
  const double squared = twelfth * twelfth;
  return 1.055 * (squared * squared * twelfth) - 0.055;
}

std::uint16_t LightOfCode(std::uint8_t code) {
  static const std::array<std::uint16_t, 256> kLights = MakeLightTable();
  return kLights[code];
}

std::uint8_t CodeOfLight(std::uint16_t light) {
  static const std::vector<std::uint8_t> kCodes = MakeCodeTable();
  return kCodes[light];
}

double GainFactor(double decibel) {
  constexpr double kLogTenPerTwenty = 0.11512925464970228420;
  const double small = decibel * kLogTenPerTwenty / 1024.0;
  double sum = 1.0;
  double term = 1.0;
  for (int i = 1; i < 12; ++i) {
    term *= small / i;
    sum += term;
  }
  for (int i = 0; i < 10; ++i) sum *= sum;
  return sum;
}

Direction DirectionAt(double turns) {
  const double fraction = turns - std::floor(turns);
  const double quarters = std::floor(fraction * 4.0);
  const double angle = (fraction * 4.0 - quarters) * (kPi / 2.0);
  const double sine = SineTaylor(angle);
  const double cosine = SineTaylor(kPi / 2.0 - angle);
  switch (static_cast<int>(quarters)) {
    case 0:
      return {sine, -cosine};
    case 1:
      return {cosine, sine};
    case 2:
      return {-sine, cosine};
    default:
      return {-cosine, -sine};
  }
}

double TurnsOf(double x, double y) {
  const double across = std::fabs(x);
  const double along = std::fabs(y);
  if (across == 0.0 && along == 0.0) return 0.0;
  const double steep = across <= along ? ArcTangent(across / along) : kPi / 2.0 - ArcTangent(along / across);
  const double quarter = steep / (2.0 * kPi);
  const double half = y <= 0.0 ? quarter : 0.5 - quarter;
  const double turns = x >= 0.0 ? half : 1.0 - half;
  return turns < 1.0 ? turns : 0.0;
}

}  // namespace Simulator
