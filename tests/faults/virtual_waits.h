// virtual_waits.h
// Time that passes only where somebody sleeps, so that a run whose waits are seconds takes milliseconds.
#pragma once

// On Linux, without a sanitizer, the program's own nanosleep, clock_gettime and pthread_cond_clockwait stand before
// those of the C library. While virtual time is on, whoever sleeps waits just until nobody works any more: no callback
// of the simulated library runs or is due, and no worker of the module is under way. Then the clock is put forward by
// what is left. Threads run as they are. Beside work that never ends it takes a part of its time.
// Elsewhere these do nothing, and waits take their time.
namespace VirtualWaits {

// Whether this build has them.
bool Available();
void TurnOn();

}  // namespace VirtualWaits
