// platform.cpp
// The two things that the module asks of the operating system itself.
#include "diagnostics/platform.h"

#if defined(_WIN32)
#include <windows.h>

unsigned long CurrentThreadId() { return GetCurrentThreadId(); }

void SleepMilliseconds(std::uint32_t milliseconds) { Sleep(milliseconds); }
#else
#include <sys/syscall.h>
#include <unistd.h>

#include <chrono>
#include <thread>

unsigned long CurrentThreadId() { return static_cast<unsigned long>(syscall(SYS_gettid)); }

void SleepMilliseconds(std::uint32_t milliseconds) {
  if (milliseconds == 0) {
    std::this_thread::yield();
  } else {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
  }
}
#endif
