// lockedmemory_posix.cpp
// Locked memory on POSIX systems.
#include <sys/mman.h>

#include <tuple>

#include "lockedmemory.h"

void* AllocateLockedPages(std::size_t bytes) {
  if (bytes == 0) return nullptr;
  void* memory = ::mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) return nullptr;
  // A process has a limit of what it may lock; beyond it the pages are ordinary ones.
  std::ignore = ::mlock(memory, bytes);
  return memory;
}

void FreeLockedPages(void* memory, std::size_t bytes) {
  if (memory) std::ignore = ::munmap(memory, bytes);
}
