// scene/shots.cpp
// Shots of scenes, and what to ask of the pictures.
#include "unit/scene/shots.h"

#include <cmath>

namespace SceneTest {

Simulator::Shot WholeShot(VmbPixelFormat_t pixel_format, int width, int height) {
  Simulator::Shot shot;
  shot.pixel_format = pixel_format;
  shot.width = width;
  shot.height = height;
  shot.noise = false;
  return shot;
}

Bytes Take(const Simulator::Scene& scene, const Simulator::Shot& shot) {
  const std::size_t pixels = static_cast<std::size_t>(shot.width) * static_cast<std::size_t>(shot.height);
  Bytes bytes(pixels * BytesPerPixel(shot.pixel_format));
  scene.Render(shot, bytes.data());
  return bytes;
}

// Bits 16 to 23 of a format are the bits of a pixel.
std::size_t BytesPerPixel(VmbPixelFormat_t format) { return (format >> 16 & 0xFF) / 8; }

std::shared_ptr<const Simulator::Scene> ColourChart(int width, int height) {
  return Simulator::MakeChartScene(width, height, true, Simulator::BayerOrder::kRggb);
}

std::shared_ptr<const Simulator::Scene> MonoChart(int width, int height) {
  return Simulator::MakeChartScene(width, height, false, Simulator::BayerOrder::kRggb);
}

Rgb PixelAt(const Bytes& rgb, const Simulator::Shot& shot, int x, int y) {
  const std::size_t at =
      3 * (static_cast<std::size_t>(y) * static_cast<std::size_t>(shot.width) + static_cast<std::size_t>(x));
  return {rgb[at], rgb[at + 1], rgb[at + 2]};
}

Rgb PatchAt(const Bytes& rgb, const Simulator::Shot& shot, int index) {
  const Simulator::PatchArea area = Simulator::ChartPatchArea(shot.width, shot.height, index);
  return PixelAt(rgb, shot, static_cast<int>((area.left + area.right) / 2),
                 static_cast<int>((area.top + area.bottom) / 2));
}

double Linear(int code) {
  const double value = code / 255.0;
  return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

std::uint64_t Checksum(const Bytes& bytes) {
  std::uint64_t sum = 14695981039346656037u;
  for (const std::uint8_t byte : bytes) sum = (sum ^ byte) * 1099511628211u;
  return sum;
}

}  // namespace SceneTest
