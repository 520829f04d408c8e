// virtual_clock.h
// Time that passes only while every thread waits.
#pragma once

// Replaces the waits of the C library for this program and all its libraries. One thread runs at a time, until it
// waits; the others take their turns in the order in which they may go on. When nobody may, the clock jumps to the end
// of the shortest wait. So a run takes as long as its work, no machine is too slow for it, and it comes out the same
// each time. What threads work takes no time.
namespace VirtualClock {

// From here on, for the calling thread and for those that it and they start. To be called before any other is started.
void TurnOn();

}  // namespace VirtualClock
