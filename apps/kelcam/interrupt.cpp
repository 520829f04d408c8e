// interrupt.cpp
// Ctrl-C, and whatever else asks the program to end, stops a running command at the next image.
#include "interrupt.h"

#include <atomic>
#include <csignal>
#include <cstdlib>

#ifdef _WIN32
#include <windows.h>
#endif

namespace Kelcam {
namespace {

constexpr int kNoSignal = 0;
// What a shell adds to the number of the signal that ended a program.
constexpr int kSignalBase = 128;

std::atomic<int> first_signal = kNoSignal;
std::atomic<bool> nothing_to_close = false;
static_assert(std::atomic<int>::is_always_lock_free && std::atomic<bool>::is_always_lock_free,
              "a signal handler may touch nothing else");

void Note(int signal) {
  int none = kNoSignal;
  first_signal.compare_exchange_strong(none, signal);
  if (nothing_to_close) std::_Exit(InterruptedExitCode());
}

#ifdef _WIN32

// The numbers that these events have on other systems.
constexpr int kHangUp = 1;
constexpr int kTerminate = 15;

// Called on a thread of the system's. What it leaves to the system ends the program.
BOOL WINAPI OnConsoleEvent(DWORD event) {
  switch (event) {
    case CTRL_C_EVENT:
    case CTRL_BREAK_EVENT: {
      const bool is_first = !Interrupted();
      Note(event == CTRL_C_EVENT ? SIGINT : SIGBREAK);
      return is_first;
    }
    default:
      Note(event == CTRL_CLOSE_EVENT ? kHangUp : kTerminate);
      // The system ends the program when this returns, or when its patience is over; until then the camera is closed.
      Sleep(INFINITE);
      return TRUE;
  }
}

#else

void OnSignal(int signal) { Note(signal); }

void OnSignalOnce(int signal) {
  std::signal(signal, SIG_DFL);
  Note(signal);
}

#endif

}  // namespace

void WatchForInterrupt() {
#ifdef _WIN32
  SetConsoleCtrlHandler(OnConsoleEvent, TRUE);
#else
  std::signal(SIGINT, OnSignalOnce);
  std::signal(SIGTERM, OnSignalOnce);
  // A terminal that goes sends more than one; and each later write beyond the limit sends another. Whoever started the
  // program with nohup wants none.
  if (std::signal(SIGHUP, OnSignal) == SIG_IGN) std::signal(SIGHUP, SIG_IGN);
  std::signal(SIGXFSZ, OnSignal);
  // Whoever read the output may be gone; that must not keep the camera from being closed.
  std::signal(SIGPIPE, SIG_IGN);
#endif
}

bool Interrupted() { return first_signal != kNoSignal; }

int InterruptedExitCode() { return kSignalBase + first_signal; }

void EndIfInterrupted() {
  if (Interrupted()) std::_Exit(InterruptedExitCode());
}

NothingToClose::NothingToClose() {
  nothing_to_close = true;
  EndIfInterrupted();
}

NothingToClose::~NothingToClose() { nothing_to_close = false; }

}  // namespace Kelcam
