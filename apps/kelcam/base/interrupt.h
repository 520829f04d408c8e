// interrupt.h
// Ctrl-C, and whatever else asks the program to end, stops a running command at the next image.
#pragma once

namespace Kelcam {

// From now on whatever asks the program to end is noted (OnRequestToEnd).
void WatchForInterrupt();
bool Interrupted();

// The program's exit code after an interrupt: 128 and the number of the signal, 130 for Ctrl-C.
int InterruptedExitCode();

// Ends the program when it was interrupted and no camera is open. For places from which there is no other way out.
void EndIfInterrupted();

// What the program must do before it ends, as long as this lives: close a camera that is open, or report what a run has
// done whose camera is away.
class SomethingToClose {
 public:
  SomethingToClose();
  ~SomethingToClose();
  SomethingToClose(const SomethingToClose&) = delete;
  SomethingToClose& operator=(const SomethingToClose&) = delete;

  // How many of these there are. [any thread]
  static int Count();
};

// The program waits, and opens no camera while this lives: if none is open, an interrupt ends the program at once.
class NothingToClose {
 public:
  NothingToClose();
  ~NothingToClose();
  NothingToClose(const NothingToClose&) = delete;
  NothingToClose& operator=(const NothingToClose&) = delete;
};

}  // namespace Kelcam
