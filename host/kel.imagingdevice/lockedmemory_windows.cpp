// lockedmemory_windows.cpp
// Locked memory on Windows.
#include <windows.h>

#include <tuple>

#include "lockedmemory.h"

void* AllocateLockedPages(std::size_t bytes) {
  if (bytes == 0) return nullptr;
  void* memory = ::VirtualAlloc(nullptr, bytes, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
  // A process may lock about as much as its minimum working set; beyond it the pages are ordinary ones.
  if (memory) std::ignore = ::VirtualLock(memory, bytes);
  return memory;
}

void FreeLockedPages(void* memory, std::size_t) {
  if (memory) std::ignore = ::VirtualFree(memory, 0, MEM_RELEASE);
}
