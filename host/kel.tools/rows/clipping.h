// clipping.h
// Where a rectangle that is copied lands in an image, and what of it is cut off.
#pragma once

#include <algorithm>
#include <cstdint>

#include "bpoint.h"
#include "bsize.h"

namespace Rows {

struct Clip {
  BPoint from;  // first pixel of the source
  BPoint to;    // its place in the target
  BSize size;   // zero where nothing is left
};

// One axis: `length` pixels laid at `at` on a line of `room` pixels.
inline void ClipAxis(std::int32_t length, std::int32_t at, std::int32_t room, std::int32_t& from, std::int32_t& to,
                     std::int32_t& count) {
  const std::int64_t begin = std::max<std::int64_t>(at, 0);
  const std::int64_t end = std::min<std::int64_t>(std::int64_t{at} + length, room);
  if (begin >= end) return;
  from = static_cast<std::int32_t>(begin - at);
  to = static_cast<std::int32_t>(begin);
  count = static_cast<std::int32_t>(end - begin);
}

inline Clip Clipped(const BSize& source, const BPoint& at, const BSize& target) {
  Clip clip;
  ClipAxis(source.width, at.x, target.width, clip.from.x, clip.to.x, clip.size.width);
  ClipAxis(source.height, at.y, target.height, clip.from.y, clip.to.y, clip.size.height);
  if (clip.size.width == 0) clip.size.height = 0;
  return clip;
}

}  // namespace Rows
