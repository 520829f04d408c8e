// ring_size.h
// How many frames circulate between the library and a device.
#pragma once

#include <cstddef>

// Each frame of the ring is with the library, in a handler or with a worker, so this is also how many workers of a
// device can live at once. What depends on it is computed from it.
inline constexpr std::size_t kRingFrames = 10;
