// locked_pages_test.cpp
// Whether locked memory is locked, as the kernel reports it.
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/resource.h>

#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "support/plain_device.h"

namespace {

constexpr std::size_t kKilobyte = 1024;
constexpr std::size_t kBytes = 64 * kKilobyte;

long LockedKilobytes() {
  constexpr std::string_view kLabel = "VmLck:";
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with(kLabel)) return std::stol(line.substr(kLabel.size()));
  }
  return -1;
}

// What the system makes of a lock, asked without the code under test: some let a process lock nothing, and the
// sanitizers make the call do nothing.
bool SystemLocksPages() {
  std::vector<char> pages(4 * kBytes);
  const long before = LockedKilobytes();
  const bool locked = ::mlock(pages.data(), pages.size()) == 0 && LockedKilobytes() > before;
  ::munlock(pages.data(), pages.size());
  return locked;
}

TEST(LockedMemory, IsLockedWhereTheSystemLocksPages) {
  const long expected_kilobytes = SystemLocksPages() ? kBytes / kKilobyte : 0;
  PlainImplementation implementation;
  const long before = LockedKilobytes();

  void* memory = implementation.AllocateLockedMemory(kBytes);
  const long gained = LockedKilobytes() - before;
  implementation.FreeLockedMemory(memory, kBytes);

  EXPECT_EQ(gained, expected_kilobytes);
  EXPECT_EQ(LockedKilobytes(), before);
}

TEST(LockedMemory, IsOrdinaryMemoryBeyondTheLimit) {
  rlimit before{};
  ASSERT_EQ(::getrlimit(RLIMIT_MEMLOCK, &before), 0);
  const rlimit nothing{0, before.rlim_max};
  ASSERT_EQ(::setrlimit(RLIMIT_MEMLOCK, &nothing), 0);
  PlainImplementation implementation;

  auto* memory = static_cast<char*>(implementation.AllocateLockedMemory(kBytes));

  ASSERT_EQ(::setrlimit(RLIMIT_MEMLOCK, &before), 0);
  ASSERT_NE(memory, nullptr);
  memory[kBytes - 1] = 'x';
  EXPECT_EQ(memory[kBytes - 1], 'x');
  implementation.FreeLockedMemory(memory, kBytes);
}

}  // namespace
