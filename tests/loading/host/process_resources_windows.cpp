// process_resources_windows.cpp
// What this process holds of the system at this moment.
#include "process_resources.h"

#include <windows.h>

#include <tlhelp32.h>
#include <winternl.h>

#include <cstdint>
#include <vector>

namespace {

// The system's list of all handles, as it has always been but is not declared. Wine's own count of a process's handles
// is always 0.
constexpr int kHandleList = 64;
constexpr auto kTooSmall = static_cast<NTSTATUS>(0xC0000004);
struct HandleEntry {
  void* object;
  std::uintptr_t process;
  std::uintptr_t handle;
  std::uint32_t access;
  std::uint16_t back_trace, type;
  std::uint32_t attributes, reserved;
};
struct HandleListHead {
  std::uintptr_t count;
  std::uintptr_t reserved;
};

std::size_t Handles() {
  using Query = NTSTATUS(NTAPI*)(int, void*, ULONG, ULONG*);
  static const auto kQuery = reinterpret_cast<Query>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("ntdll.dll"), "NtQuerySystemInformation")));
  constexpr std::size_t kFirstListBytes = 1 << 20;
  std::vector<char> list(kFirstListBytes);
  while (kQuery(kHandleList, list.data(), static_cast<ULONG>(list.size()), nullptr) == kTooSmall) {
    list.resize(2 * list.size());
  }
  const auto* const head = reinterpret_cast<const HandleListHead*>(list.data());
  const auto* const entries = reinterpret_cast<const HandleEntry*>(head + 1);
  std::size_t own = 0;
  for (std::size_t i = 0; i < head->count; ++i) own += entries[i].process == GetCurrentProcessId();
  return own;
}

std::size_t Threads() {
  const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
  THREADENTRY32 thread{};
  thread.dwSize = sizeof thread;
  std::size_t count = 0;
  for (BOOL found = Thread32First(snapshot, &thread); found; found = Thread32Next(snapshot, &thread)) {
    if (thread.th32OwnerProcessID == GetCurrentProcessId()) ++count;
  }
  CloseHandle(snapshot);
  return count;
}

// The C runtime allocates from the process's heap.
std::size_t HeapBytes() {
  const HANDLE heap = GetProcessHeap();
  PROCESS_HEAP_ENTRY entry{};
  std::size_t bytes = 0;
  HeapLock(heap);
  while (HeapWalk(heap, &entry)) {
    if (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) bytes += entry.cbData;
  }
  HeapUnlock(heap);
  return bytes;
}

}  // namespace

ProcessResources ProcessResources::Now() { return {Handles(), Threads(), HeapBytes()}; }
