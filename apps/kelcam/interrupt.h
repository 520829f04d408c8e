// interrupt.h
// Ctrl-C, and whatever else asks the program to end, stops a running command at the next image.
#pragma once

namespace Kelcam {

// From now on whatever asks the program to end is noted (OnRequestToEnd).
void WatchForInterrupt();
bool Interrupted();

// The program's exit code after an interrupt: 128 and the number of the signal, 130 for Ctrl-C.
int InterruptedExitCode();

// Ends the program when it was interrupted. For places from which there is no other way out; no camera may be open.
void EndIfInterrupted();

// While it lives no camera is open, and an interrupt ends the program at once.
class NothingToClose {
 public:
  NothingToClose();
  ~NothingToClose();
  NothingToClose(const NothingToClose&) = delete;
  NothingToClose& operator=(const NothingToClose&) = delete;
};

}  // namespace Kelcam
