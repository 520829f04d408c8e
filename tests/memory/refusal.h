// refusal.h
// Memory for the module and the SDK, as long as a plan does not refuse it. It replaces the program's operator new.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

namespace Memory {

// Whose allocations a plan counts: those of the thread that made the plan, or those of all others.
enum class Threads { kHost, kOthers };

struct Plan {
  Threads threads = Threads::kHost;
  // The refused allocation, counted from 1. 0 refuses none.
  std::uint64_t number = 0;
  // Every later one is refused, too, on every thread, until the plan ends.
  bool onwards = false;
};

// A block that the module or the SDK has and has not given back.
struct LiveBlock {
  std::size_t size_bytes;
  // `libkel.core.so+0x1234`: where it was allocated.
  std::string place;

  bool operator<(const LiveBlock& other) const {
    return std::tie(place, size_bytes) < std::tie(other.place, other.size_bytes);
  }
};

// Learns where the module and the SDK are in memory. They are loaded before, and stay.
void KnowTheLibraries();

// Counts anew from here.
void Begin(const Plan& plan);
// Refuses nothing from here on.
void End();
// As End, unless the first refusal is still to come.
void EndIfRefused();
// Whether anything was refused since Begin.
bool HasRefused();
// Where the first refused allocation was to be.
std::string FirstRefusal();

// Allocations of the module and the SDK since Begin.
std::uint64_t Counted(Threads threads);
std::vector<LiveBlock> LiveBlocks();
// The module's and the SDK's blocks of pixels, which come from calloc.
std::int64_t LivePixelBlocks();

}  // namespace Memory
