// soak.h
// Many thousand snaps on two cameras that are partners, some of them with a fault.
#pragma once

#include <cstdint>

#include "storms/findings.h"
#include "storms/watchdog.h"

struct SoakOptions {
  std::uint64_t snaps = 20'000;
  std::uint64_t seed = 1;
};

// Returns the number of snaps. Memory, threads and descriptors are compared with those after the first 2,000.
std::uint64_t SoakPartners(const SoakOptions& options, Findings& findings, Watchdog& watchdog);
