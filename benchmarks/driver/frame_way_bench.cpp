// frame_way_bench.cpp
// A frame's way from the library's callback to its entry in the frame queue, and what it cannot be faster than.
#include <benchmark/benchmark.h>

#include <atomic>
#include <cstring>
#include <thread>
#include <vector>

#include "bench_session.h"

namespace {

constexpr int kWidth = 2464;
constexpr int kHeight = 2056;
constexpr std::size_t kPayload = std::size_t{kWidth} * kHeight;

VmbFrame_t CompleteFrame(std::vector<std::uint8_t>& pixels) {
  VmbFrame_t frame{};
  frame.buffer = pixels.data();
  frame.bufferSize = static_cast<VmbUint32_t>(pixels.size());
  frame.receiveFlags = 15;
  frame.pixelFormat = VmbPixelFormatMono8;
  frame.width = kWidth;
  frame.height = kHeight;
  // Newer than any scan start.
  frame.timestamp = ~std::uint64_t{0} - 1;
  return frame;
}

// The module's part: message, worker, block, copy, push. The frame counts as arrived when its worker hands it back.
void CallbackToQueueEntry(benchmark::State& state) {
  BenchSession session(kWidth, kHeight);
  session.Device().StartSnap(false);
  std::vector<std::uint8_t> pixels(kPayload, 0x5A);
  VmbFrame_t frame = CompleteFrame(pixels);
  for (auto _ : state) {
    WatchFrame(&frame);
    session.Device().OnFrameExt(&frame);
    WaitForWatchedFrame();
    state.PauseTiming();
    if (session.Device().Snap(nullptr, 0, 0).IsError()) state.SkipWithError("the frame is not in the queue");
    state.ResumeTiming();
  }
  session.Device().StopSnap();
}
BENCHMARK(CallbackToQueueEntry)->Unit(benchmark::kMicrosecond)->UseRealTime();

void MemcpyOfPayload(benchmark::State& state) {
  const std::vector<std::uint8_t> source(kPayload, 0x5A);
  std::vector<std::uint8_t> target(kPayload);
  for (auto _ : state) {
    std::memcpy(target.data(), source.data(), kPayload);
    benchmark::ClobberMemory();
  }
}
BENCHMARK(MemcpyOfPayload)->Unit(benchmark::kMicrosecond)->UseRealTime();

// Until the new thread runs.
void StartOfThread(benchmark::State& state) {
  for (auto _ : state) {
    std::atomic<bool> running{false};
    std::thread thread([&running] { running = true; });
    while (!running) std::this_thread::yield();
    state.PauseTiming();
    thread.join();
    state.ResumeTiming();
  }
}
BENCHMARK(StartOfThread)->Unit(benchmark::kMicrosecond)->UseRealTime();

}  // namespace
