// unlock_pauses.cpp
// Lets a thread rest now and then when it has released a mutex, which widens what lies between a release and the next
// step: there the mistakes are that no sanitizer sees while they go well. The thread sanitizer has an unlock of its
// own.
#if !defined(STORMS_WITHOUT_UNLOCK_PAUSES)
#include <dlfcn.h>
#include <pthread.h>
#include <sched.h>
#include <time.h>

#include <atomic>
#include <cstdint>

namespace {

using Unlock = int (*)(pthread_mutex_t*);

constexpr std::uint32_t kYieldsOneIn = 16;
constexpr std::uint32_t kRestsOneIn = 512;
// Longer than it takes to close a camera and to unload the module.
constexpr long kRestNs = 5'000'000;

// A counter, not chance: a thread's own state would not be there yet, or no longer.
void RestNowAndThen() {
  static std::atomic<std::uint32_t> unlocks{0};
  const std::uint32_t unlock = unlocks.fetch_add(1, std::memory_order_relaxed);
  if (unlock % kRestsOneIn == 0) {
    const timespec rest{.tv_sec = 0, .tv_nsec = kRestNs};
    nanosleep(&rest, nullptr);
  } else if (unlock % kYieldsOneIn == 0) {
    sched_yield();
  }
}

}  // namespace

// In place of the C library's, for this program and all that it loads.
extern "C" __attribute__((visibility("default"))) int pthread_mutex_unlock(pthread_mutex_t* mutex) {
  static const auto kUnlock = reinterpret_cast<Unlock>(dlsym(RTLD_NEXT, "pthread_mutex_unlock"));
  const int result = kUnlock(mutex);
  RestNowAndThen();
  return result;
}

#endif
