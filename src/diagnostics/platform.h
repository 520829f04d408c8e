// platform.h
// The two things that the module asks of the operating system itself.
#pragma once

#include <chrono>

// The calling thread's number, as the system's own tools show it. [any thread]
unsigned long CurrentThreadId();

// Blocks the calling thread; no time gives up the rest of its time slice. [any thread]
void SleepFor(std::chrono::milliseconds time);
