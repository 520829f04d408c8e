// process_census.cpp
// How many threads and descriptors this process has at this moment.
#include "storms/process_census.h"

#if defined(__linux__)
#include <unistd.h>

#include <filesystem>
#include <fstream>
#endif

namespace {

#if defined(__linux__)
std::size_t EntriesOf(const char* folder) {
  const std::filesystem::directory_iterator entries(folder);
  return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

std::size_t ResidentBytes() {
  std::ifstream file("/proc/self/statm");
  std::size_t pages = 0;
  std::size_t resident_pages = 0;
  file >> pages >> resident_pages;
  return resident_pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}
#endif

}  // namespace

ProcessCensus ProcessCensus::Now() {
#if defined(__linux__)
  return {.threads = EntriesOf("/proc/self/task"),
          .descriptors = EntriesOf("/proc/self/fd"),
          .resident_bytes = ResidentBytes()};
#else
  return {};
#endif
}
