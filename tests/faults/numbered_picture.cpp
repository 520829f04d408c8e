// numbered_picture.cpp
// Reads back which frame a picture of the numbered scene holds.
#include "numbered_picture.h"

#include <algorithm>
#include <cstring>
#include <span>

#include "bbaseaoi.h"
#include "support/simulated_cameras.h"

namespace {

// The scene's numbers, as docs/simulator.md gives them.
constexpr std::uint64_t kBase = 200;
constexpr std::uint8_t kDigitZero = 28;
constexpr std::uint8_t kUntouched = 5;
// A conversion looks at neighbours, so the rows beside the border of the two halves hold a mixture of them.
constexpr int kMixedRows = 2;

std::span<std::uint8_t> RowOf(BBaseAoi& area, int y) {
  const auto width = static_cast<std::size_t>(area.ImageSize().width);
  if (area.ImageKind() == BBaseAoi::eMono8) return {area.Mono()->Row(y), width};
  return {area.Rgb()->Row(y), width * BImageRgb::kChannels};
}

bool AllAre(BBaseAoi& area, int from, int to, std::uint8_t value) {
  for (int y = from; y < to; ++y) {
    const std::span<const std::uint8_t> row = RowOf(area, y);
    if (!std::all_of(row.begin(), row.end(), [&](std::uint8_t byte) { return byte == value; })) return false;
  }
  return true;
}

std::optional<std::uint64_t> Digit(BBaseAoi& area, int from, int to) {
  const std::uint8_t value = RowOf(area, from)[0];
  if (value < kDigitZero || value >= kDigitZero + kBase || !AllAre(area, from, to, value)) return std::nullopt;
  return static_cast<std::uint64_t>(value - kDigitZero);
}

}  // namespace

void PaintOver(BBaseAoi& area) {
  area.Reset({SimulatedCamera::kWidth, SimulatedCamera::kHeight});
  for (int y = 0; y < SimulatedCamera::kHeight; ++y) std::ranges::fill(RowOf(area, y), kUntouched);
}

PictureContent ReadPicture(BBaseAoi& area) {
  const BSize size = area.ImageSize();
  if (size.width <= 0 || size.height < 4 * kMixedRows) return {};
  PictureContent content{.untouched = AllAre(area, 0, size.height, kUntouched)};
  const int middle = size.height / 2;
  const std::optional<std::uint64_t> low = Digit(area, 0, middle - kMixedRows);
  const std::optional<std::uint64_t> high = Digit(area, middle + kMixedRows, size.height);
  if (low && high) content.frame = *high * kBase + *low;
  return content;
}
