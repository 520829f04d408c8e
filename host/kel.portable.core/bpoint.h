// bpoint.h
// A position in an image.
#pragma once

#include <cstdint>

// In pixels, from the left and from the top; both may be negative, as offsets are.
struct BPoint {
  std::int32_t x = 0;
  std::int32_t y = 0;

  friend constexpr bool operator==(const BPoint& a, const BPoint& b) { return a.x == b.x && a.y == b.y; }
  friend constexpr bool operator!=(const BPoint& a, const BPoint& b) { return !(a == b); }
};
