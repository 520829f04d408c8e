// thread_exits.h
// Tells when the module's threads have left its code, so that a host may unload it once no device is left.
#pragma once

#include <atomic>
#include <memory>
#include <thread>
#include <utility>

// A device waits for its workers' last act (WorkersInFlight), but they still have to return from it, through code of
// the module. What is counted here is over only when the standard library, not the module, ends the thread.
namespace ThreadExits {

void ExpectOne();            // before a thread starts [any thread]
void AnnounceThisThreads();  // as its last act but for what its destructors do [worker]
void WaitForAll();           // once no new thread can start [host thread]

// Does the work on a thread of its own, which nobody joins and WaitForAll waits for [any thread]. The thread does not
// end before it is detached: with MinGW-w64's threads library one that ends meanwhile breaks the process's memory.
// Nearly always it has been detached long before, so nothing is waited for.
template <class Work>
void Start(Work work) {
  ExpectOne();
  const auto detached = std::make_shared<std::atomic<bool>>(false);
  std::thread([work = std::move(work), detached]() mutable {
    work();
    while (!*detached) std::this_thread::yield();
    AnnounceThisThreads();
  }).detach();
  *detached = true;
}

}  // namespace ThreadExits
