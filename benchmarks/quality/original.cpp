// original.cpp
// Full-colour pictures to take mosaics of.
#include "original.h"

#include <cstddef>
#include <filesystem>
#include <memory>
#include <stdexcept>

#include "scene/scene.h"

#define STB_IMAGE_IMPLEMENTATION
#define STB_IMAGE_STATIC
#include <stb/stb_image.h>

namespace {

constexpr int kChannels = 3;

}  // namespace

Original HalvedPhotograph(const std::string& path) {
  int width = 0;
  int height = 0;
  int channels = 0;
  const std::unique_ptr<stbi_uc, decltype(&stbi_image_free)> pixels(
      stbi_load(path.c_str(), &width, &height, &channels, kChannels), &stbi_image_free);
  if (pixels == nullptr) throw std::runtime_error(path + ": " + stbi_failure_reason());
  const std::size_t line = static_cast<std::size_t>(width) * kChannels;
  Original half{std::filesystem::path(path).stem().string(), {width / 4 * 2, height / 4 * 2}, {}};
  for (std::size_t y = 0; y < static_cast<std::size_t>(half.size.height); ++y) {
    for (std::size_t i = 0; i < static_cast<std::size_t>(half.size.width) * kChannels; ++i) {
      const stbi_uc* const from = pixels.get() + 2 * y * line + i / kChannels * 2 * kChannels + i % kChannels;
      const int sum = from[0] + from[kChannels] + from[line] + from[line + kChannels];
      half.rgb.push_back(static_cast<std::uint8_t>((sum + 2) / 4));
    }
  }
  return half;
}

Original TestChart() {
  constexpr BSize kSize{1292, 964};
  constexpr std::uint32_t kRgb8 = 0x02180014;
  Simulator::Shot shot;
  shot.pixel_format = kRgb8;
  shot.width = kSize.width;
  shot.height = kSize.height;
  shot.noise = false;
  Original chart{"test chart", kSize, std::vector<std::uint8_t>(std::size_t{kSize.width} * kSize.height * kChannels)};
  Simulator::MakeChartScene(kSize.width, kSize.height, true, Simulator::BayerOrder::kRggb)
      ->Render(shot, chart.rgb.data());
  return chart;
}
