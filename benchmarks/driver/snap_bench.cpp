// snap_bench.cpp
// A whole single-frame snap: start, snap, stop.
#include <benchmark/benchmark.h>

#include <ctime>

#include "bbaseaoi.h"
#include "bench_session.h"
#include "vimba_simulator.h"

namespace {

double ThreadSeconds() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

// Timed by the host thread's own processor time: the fixed waits (10 ms steps while the queue is empty) do not count.
void SingleFrameSnap(benchmark::State& state) {
  BenchSession session(640, 480);
  BBaseAoi aoi(BBaseAoi::eMono8);
  VimbaSimRecordCalls(0);
  const std::uint64_t calls_before = VimbaSimCallCount();
  for (auto _ : state) {
    const double begin = ThreadSeconds();
    session.Device().StartSnap(true);
    if (session.Device().Snap(&aoi, 1000, 0).IsError()) state.SkipWithError("the snap failed");
    session.Device().StopSnap();
    state.SetIterationTime(ThreadSeconds() - begin);
  }
  state.counters["VimbaC calls"] =
      benchmark::Counter(static_cast<double>(VimbaSimCallCount() - calls_before), benchmark::Counter::kAvgIterations);
}
BENCHMARK(SingleFrameSnap)->Unit(benchmark::kMicrosecond)->UseManualTime()->Iterations(200);

}  // namespace
