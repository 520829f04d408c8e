// libraries.cpp
// Which loaded library an address of code belongs to.
#include "memory/libraries.h"

#include <dlfcn.h>
#include <link.h>
#include <unwind.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string_view>

namespace Memory {
namespace {

struct Range {
  std::uintptr_t begin;
  std::uintptr_t end;
  Owner owner;
};

// Fixed: it is read while memory is being allocated.
constexpr std::size_t kMostRanges = 64;
std::array<Range, kMostRanges> ranges;
std::size_t range_count = 0;

Owner OwnerOfName(std::string_view path) {
  // The program itself has no name.
  if (path.empty()) return Owner::kOthers;
  const std::string_view name = path.substr(path.rfind('/') + 1);
  if (name.starts_with("libkel")) return Owner::kOurs;
  return name.starts_with("libVimbaC") ? Owner::kOthers : Owner::kCallers;
}

int AddRanges(dl_phdr_info* object, std::size_t /*size*/, void* /*context*/) {
  const Owner owner = OwnerOfName(object->dlpi_name);
  if (owner == Owner::kCallers) return 0;
  for (std::size_t i = 0; i < object->dlpi_phnum && range_count < kMostRanges; ++i) {
    const ElfW(Phdr)& header = object->dlpi_phdr[i];
    if (header.p_type != PT_LOAD || (header.p_flags & PF_X) == 0) continue;
    const std::uintptr_t begin = object->dlpi_addr + header.p_vaddr;
    ranges[range_count++] = {begin, begin + header.p_memsz, owner};
  }
  return 0;
}

struct Search {
  Owner owner = Owner::kOthers;
  const void* code = nullptr;
};

_Unwind_Reason_Code LookAtFrame(_Unwind_Context* frame, void* context) {
  auto& search = *static_cast<Search*>(context);
  const auto address = static_cast<std::uintptr_t>(_Unwind_GetIP(frame));
  const void* code = reinterpret_cast<const void*>(address);
  const Owner owner = OwnerOf(code);
  if (owner == Owner::kCallers) return _URC_NO_REASON;
  search = {owner, code};
  return _URC_END_OF_STACK;
}

}  // namespace

void FindLibraries() {
  range_count = 0;
  dl_iterate_phdr(AddRanges, nullptr);
}

Owner OwnerOf(const void* code) {
  const auto address = reinterpret_cast<std::uintptr_t>(code);
  for (std::size_t i = 0; i < range_count; ++i) {
    if (address >= ranges[i].begin && address < ranges[i].end) return ranges[i].owner;
  }
  return Owner::kCallers;
}

Owner OwnerOnStack(const void*& caller) {
  // Most allocations come directly from whom they are for.
  if (const Owner owner = OwnerOf(caller); owner != Owner::kCallers) return owner;
  Search search;
  // The frames of this file and of the replaced operators are the program's own; the walk begins above them.
  struct Above {
    const void* first;
    bool reached;
    Search search;
  } above{caller, false, {}};
  _Unwind_Backtrace(
      [](_Unwind_Context* frame, void* context) {
        auto& walk = *static_cast<Above*>(context);
        if (!walk.reached) {
          walk.reached = _Unwind_GetIP(frame) == reinterpret_cast<std::uintptr_t>(walk.first);
          return _URC_NO_REASON;
        }
        return LookAtFrame(frame, &walk.search);
      },
      &above);
  search = above.search;
  caller = search.code;
  return search.owner;
}

std::string PlaceOf(const void* code) {
  Dl_info info{};
  if (!code || dladdr(code, &info) == 0) return "?";
  const auto offset = reinterpret_cast<std::uintptr_t>(code) - reinterpret_cast<std::uintptr_t>(info.dli_fbase);
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "+0x%zx", static_cast<std::size_t>(offset));
  return std::filesystem::path(info.dli_fname).filename().string() + text.data();
}

}  // namespace Memory
