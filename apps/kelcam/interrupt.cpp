// interrupt.cpp
// Ctrl-C asks a running command to stop at the next image; a second one ends the program at once.
#include "interrupt.h"

#include <atomic>
#include <csignal>

namespace Kelcam {
namespace {

std::atomic<bool> interrupted = false;
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler may touch nothing else");

void OnSignal(int signal) {
  interrupted = true;
  std::signal(signal, SIG_DFL);
}

}  // namespace

void WatchForInterrupt() {
  std::signal(SIGINT, OnSignal);
  std::signal(SIGTERM, OnSignal);
#ifdef SIGPIPE
  // Whoever read the output may be gone; that must not keep the camera from being closed.
  std::signal(SIGPIPE, SIG_IGN);
#endif
}

bool Interrupted() { return interrupted; }

}  // namespace Kelcam
