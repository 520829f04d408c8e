// process_state.h
// What this process holds at this moment, to be compared before and after a run.
#pragma once

#include <cstddef>
#include <cstdint>

struct ProcessState {
  std::size_t threads = 0;
  std::size_t descriptors = 0;
  // What operator new has given out and not got back.
  std::int64_t blocks = 0;

  // Members that this build cannot measure are 0.
  static ProcessState Now();
};
