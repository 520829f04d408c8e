// thread_exits.h
// Tells when the module's threads have left its code, so that a host may unload it once no device is left.
#pragma once

// A device waits for its workers' last act (WorkersInFlight), but they still have to return from it, through code of
// the module. What is counted here is over only when the standard library, not the module, ends the thread.
namespace ThreadExits {

void ExpectOne();            // before a thread starts [any thread]
void AnnounceThisThreads();  // as its last act but for what its destructors do [worker]
void WaitForAll();           // once no new thread can start [host thread]

}  // namespace ThreadExits
