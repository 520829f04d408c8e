// virtual_waits_posix.cpp
// Time that passes only where somebody sleeps: the C library's waits, replaced for this program.
#include <dlfcn.h>
#include <pthread.h>
#include <sched.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdint>

#include "vimba_simulator.h"
#include "virtual_waits.h"

namespace {

constexpr std::int64_t kNsPerSecond = 1'000'000'000;
// A sleep beside work that never ends takes this part of its time, counted in what the processors do for the threads
// that work: on a loaded machine they get as far, however long they wait for a processor.
constexpr std::int64_t kLongestPart = 20;
// Work that waits itself is not waited for longer than so many times the sleep.
constexpr std::int64_t kLongestWait = 50;

std::atomic<bool> on{false};
std::atomic<std::int64_t> ahead_ns{0};

std::int64_t InNs(const timespec& time) { return time.tv_sec * kNsPerSecond + time.tv_nsec; }
timespec FromNs(std::int64_t ns) { return {ns / kNsPerSecond, ns % kNsPerSecond}; }

std::int64_t RealNow(clockid_t clock) {
  timespec now{};
  syscall(SYS_clock_gettime, clock, &now);
  return InNs(now);
}

// What the processors have done for the other threads of this process.
std::int64_t WorkOfOthers() { return RealNow(CLOCK_PROCESS_CPUTIME_ID) - RealNow(CLOCK_THREAD_CPUTIME_ID); }

template <class Function>
Function* Next(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

// The threads that the program has started and that run, in the places of their number; a detached one is a worker of
// the module. A slot is taken by a thread's start and given back by its end.
struct Slot {
  enum State : int { kFree, kTaken, kRunning, kDetached };
  std::atomic<int> state{kFree};
  std::atomic<pthread_t> thread{};
  void* (*start)(void*) = nullptr;
  void* argument = nullptr;
};
constexpr std::size_t kMostThreads = 1024;
std::array<Slot, kMostThreads> slots;
std::atomic<int> workers{0};

Slot* TakeSlot() {
  for (Slot& slot : slots) {
    int expected = Slot::kFree;
    if (slot.state.compare_exchange_strong(expected, Slot::kTaken)) return &slot;
  }
  return nullptr;
}

void* RunInSlot(void* of_slot) {
  Slot& slot = *static_cast<Slot*>(of_slot);
  void* const result = slot.start(slot.argument);
  if (slot.state.exchange(Slot::kFree) == Slot::kDetached) --workers;
  return result;
}

bool SomebodyWorks() { return workers != 0 || VimbaSimWaitIdle(0) != 0; }

}  // namespace

bool VirtualWaits::Available() { return true; }

void VirtualWaits::TurnOn() { on = true; }

// Seen by the libraries, which look in the program first.
#pragma GCC visibility push(default)
extern "C" {

int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*start)(void*), void* argument) {
  static auto* const kNext = Next<decltype(pthread_create)>("pthread_create");
  Slot* const slot = TakeSlot();
  if (!slot) return EAGAIN;
  slot->start = start;
  slot->argument = argument;
  slot->thread = pthread_t{};
  slot->state = Slot::kRunning;
  const int error = kNext(thread, attributes, RunInSlot, slot);
  if (error != 0) {
    slot->state = Slot::kFree;
  } else {
    // Whoever detaches it does so on this thread or has got it from this one, after this.
    slot->thread = *thread;
  }
  return error;
}

int pthread_detach(pthread_t thread) {
  static auto* const kNext = Next<decltype(pthread_detach)>("pthread_detach");
  for (Slot& slot : slots) {
    if (slot.thread != thread) continue;
    int expected = Slot::kRunning;
    ++workers;
    if (slot.state.compare_exchange_strong(expected, Slot::kDetached)) break;
    --workers;
  }
  return kNext(thread);
}

int clock_gettime(clockid_t clock, timespec* time) {
  static auto* const kNext = Next<decltype(clock_gettime)>("clock_gettime");
  const int error = kNext(clock, time);
  if (error == 0 && clock == CLOCK_MONOTONIC) *time = FromNs(InNs(*time) + ahead_ns);
  return error;
}

int nanosleep(const timespec* wanted, timespec* left) {
  static auto* const kNext = Next<decltype(nanosleep)>("nanosleep");
  if (!on) return kNext(wanted, left);
  const std::int64_t time = InNs(*wanted);
  const std::int64_t begin = RealNow(CLOCK_MONOTONIC);
  const std::int64_t most_work = WorkOfOthers() + time / kLongestPart;
  std::int64_t passed = 0;
  while (passed < kLongestWait * time && SomebodyWorks() && WorkOfOthers() < most_work) {
    sched_yield();
    passed = RealNow(CLOCK_MONOTONIC) - begin;
  }
  if (passed < time) ahead_ns += time - passed;
  return 0;
}

int pthread_cond_clockwait(pthread_cond_t* condition, pthread_mutex_t* mutex, clockid_t clock, const timespec* end) {
  static auto* const kNext = Next<decltype(pthread_cond_clockwait)>("pthread_cond_clockwait");
  const timespec real_end = clock == CLOCK_MONOTONIC ? FromNs(InNs(*end) - ahead_ns) : *end;
  return kNext(condition, mutex, clock, &real_end);
}

}  // extern "C"
#pragma GCC visibility pop
