// encoded_picture.cpp
// A part of a frame as a browser takes it.
#include "view/pictures/encoded_picture.h"

#include <algorithm>

#include "picture/png.h"
#include "view/pictures/jpeg.h"
#include "view/pictures/scaled_picture.h"

namespace Kelcam {
namespace {

constexpr std::size_t kMostPictures = 8;

std::vector<std::uint8_t> BytesOf(const Frame& frame, const Rectangle& region, int width) {
  const Pixels pixels = region.Of(frame.pixels);
  if (width >= region.width) return EncodePng(pixels, frame.details);
  return EncodeJpeg(ScaledDown(pixels, width).View());
}

}  // namespace

EncodedPicture Encoded(const Frame& frame, const Rectangle& region, int width) {
  const bool is_whole = width >= region.width;
  return {frame.number,
          frame.pixels.size,
          region,
          std::min(width, region.width),
          is_whole ? kPngType : kJpegType,
          std::make_shared<const std::vector<std::uint8_t>>(BytesOf(frame, region, width))};
}

EncodedPicture EncodedPictures::Get(const Frame& frame, const Rectangle& region, int width) {
  const int own_width = std::min(width, region.width);
  const auto found = std::find_if(m_pictures.begin(), m_pictures.end(), [&](const EncodedPicture& picture) {
    return picture.frame == frame.number && picture.region == region && picture.width == own_width;
  });
  if (found != m_pictures.end()) return *found;
  m_pictures.push_front(Encoded(frame, region, width));
  if (m_pictures.size() > kMostPictures) m_pictures.pop_back();
  return m_pictures.front();
}

}  // namespace Kelcam
