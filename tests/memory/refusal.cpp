// refusal.cpp
// Memory for the module and the SDK, as long as a plan does not refuse it.
#include "memory/refusal.h"

#include <pthread.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <new>

#include "memory/libraries.h"

// What takes the place of a library's own function has to be seen by the libraries.
#define KEL_REPLACES __attribute__((visibility("default")))

// The C library's own, behind the names that are replaced here.
extern "C" void* __libc_calloc(std::size_t count, std::size_t size);  // NOLINT(*-reserved-identifier,*-naming)
extern "C" void __libc_free(void* memory);                            // NOLINT(*-reserved-identifier,*-naming)

namespace {

using Memory::Owner;
using Memory::Plan;
using Memory::Threads;

// Before every block. Those of others are not linked.
struct alignas(std::max_align_t) Header {
  Header* before;
  Header* behind;
  std::size_t size_bytes;
  const void* caller;
};

// The list has no lock of the SDK: its locks are part of what is measured.
std::atomic_flag list_is_held = ATOMIC_FLAG_INIT;
class ListHold {
 public:
  ListHold() {
    while (list_is_held.test_and_set(std::memory_order_acquire)) {
    }
  }
  ~ListHold() { list_is_held.clear(std::memory_order_release); }
  ListHold(const ListHold&) = delete;
  ListHold& operator=(const ListHold&) = delete;
};

Header list_head{&list_head, &list_head, 0, nullptr};
std::atomic<bool> libraries_are_known{false};

// Blocks from calloc: few at a time. A slot is found by the address.
class PixelBlocks {
 public:
  void Add(void* block) {
    for (std::size_t i = 0; i < kProbes; ++i) {
      void* none = nullptr;
      if (SlotOf(block, i).compare_exchange_strong(none, block)) break;
    }
    ++m_count;
  }
  void Remove(void* block) {
    for (std::size_t i = 0; i < kProbes; ++i) {
      void* expected = block;
      if (SlotOf(block, i).compare_exchange_strong(expected, nullptr)) {
        --m_count;
        return;
      }
    }
  }
  std::int64_t Count() const { return m_count; }

 private:
  static constexpr std::size_t kSlots = 1024;
  static constexpr std::size_t kProbes = 8;

  std::atomic<void*>& SlotOf(const void* block, std::size_t probe) {
    constexpr std::uintptr_t kAlignment = 16;
    return m_slots[(reinterpret_cast<std::uintptr_t>(block) / kAlignment + probe) % kSlots];
  }

  std::array<std::atomic<void*>, kSlots> m_slots{};
  std::atomic<std::int64_t> m_count{0};
};
PixelBlocks pixel_blocks;

std::atomic<pthread_t> host_thread{};
std::atomic<std::uint64_t> counted[2];
std::atomic<std::uint64_t> refused_number{0};
std::atomic<Threads> refused_threads{Threads::kHost};
std::atomic<bool> refuses_onwards{false};
std::atomic<bool> has_refused{false};
std::atomic<const void*> first_refusal{nullptr};

Threads OwnThreads() { return pthread_equal(pthread_self(), host_thread) != 0 ? Threads::kHost : Threads::kOthers; }

// Counts an allocation of the module or the SDK. Gives whether it is refused.
bool IsRefused(const void* caller) {
  const Threads threads = OwnThreads();
  const std::uint64_t number = ++counted[static_cast<int>(threads)];
  if (refused_number == 0) return false;
  if (has_refused) return refuses_onwards;
  if (threads != refused_threads || number != refused_number) return false;
  first_refusal = caller;
  has_refused = true;
  return true;
}

void* Allocate(std::size_t size, std::size_t alignment, const void* caller) {
  Owner owner = Owner::kOthers;
  if (libraries_are_known) owner = Memory::OwnerOnStack(caller);
  if (owner == Owner::kOurs && IsRefused(caller)) return nullptr;
  const std::size_t room = alignment > sizeof(Header) ? alignment : sizeof(Header);
  const std::size_t whole = (size + room + alignment - 1) / alignment * alignment;
  auto* const memory = static_cast<std::byte*>(std::aligned_alloc(alignment, whole));
  if (!memory) return nullptr;
  auto* const header = new (memory + room - sizeof(Header)) Header{nullptr, nullptr, size, caller};
  if (owner == Owner::kOurs) {
    const ListHold hold;
    header->before = list_head.before;
    header->behind = &list_head;
    header->before->behind = header;
    list_head.before = header;
  }
  return memory + room;
}

void Free(void* block, std::size_t alignment) {
  if (!block) return;
  auto* const header = static_cast<Header*>(block) - 1;
  if (header->before) {
    const ListHold hold;
    header->before->behind = header->behind;
    header->behind->before = header->before;
  }
  const std::size_t room = alignment > sizeof(Header) ? alignment : sizeof(Header);
  std::free(static_cast<std::byte*>(block) - room);
}

void* AllocateOrThrow(std::size_t size, std::size_t alignment, const void* caller) {
  void* memory = Allocate(size, alignment, caller);
  if (!memory) throw std::bad_alloc();
  return memory;
}

constexpr std::size_t kPlain = alignof(std::max_align_t);

}  // namespace

namespace Memory {

void KnowTheLibraries() {
  FindLibraries();
  libraries_are_known = true;
}

void Begin(const Plan& plan) {
  host_thread = pthread_self();
  counted[0] = 0;
  counted[1] = 0;
  has_refused = false;
  first_refusal = nullptr;
  refused_threads = plan.threads;
  refuses_onwards = plan.onwards;
  refused_number = plan.number;
}

void End() { refused_number = 0; }

void EndIfRefused() {
  if (has_refused) End();
}

bool HasRefused() { return has_refused; }
std::string FirstRefusal() { return PlaceOf(first_refusal); }
std::uint64_t Counted(Threads threads) { return counted[static_cast<int>(threads)]; }
std::int64_t LivePixelBlocks() { return pixel_blocks.Count(); }

std::vector<LiveBlock> LiveBlocks() {
  std::vector<LiveBlock> blocks;
  // Room first: nothing may be allocated under the lock.
  blocks.reserve(1U << 16U);
  struct Found {
    std::size_t size_bytes;
    const void* caller;
  };
  std::vector<Found> found;
  found.reserve(1U << 16U);
  {
    const ListHold hold;
    for (const Header* at = list_head.behind; at != &list_head && found.size() < found.capacity(); at = at->behind) {
      found.push_back({at->size_bytes, at->caller});
    }
  }
  for (const Found& block : found) blocks.push_back({block.size_bytes, PlaceOf(block.caller)});
  return blocks;
}

}  // namespace Memory

void* operator new(std::size_t size) { return AllocateOrThrow(size, kPlain, __builtin_return_address(0)); }
void* operator new[](std::size_t size) { return AllocateOrThrow(size, kPlain, __builtin_return_address(0)); }
void* operator new(std::size_t size, std::align_val_t alignment) {
  return AllocateOrThrow(size, static_cast<std::size_t>(alignment), __builtin_return_address(0));
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
  return AllocateOrThrow(size, static_cast<std::size_t>(alignment), __builtin_return_address(0));
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return Allocate(size, kPlain, __builtin_return_address(0));
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return Allocate(size, kPlain, __builtin_return_address(0));
}
void* operator new(std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
  return Allocate(size, static_cast<std::size_t>(alignment), __builtin_return_address(0));
}
void* operator new[](std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
  return Allocate(size, static_cast<std::size_t>(alignment), __builtin_return_address(0));
}
void operator delete(void* block) noexcept { Free(block, kPlain); }
void operator delete[](void* block) noexcept { Free(block, kPlain); }
void operator delete(void* block, std::size_t) noexcept { Free(block, kPlain); }
void operator delete[](void* block, std::size_t) noexcept { Free(block, kPlain); }
void operator delete(void* block, const std::nothrow_t&) noexcept { Free(block, kPlain); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { Free(block, kPlain); }
void operator delete(void* block, std::align_val_t alignment) noexcept {
  Free(block, static_cast<std::size_t>(alignment));
}
void operator delete[](void* block, std::align_val_t alignment) noexcept {
  Free(block, static_cast<std::size_t>(alignment));
}
void operator delete(void* block, std::size_t, std::align_val_t alignment) noexcept {
  Free(block, static_cast<std::size_t>(alignment));
}
void operator delete[](void* block, std::size_t, std::align_val_t alignment) noexcept {
  Free(block, static_cast<std::size_t>(alignment));
}
void operator delete(void* block, std::align_val_t alignment, const std::nothrow_t&) noexcept {
  Free(block, static_cast<std::size_t>(alignment));
}
void operator delete[](void* block, std::align_val_t alignment, const std::nothrow_t&) noexcept {
  Free(block, static_cast<std::size_t>(alignment));
}

// Pixels: the SDK takes and frees them itself.
extern "C" KEL_REPLACES void* calloc(std::size_t count, std::size_t size) {
  const void* caller = __builtin_return_address(0);
  if (!libraries_are_known || Memory::OwnerOf(caller) != Owner::kOurs) return __libc_calloc(count, size);
  if (IsRefused(caller)) {
    errno = ENOMEM;
    return nullptr;
  }
  void* block = __libc_calloc(count, size);
  if (block) pixel_blocks.Add(block);
  return block;
}

extern "C" KEL_REPLACES void free(void* memory) {
  if (memory && pixel_blocks.Count() != 0) pixel_blocks.Remove(memory);
  __libc_free(memory);
}

// Locked pages, and the stacks of threads, which are the system library's.
extern "C" KEL_REPLACES void* mmap(void* at, std::size_t size, int protection, int flags, int file,
                                   off_t offset) noexcept {
  const void* caller = __builtin_return_address(0);
  if (libraries_are_known && Memory::OwnerOf(caller) == Owner::kOurs && IsRefused(caller)) {
    errno = ENOMEM;
    return MAP_FAILED;
  }
  return reinterpret_cast<void*>(syscall(SYS_mmap, at, size, protection, flags, file, offset));
}
