// platform.cpp
// The two things that the module asks of the operating system itself.
#include "diagnostics/platform.h"

#if defined(_WIN32)
#include <windows.h>

unsigned long CurrentThreadId() { return GetCurrentThreadId(); }

void SleepFor(std::chrono::milliseconds time) { Sleep(static_cast<DWORD>(time.count())); }
#else
#include <sys/syscall.h>
#include <unistd.h>

#include <thread>

unsigned long CurrentThreadId() { return static_cast<unsigned long>(syscall(SYS_gettid)); }

void SleepFor(std::chrono::milliseconds time) {
  if (time == time.zero()) {
    std::this_thread::yield();
  } else {
    std::this_thread::sleep_for(time);
  }
}
#endif
