// memory_bench.cpp
// What an open device holds beside its ten payloads, and that snaps do not add to it.
#include <benchmark/benchmark.h>

#include "acquisition/ring_size.h"
#include "bbaseaoi.h"
#include "bench_session.h"
#include "vimba_simulator.h"

namespace {

constexpr double kMebibyte = 1024.0 * 1024.0;

double Mebibytes(std::int64_t bytes) { return static_cast<double>(bytes) / kMebibyte; }

// One iteration opens a device, takes 10,000 frames from it and prints what it holds at the start, in the middle, at
// the end.
void OpenDeviceMemory(benchmark::State& state) {
  constexpr int kWidth = 640;
  constexpr int kHeight = 480;
  constexpr int kSnaps = 10'000;
  for (auto _ : state) {
    VimbaSimRecordCalls(0);
    BenchSession session(kWidth, kHeight);
    BBaseAoi aoi(BBaseAoi::eMono8);
    const auto snap = [&] {
      session.Device().StartSnap(true);
      if (session.Device().Snap(&aoi, 1000, 0).IsError()) state.SkipWithError("a snap failed");
      session.Device().StopSnap();
    };
    snap();
    const std::int64_t first = ResidentBytes();
    for (int i = 1; i < kSnaps / 2; ++i) snap();
    const std::int64_t middle = ResidentBytes();
    for (int i = kSnaps / 2; i < kSnaps; ++i) snap();
    state.counters["MiB after 1"] = Mebibytes(first);
    state.counters["MiB after 5000"] = Mebibytes(middle);
    state.counters["MiB after 10000"] = Mebibytes(ResidentBytes());
  }
}
BENCHMARK(OpenDeviceMemory)->Unit(benchmark::kSecond)->Iterations(1)->UseRealTime();

// Beside ten payloads, of what a snapped device of the largest sensor adds to the process.
void OpenDeviceBesidePayloads(benchmark::State& state) {
  constexpr int kWidth = 2464;
  constexpr int kHeight = 2056;
  constexpr std::int64_t kPayloads = std::int64_t{kRingFrames} * kWidth * kHeight;
  for (auto _ : state) {
    const auto snap = [&](BenchSession& session) {
      session.Device().StartSnap(true);
      if (session.Device().Snap(nullptr, 1000, 0).IsError()) state.SkipWithError("the snap failed");
      session.Device().StopSnap();
    };
    {
      // What the process needs once: code, the simulated camera's picture.
      BenchSession first(kWidth, kHeight);
      snap(first);
    }
    const std::int64_t before = ResidentBytes();
    BenchSession session(kWidth, kHeight);
    snap(session);
    state.counters["MiB beside payloads"] = Mebibytes(ResidentBytes() - before - kPayloads);
  }
}
BENCHMARK(OpenDeviceBesidePayloads)->Unit(benchmark::kMillisecond)->Iterations(1)->UseRealTime();

}  // namespace
