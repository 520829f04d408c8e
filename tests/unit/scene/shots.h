// scene/shots.h
// Shots of scenes, and what to ask of the pictures.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "VimbaC.h"
#include "scene/chart_patches.h"
#include "scene/scene.h"

namespace SceneTest {

using Bytes = std::vector<std::uint8_t>;
using Rgb = std::array<int, 3>;

// All of a sensor at the default exposure, without noise.
Simulator::Shot WholeShot(VmbPixelFormat_t pixel_format, int width, int height);
Bytes Take(const Simulator::Scene& scene, const Simulator::Shot& shot);

std::shared_ptr<const Simulator::Scene> ColourChart(int width, int height);
std::shared_ptr<const Simulator::Scene> MonoChart(int width, int height);

std::size_t BytesPerPixel(VmbPixelFormat_t format);

// Of an RGB8 picture.
Rgb PixelAt(const Bytes& rgb, const Simulator::Shot& shot, int x, int y);
// The pixel in the middle of patch `index` of the chart, of an RGB8 picture of the whole sensor.
Rgb PatchAt(const Bytes& rgb, const Simulator::Shot& shot, int index);

// sRGB code to linear light, 0 to 1.
double Linear(int code);

// FNV-1a.
std::uint64_t Checksum(const Bytes& bytes);

}  // namespace SceneTest
