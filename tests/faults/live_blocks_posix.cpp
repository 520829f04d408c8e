// live_blocks_posix.cpp
// The program's own operator new and delete, which libraries use as well.
#include "live_blocks.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::int64_t> live_blocks{0};

void* Counted(void* block) {
  if (block) live_blocks.fetch_add(1, std::memory_order_relaxed);
  return block;
}

void* CountedOrThrow(void* block) {
  if (!Counted(block)) throw std::bad_alloc();
  return block;
}

void Free(void* block) {
  if (!block) return;
  live_blocks.fetch_sub(1, std::memory_order_relaxed);
  std::free(block);
}

void* Aligned(std::size_t size, std::align_val_t alignment) {
  const auto align = static_cast<std::size_t>(alignment);
  return std::aligned_alloc(align, (size + align - 1) / align * align);
}

}  // namespace

std::int64_t LiveBlocks() { return live_blocks; }

void* operator new(std::size_t size) { return CountedOrThrow(std::malloc(size == 0 ? 1 : size)); }
void* operator new(std::size_t size, const std::nothrow_t& /*unused*/) noexcept { return Counted(std::malloc(size)); }
void* operator new(std::size_t size, std::align_val_t align) { return CountedOrThrow(Aligned(size, align)); }
void* operator new(std::size_t size, std::align_val_t align, const std::nothrow_t& /*unused*/) noexcept {
  return Counted(Aligned(size, align));
}
void operator delete(void* block) noexcept { Free(block); }
void operator delete(void* block, std::size_t /*size*/) noexcept { Free(block); }
void operator delete(void* block, std::align_val_t /*alignment*/) noexcept { Free(block); }
void operator delete(void* block, std::size_t /*size*/, std::align_val_t /*alignment*/) noexcept { Free(block); }
