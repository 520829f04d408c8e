// observations.h
// What a host sees of one life, in its order.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct Observation {
  std::string name;
  std::string value;
  // The VimbaC calls before the operation began, counted as the record counts them.
  std::uint64_t calls_before = 0;
};

using Observations = std::vector<Observation>;
