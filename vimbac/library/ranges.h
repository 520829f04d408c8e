// library/ranges.h
// Ranges of features.
#pragma once

#include <cstdint>

namespace VimbaLibrary {

struct IntegerRange {
  std::int64_t min = 0;
  std::int64_t max = 0;
  // Values are whole numbers of steps above the minimum.
  std::int64_t step = 1;
};

struct FloatRange {
  double min = 0.0;
  double max = 0.0;
};

}  // namespace VimbaLibrary
