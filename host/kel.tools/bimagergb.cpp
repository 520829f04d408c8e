// bimagergb.cpp
// A colour image, three bytes a pixel: red, green, blue.
#include "bimagergb.h"

#include "bimage8u.h"
#include "rows/clipping.h"
#include "rows/row_kernels.h"

namespace {

std::int32_t SideWithin(std::int32_t wanted, std::int32_t side) { return wanted < 0 || wanted > side ? side : wanted; }

}  // namespace

BImageRgb::BImageRgb(const BSize& size) { Resize(size); }

void BImageRgb::Resize(const BSize& size) { m_pixels.Resize(size, kChannels); }

void BImageRgb::TakeGrey(const BImage8u& grey, const BSize& size, const BPoint& at) {
  const BSize part{SideWithin(size.width, grey.Size().width), SideWithin(size.height, grey.Size().height)};
  if (part.width > 0 && part.height > 0) TakeGrey(grey.Row(0), grey.LineLength(), part, at);
}

void BImageRgb::TakeGrey(const std::uint8_t* pixels, std::size_t line_length_bytes, const BSize& size,
                         const BPoint& at) {
  const Rows::Clip clip = Rows::Clipped(size, at, Size());
  for (int y = 0; y < clip.size.height; ++y) {
    const std::uint8_t* const line =
        pixels + static_cast<std::size_t>(clip.from.y + y) * line_length_bytes + clip.from.x;
    std::uint8_t* const made = Row(clip.to.y + y) + kChannels * static_cast<std::size_t>(clip.to.x);
    for (int x = Rows::Kernels().grey_rgb(line, 0, clip.size.width, made); x < clip.size.width; ++x) {
      for (int channel = 0; channel < kChannels; ++channel) made[kChannels * x + channel] = line[x];
    }
  }
}
