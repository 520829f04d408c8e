// platform.h
// The two things that the module asks of the operating system itself.
#pragma once

#include <cstdint>

// The calling thread's number, as the system's own tools show it. [any thread]
unsigned long CurrentThreadId();

// Blocks the calling thread; 0 gives up the rest of its time slice. [any thread]
void SleepMilliseconds(std::uint32_t milliseconds);
