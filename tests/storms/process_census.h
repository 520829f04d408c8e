// process_census.h
// How many threads and descriptors this process has at this moment.
#pragma once

#include <cstddef>

// Both are 0 where the system is not asked: on Windows, where a program cannot ask without looking at all processes.
struct ProcessCensus {
  std::size_t threads = 0;
  std::size_t descriptors = 0;
  std::size_t resident_bytes = 0;

  static ProcessCensus Now();
};
