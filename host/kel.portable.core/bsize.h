// bsize.h
// The size of an image or of a part of one.
#pragma once

#include <cstdint>

// In pixels. A default-made size is that of no image.
struct BSize {
  std::int32_t width = 0;
  std::int32_t height = 0;

  friend constexpr bool operator==(const BSize& a, const BSize& b) {
    return a.width == b.width && a.height == b.height;
  }
  friend constexpr bool operator!=(const BSize& a, const BSize& b) { return !(a == b); }
};
