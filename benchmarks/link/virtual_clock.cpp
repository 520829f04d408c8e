// virtual_clock.cpp
// Time that passes only while every thread waits: the C library's waits, replaced for this program.
#include "virtual_clock.h"

#include <dlfcn.h>
#include <pthread.h>
#include <sched.h>
#include <time.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <limits>
#include <vector>

namespace {

constexpr std::int64_t kNsPerSecond = 1'000'000'000;
constexpr std::int64_t kNever = std::numeric_limits<std::int64_t>::max();
// Who polls without a pause would keep the clock from moving.
constexpr std::int64_t kYieldNs = 10'000;
// Threads that are not under the clock may hold a mutex, and give no notice.
constexpr std::int64_t kMutexPollNs = 10'000;

template <class Function>
Function* Next(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

std::int64_t InNs(const timespec& time) { return time.tv_sec * kNsPerSecond + time.tv_nsec; }
timespec FromNs(std::int64_t ns) { return {ns / kNsPerSecond, ns % kNsPerSecond}; }

// The calls beneath.
int Lock(pthread_mutex_t* mutex) {
  static auto* const kNext = Next<decltype(pthread_mutex_lock)>("pthread_mutex_lock");
  return kNext(mutex);
}
int Unlock(pthread_mutex_t* mutex) {
  static auto* const kNext = Next<decltype(pthread_mutex_unlock)>("pthread_mutex_unlock");
  return kNext(mutex);
}
int Wait(pthread_cond_t* condition, pthread_mutex_t* mutex) {
  static auto* const kNext = Next<decltype(pthread_cond_wait)>("pthread_cond_wait");
  return kNext(condition, mutex);
}
int Signal(pthread_cond_t* condition) {
  static auto* const kNext = Next<decltype(pthread_cond_signal)>("pthread_cond_signal");
  return kNext(condition);
}

// One thread under the clock.
struct Turn {
  pthread_cond_t begins = PTHREAD_COND_INITIALIZER;
  pthread_t thread{};
  bool here = false;
  // What it waits for besides the time: a condition, a mutex, another thread's end.
  const void* thing = nullptr;
  std::int64_t until = kNever;
  bool timed_out = false;
  void* (*start)(void*) = nullptr;
  void* argument = nullptr;
};

// Everything here is guarded by this mutex, apart from the time, which anybody may read.
pthread_mutex_t guard = PTHREAD_MUTEX_INITIALIZER;
std::atomic<bool> on{false};
std::atomic<std::int64_t> now_ns{0};
thread_local Turn* own = nullptr;
// In the order in which they began to wait, and in which they may go on.
std::vector<Turn*>& Waiting() {
  static std::vector<Turn*> waiting;
  return waiting;
}
std::deque<Turn*>& Ready() {
  static std::deque<Turn*> ready;
  return ready;
}

class Guard {
 public:
  Guard() { Lock(&guard); }
  ~Guard() { Unlock(&guard); }
  Guard(const Guard&) = delete;
  Guard& operator=(const Guard&) = delete;
};

void MakeReady(std::vector<Turn*>::iterator turn, bool timed_out) {
  (*turn)->timed_out = timed_out;
  Ready().push_back(*turn);
  Waiting().erase(turn);
}

// The clock jumps when nobody can go on without it.
void PassOn() {
  if (Ready().empty()) {
    const auto earlier = [](const Turn* one, const Turn* other) { return one->until < other->until; };
    const auto first = std::min_element(Waiting().begin(), Waiting().end(), earlier);
    if (first == Waiting().end()) return;
    if ((*first)->until == kNever) {
      std::fputs("every thread waits for another one\n", stderr);
      std::abort();
    }
    now_ns = std::max(now_ns.load(), (*first)->until);
    MakeReady(first, true);
  }
  Turn* const next = Ready().front();
  Ready().pop_front();
  next->here = true;
  Signal(&next->begins);
}

void AwaitTurn() {
  while (!own->here) Wait(&own->begins, &guard);
}

// True when the time was over before anybody gave notice.
bool WaitFor(const void* thing, std::int64_t until) {
  own->thing = thing;
  own->until = until;
  own->timed_out = false;
  own->here = false;
  Waiting().push_back(own);
  PassOn();
  AwaitTurn();
  own->thing = nullptr;
  return own->timed_out;
}

// Whether there was one at all.
bool Notify(const void* thing, bool everybody) {
  bool found = false;
  for (auto turn = Waiting().begin(); turn != Waiting().end() && (everybody || !found);) {
    if ((*turn)->thing != thing) {
      ++turn;
      continue;
    }
    found = true;
    const auto place = turn - Waiting().begin();
    MakeReady(turn, false);
    turn = Waiting().begin() + place;
  }
  return found;
}

void SleepFor(std::int64_t ns) {
  const Guard held;
  WaitFor(nullptr, now_ns + ns);
}

std::vector<Turn*>& Living() {
  static std::vector<Turn*> living;
  return living;
}

void* RunInTurn(void* of_turn) {
  Turn* const turn = static_cast<Turn*>(of_turn);
  {
    const Guard held;
    own = turn;
    AwaitTurn();
  }
  void* const result = turn->start(turn->argument);
  const Guard held;
  own = nullptr;
  std::erase(Living(), turn);
  Notify(turn, true);
  PassOn();
  delete turn;
  return result;
}

int WaitForCondition(pthread_cond_t* condition, pthread_mutex_t* mutex, std::int64_t until) {
  bool timed_out = false;
  {
    const Guard held;
    Unlock(mutex);
    Notify(mutex, false);
    timed_out = WaitFor(condition, until);
  }
  pthread_mutex_lock(mutex);
  return timed_out ? ETIMEDOUT : 0;
}

}  // namespace

void VirtualClock::TurnOn() {
  timespec time{};
  clock_gettime(CLOCK_MONOTONIC, &time);
  const Guard held;
  now_ns = InNs(time);
  own = new Turn;
  own->here = true;
  own->thread = pthread_self();
  on = true;
}

// Seen by the libraries, which look in the program first. A thread that is not under the clock has the calls beneath.
#pragma GCC visibility push(default)
extern "C" {

int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*start)(void*), void* argument) {
  static auto* const kNext = Next<decltype(pthread_create)>("pthread_create");
  if (!own) return kNext(thread, attributes, start, argument);
  Turn* const turn = new Turn;
  turn->start = start;
  turn->argument = argument;
  const Guard held;
  const int error = kNext(thread, attributes, RunInTurn, turn);
  if (error != 0) {
    delete turn;
    return error;
  }
  turn->thread = *thread;
  Living().push_back(turn);
  Ready().push_back(turn);
  return 0;
}

int pthread_join(pthread_t thread, void** result) {
  static auto* const kNext = Next<decltype(pthread_join)>("pthread_join");
  if (own) {
    const Guard held;
    const auto is_it = [thread](const Turn* turn) { return pthread_equal(turn->thread, thread) != 0; };
    const auto turn = std::find_if(Living().begin(), Living().end(), is_it);
    if (turn != Living().end()) WaitFor(*turn, kNever);
  }
  return kNext(thread, result);
}

int pthread_mutex_lock(pthread_mutex_t* mutex) {
  if (!own) return Lock(mutex);
  int error = 0;
  while ((error = pthread_mutex_trylock(mutex)) == EBUSY) {
    const Guard held;
    WaitFor(mutex, now_ns + kMutexPollNs);
  }
  return error;
}

int pthread_mutex_unlock(pthread_mutex_t* mutex) {
  const int error = Unlock(mutex);
  if (on) {
    const Guard held;
    Notify(mutex, false);
  }
  return error;
}

int pthread_cond_wait(pthread_cond_t* condition, pthread_mutex_t* mutex) {
  return own ? WaitForCondition(condition, mutex, kNever) : Wait(condition, mutex);
}

int pthread_cond_clockwait(pthread_cond_t* condition, pthread_mutex_t* mutex, clockid_t clock, const timespec* end) {
  static auto* const kNext = Next<decltype(pthread_cond_clockwait)>("pthread_cond_clockwait");
  if (!own || clock != CLOCK_MONOTONIC) return kNext(condition, mutex, clock, end);
  return WaitForCondition(condition, mutex, InNs(*end));
}

int pthread_cond_signal(pthread_cond_t* condition) {
  if (on) {
    const Guard held;
    if (Notify(condition, false)) return 0;
  }
  return Signal(condition);
}

int pthread_cond_broadcast(pthread_cond_t* condition) {
  static auto* const kNext = Next<decltype(pthread_cond_broadcast)>("pthread_cond_broadcast");
  if (on) {
    const Guard held;
    Notify(condition, true);
  }
  return kNext(condition);
}

int nanosleep(const timespec* wanted, timespec* left) {
  static auto* const kNext = Next<decltype(nanosleep)>("nanosleep");
  if (!own) return kNext(wanted, left);
  SleepFor(InNs(*wanted));
  return 0;
}

int clock_nanosleep(clockid_t clock, int flags, const timespec* wanted, timespec* left) {
  static auto* const kNext = Next<decltype(clock_nanosleep)>("clock_nanosleep");
  if (!own || flags != 0) return kNext(clock, flags, wanted, left);
  SleepFor(InNs(*wanted));
  return 0;
}

int sched_yield() {
  static auto* const kNext = Next<decltype(sched_yield)>("sched_yield");
  if (!own) return kNext();
  SleepFor(kYieldNs);
  return 0;
}

int clock_gettime(clockid_t clock, timespec* time) {
  static auto* const kNext = Next<decltype(clock_gettime)>("clock_gettime");
  if (!on || clock != CLOCK_MONOTONIC) return kNext(clock, time);
  *time = FromNs(now_ns);
  return 0;
}

}  // extern "C"
#pragma GCC visibility pop
