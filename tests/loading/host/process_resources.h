// process_resources.h
// What this process holds of the system at this moment.
#pragma once

#include <cstddef>

struct ProcessResources {
  std::size_t handles;     // open files, events, threads and the like
  std::size_t threads;     // running ones
  std::size_t heap_bytes;  // allocated and not freed

  static ProcessResources Now();
};
