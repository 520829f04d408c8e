// scene/number_scene.cpp
// Pictures that say in even grey which frame they are.
#include <algorithm>
#include <cstddef>

#include "scene/pixel_layout.h"
#include "scene/scene.h"

namespace Simulator {
namespace {

constexpr std::uint8_t kNoColour = 128;

// Bytes that are no luminance are the chroma of grey: every second one of a YUV frame.
void FillRow(const Shot& shot, std::uint8_t grey, std::uint8_t* row, std::size_t row_bytes) {
  std::fill_n(row, row_bytes, grey);
  if (shot.pixel_format != VmbPixelFormatYuv422) return;
  for (std::size_t chroma = 0; chroma < row_bytes; chroma += 2) row[chroma] = kNoColour;
}

class NumberScene final : public Scene {
 public:
  void Render(const Shot& shot, std::uint8_t* out) const override {
    const std::size_t row_bytes =
        PixelLayout::Of(shot.pixel_format).bytes_per_pixel * static_cast<std::size_t>(shot.width);
    for (int y = 0; y < shot.height; ++y) {
      const std::uint64_t number = 2 * y < shot.height ? shot.frame_number : shot.frame_number / kNumberSceneBase;
      FillRow(shot, static_cast<std::uint8_t>(kNumberSceneDark + number % kNumberSceneBase), out, row_bytes);
      out += row_bytes;
    }
  }
};

}  // namespace

std::shared_ptr<const Scene> MakeNumberScene() { return std::make_shared<NumberScene>(); }

}  // namespace Simulator
