// live_blocks.h
// Counts what operator new has given out, in this program and in every library that it loads.
#pragma once

#include <cstdint>

// Always 0 in a build with a sanitizer, which looks for leaks itself.
std::int64_t LiveBlocks();
