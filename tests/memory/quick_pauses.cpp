// quick_pauses.cpp
// The pauses of the module, a twentieth as long: thousands of lives fit into minutes.
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

#include "memory/libraries.h"

extern "C" __attribute__((visibility("default"))) int nanosleep(const timespec* wanted, timespec* rest) {
  constexpr long kShare = 20;
  constexpr long kNanosecondsPerSecond = 1'000'000'000;
  timespec pause = *wanted;
  if (Memory::OwnerOf(__builtin_return_address(0)) == Memory::Owner::kOurs) {
    const long whole_ns = pause.tv_sec * kNanosecondsPerSecond + pause.tv_nsec;
    pause = {whole_ns / kShare / kNanosecondsPerSecond, whole_ns / kShare % kNanosecondsPerSecond};
  }
  return static_cast<int>(syscall(SYS_clock_nanosleep, CLOCK_REALTIME, 0, &pause, rest));
}
