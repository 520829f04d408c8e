// interrupt.cpp
// Ctrl-C, and whatever else asks the program to end, stops a running command at the next image.
#include "base/interrupt.h"

#include <atomic>
#include <cstdlib>

#include "base/platform.h"

namespace Kelcam {
namespace {

constexpr int kNoSignal = 0;
// What a shell adds to the number of the signal that ended a program.
constexpr int kSignalBase = 128;

std::atomic<int> first_signal = kNoSignal;
std::atomic<bool> nothing_to_close = false;
std::atomic<int> open_cameras = 0;
static_assert(std::atomic<int>::is_always_lock_free && std::atomic<bool>::is_always_lock_free,
              "a signal handler may touch nothing else");

void Note(int signal) {
  int none = kNoSignal;
  first_signal.compare_exchange_strong(none, signal);
  if (nothing_to_close) std::_Exit(InterruptedExitCode());
}

}  // namespace

void WatchForInterrupt() { OnRequestToEnd(Note); }

bool Interrupted() { return first_signal != kNoSignal; }

int InterruptedExitCode() { return kSignalBase + first_signal; }

void EndIfInterrupted() {
  if (Interrupted() && SomethingToClose::Count() == 0) std::_Exit(InterruptedExitCode());
}

SomethingToClose::SomethingToClose() { ++open_cameras; }
SomethingToClose::~SomethingToClose() { --open_cameras; }
int SomethingToClose::Count() { return open_cameras; }

NothingToClose::NothingToClose() {
  nothing_to_close = SomethingToClose::Count() == 0;
  EndIfInterrupted();
}

NothingToClose::~NothingToClose() { nothing_to_close = false; }

}  // namespace Kelcam
