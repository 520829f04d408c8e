// camera/drawing.cpp
// Draws the pattern that the tests check into the frames of a camera of Aravis.
#include "camera/drawing.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "bridge/pixel_pattern.h"

namespace {

using Row = std::vector<std::uint8_t>;

struct Frame {
  explicit Frame(ArvBuffer* buffer) : id(arv_buffer_get_frame_id(buffer)) {
    arv_buffer_get_image_region(buffer, &left, &top, &width, &height);
    // Large enough: the camera does not have a frame drawn for which its buffer is too small.
    data = static_cast<std::uint8_t*>(const_cast<void*>(arv_buffer_get_data(buffer, nullptr)));
  }

  // Row y of the frame becomes the first `bytes` bytes of rows(y).
  template <class Rows>
  void Fill(std::size_t bytes, Rows rows) const {
    for (gint y = 0; y < height; ++y) std::copy_n(rows(y), bytes, data + static_cast<std::size_t>(y) * bytes);
  }

  std::uint64_t id;
  gint left = 0, top = 0, width = 0, height = 0;
  std::uint8_t* data;
};

// Every grey row is a piece of one long ramp.
void DrawGrey(const Frame& frame) {
  constexpr std::size_t kPeriod = 256;
  const auto width = static_cast<std::size_t>(frame.width);
  Row ramp(width + kPeriod);
  for (std::size_t i = 0; i < ramp.size(); ++i) ramp[i] = static_cast<std::uint8_t>(i);
  frame.Fill(width, [&](gint y) {
    return ramp.data() +
           PixelPattern::Grey(frame.id, static_cast<guint32>(frame.left), static_cast<guint32>(frame.top + y));
  });
}

void DrawMosaic(const Frame& frame) {
  const auto width = static_cast<std::size_t>(frame.width);
  Row rows[2] = {Row(width), Row(width)};
  for (std::size_t x = 0; x < width; ++x) {
    for (guint32 y : {0U, 1U}) {
      rows[y][x] = PixelPattern::BayerRg(static_cast<guint32>(frame.left) + static_cast<guint32>(x), y);
    }
  }
  frame.Fill(width, [&](gint y) { return rows[(frame.top + y) % 2].data(); });
}

void DrawColour(const Frame& frame) {
  constexpr std::size_t kChannels = PixelPattern::kRgb.size();
  Row row(kChannels * static_cast<std::size_t>(frame.width));
  for (std::size_t i = 0; i < row.size(); ++i) row[i] = PixelPattern::kRgb[i % kChannels];
  frame.Fill(row.size(), [&](gint) { return row.data(); });
}

}  // namespace

void DrawPattern(ArvBuffer* buffer, void* /*data*/, guint32 /*exposure_us*/, guint32 /*gain*/, ArvPixelFormat format) {
  const Frame frame(buffer);
  if (format == ARV_PIXEL_FORMAT_MONO_8) DrawGrey(frame);
  if (format == ARV_PIXEL_FORMAT_BAYER_RG_8) DrawMosaic(frame);
  if (format == ARV_PIXEL_FORMAT_RGB_8_PACKED) DrawColour(frame);
}
