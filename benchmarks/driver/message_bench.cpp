// message_bench.cpp
// What it costs to build the messages of one snap: start, callback, snap, rate change, stop.
#include <benchmark/benchmark.h>

#include "acquisition/frame_description.h"
#include "diagnostics/camera_prefix.h"
#include "diagnostics/log_collector.h"

namespace {

const WString kIdentifier(L"Vimba_Manta-G-507C_50-0536953958");

// The same insertions as the driver's, with nothing behind them.
void BuildMessagesOfOneSnap(const BStopWatch& watch, const VmbFrame_t& frame) {
  {
    BLogCollector log(CameraPrefix(kIdentifier) + L"StartSnap( one_shot = True )", watch);
    log << L"Trigger is on: " << false << L'\n';
    log << L"Set feature AcquisitionMode = " << "SingleFrame" << L" -> " << 0 << L'\n';
    log << L"Current camera timestamp = " << std::uint64_t{155274831} << L'\n';
    log << L"Command AcquisitionStart -> " << 0 << L'\n';
  }
  {
    BLogCollector log(CameraPrefix(kIdentifier) + L"OnFrameExt()", watch);
    log << DescribeFrame(frame).c_str() << L'\n' << L"process_frame_lambda started" << L'\n';
  }
  {
    BLogCollector log(CameraPrefix(kIdentifier) + L"Snap", watch);
    log << L"Fire SW trigger\n" << L"Frame Id = " << std::uint64_t{7} << L'\n';
    log << L"Frame error code = " << 0 << L'\n' << L"Copy frame to aoi" << L'\n';
  }
  {
    BLogCollector log(CameraPrefix(kIdentifier) + L"StopSnap", watch);
    log << L"VmbFeatureCommandRun AcquisitionStop returns " << 0 << L'\n';
    log << L"Received " << std::uint64_t{1} << L" Frames [" << L"7" << L"]\n";
    log << L"Successful snap, failure counter = 0, bandwidth.av = " << std::int64_t{97700000} << L" #snaps = "
        << std::int64_t{1} << L'\n';
  }
}

void MessagesOfOneSnap(benchmark::State& state) {
  const BStopWatch watch;
  VmbFrame_t frame{};
  frame.receiveFlags = 15;
  frame.width = 2464;
  frame.height = 2056;
  frame.timestamp = 155324495;
  for (auto _ : state) BuildMessagesOfOneSnap(watch, frame);
}
BENCHMARK(MessagesOfOneSnap)->Unit(benchmark::kMicrosecond);

// A cost in proportion to the length shows as the same time a line.
void LongMessage(benchmark::State& state) {
  for (auto _ : state) {
    BLogCollector log(L"A long message");
    for (int line = 0; line < state.range(0); ++line) log << L"Frame Id = " << line << L'\n';
  }
  state.counters["lines/s"] =
      benchmark::Counter(static_cast<double>(state.iterations() * state.range(0)), benchmark::Counter::kIsRate);
}
BENCHMARK(LongMessage)->Arg(10)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);

}  // namespace
