// picture_check.cpp
// Whether a picture is the one that the tests' camera has drawn, pixel by pixel.
#include "bridge/picture_check.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "bridge/pixel_pattern.h"

namespace {

testing::AssertionResult WrongAt(std::size_t x, std::size_t y, int pixel, int expected) {
  return testing::AssertionFailure() << "the pixel " << x << "," << y << " is " << pixel << ", not " << expected;
}

testing::AssertionResult IsRow(const std::uint8_t* row, std::size_t width, std::uint64_t frame_id, BPoint at) {
  for (std::size_t x = 0; x < width; ++x) {
    const std::uint8_t expected = PixelPattern::Grey(
        frame_id, static_cast<std::uint32_t>(at.x) + static_cast<std::uint32_t>(x), static_cast<std::uint32_t>(at.y));
    if (row[x] != expected) return WrongAt(x, static_cast<std::size_t>(at.y), row[x], expected);
  }
  return testing::AssertionSuccess();
}

// Any id with which the frame begins as the row does: only the last byte of an id counts.
std::uint64_t FrameOf(std::uint8_t first_pixel, BPoint at) {
  std::uint64_t id = 0;
  while (PixelPattern::Grey(id, static_cast<std::uint32_t>(at.x), static_cast<std::uint32_t>(at.y)) != first_pixel)
    ++id;
  return id;
}

}  // namespace

testing::AssertionResult ShowsGrey(const std::uint8_t* pixels, BSize size, std::uint64_t frame_id, BPoint at) {
  const auto width = static_cast<std::size_t>(size.width);
  for (int y = 0; y < size.height; ++y) {
    const testing::AssertionResult row =
        IsRow(pixels + static_cast<std::size_t>(y) * width, width, frame_id, {at.x, at.y + y});
    if (!row) return row;
  }
  return testing::AssertionSuccess();
}

testing::AssertionResult ShowsGrey(BBaseAoi& aoi, BSize size, BPoint at) {
  if (aoi.ImageSize() != size) return testing::AssertionFailure() << "the area has another size";
  const BImage8u& image = *aoi.Mono();
  const std::uint64_t id = FrameOf(image.Row(0)[0], at);
  for (int y = 0; y < size.height; ++y) {
    const testing::AssertionResult row =
        IsRow(image.Row(y), static_cast<std::size_t>(size.width), id, {at.x, at.y + y});
    if (!row) return row;
  }
  return testing::AssertionSuccess();
}

testing::AssertionResult ShowsColour(const std::vector<std::uint8_t>& pixels) {
  for (std::size_t i = 0; i < pixels.size(); ++i) {
    const std::uint8_t expected = PixelPattern::kRgb[i % PixelPattern::kRgb.size()];
    if (pixels[i] != expected) return WrongAt(i, 0, pixels[i], expected);
  }
  return testing::AssertionSuccess();
}

testing::AssertionResult ShowsMosaic(const std::vector<std::uint8_t>& pixels, int width) {
  const auto columns = static_cast<std::size_t>(width);
  for (std::size_t i = 0; i < pixels.size(); ++i) {
    const std::uint8_t expected =
        PixelPattern::BayerRg(static_cast<std::uint32_t>(i % columns), static_cast<std::uint32_t>(i / columns));
    if (pixels[i] != expected) return WrongAt(i % columns, i / columns, pixels[i], expected);
  }
  return testing::AssertionSuccess();
}

testing::AssertionResult ShowsColour(BBaseAoi& aoi, BSize size) {
  if (aoi.ImageSize() != size) return testing::AssertionFailure() << "the area has another size";
  const std::size_t bytes = PixelPattern::kRgb.size() * static_cast<std::size_t>(size.width);
  for (int y = 0; y < size.height; ++y) {
    const std::uint8_t* const row = aoi.Rgb()->Row(y);
    const testing::AssertionResult same = ShowsColour(std::vector<std::uint8_t>(row, row + bytes));
    if (!same) return testing::AssertionFailure() << "in row " << y << " " << same.message();
  }
  return testing::AssertionSuccess();
}
