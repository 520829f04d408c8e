// process_state_posix.cpp
// What this process holds at this moment, as the system's folders count it.
#include <filesystem>

#include "live_blocks.h"
#include "process_state.h"

namespace {

std::size_t EntriesOf(const char* folder) {
  const std::filesystem::directory_iterator entries(folder);
  return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

}  // namespace

ProcessState ProcessState::Now() {
  const std::int64_t blocks = LiveBlocks();
  return {EntriesOf("/proc/self/task"), EntriesOf("/proc/self/fd"), blocks};
}
