// main.cpp
// Many frames in a row, from the simulated camera to the host's converted picture.
#include <chrono>
#include <cstdio>
#include <tuple>
#include <vector>

#include "acquisition/ring_size.h"
#include "bbaseaoi.h"
#include "bench_session.h"
#include "vimba_simulator.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kWidth = 2464;
constexpr int kHeight = 2056;
constexpr std::size_t kPayload = std::size_t{kWidth} * kHeight;

double SecondsSince(Clock::time_point begin) { return std::chrono::duration<double>(Clock::now() - begin).count(); }

nlohmann::json BayerCamera(const nlohmann::json& more) {
  nlohmann::json camera{{"sensor", {{"type", "RGGB"}}}, {"scene", "none"}};
  camera.merge_patch(more);
  return camera;
}

// Nothing but the conversion, from as many frames as a device has, so that the source is as cold as there.
double ConversionsPerSecond(int frames) {
  const std::vector<std::vector<std::uint8_t>> sources(kRingFrames, std::vector<std::uint8_t>(kPayload, 90));
  const BColorConverter converter({kWidth, kHeight}, BColorConverter::eRGGB);
  BImageRgb image({kWidth, kHeight});
  const auto begin = Clock::now();
  for (int i = 0; i < frames; ++i)
    converter.ConvertRawToRGB(sources[static_cast<std::size_t>(i) % kRingFrames].data(), image);
  return frames / SecondsSince(begin);
}

// A camera that delivers whenever a frame is queued, and a host that converts every one.
double SnapsPerSecond(int frames) {
  BenchSession session(kWidth, kHeight, BayerCamera({{"timing", "instant"}}));
  VimbaSimRecordCalls(0);
  session.Device().Trigger()->SetSource(BImagingDeviceTrigger::eFreeRun);
  BBaseAoi aoi(BBaseAoi::eRgb);
  session.Device().StartSnap(false);
  session.Device().Snap(&aoi, 1000, 0);
  const auto begin = Clock::now();
  int good = 0;
  for (int i = 0; i < frames; ++i) good += session.Device().Snap(&aoi, 1000, 0).IsError() ? 0 : 1;
  const double rate = good / SecondsSince(begin);
  session.Device().StopSnap();
  return rate;
}

nlohmann::json CameraState() {
  std::string text(VimbaSimState(nullptr, 0) + 256, ' ');
  VimbaSimState(text.data(), text.size());
  return nlohmann::json::parse(text.c_str())["cameras"].front();
}

// A ten-gigabit camera at its own pace; every frame that it exposes must reach the host.
bool NoFrameIsLost(double seconds) {
  BenchSession session(kWidth, kHeight,
                       BayerCamera({{"timing", "real"},
                                    {"lineTime_us", 1.9},
                                    {"ranges", {{"StreamBytesPerSecond", {{"min", 1e6}, {"max", 1.3e9}}}}},
                                    {"features", {{"ExposureTimeAbs", 1000.0}}}}));
  VimbaSimRecordCalls(0);
  std::ignore = session.Device().SetBandwidth(1'265'000'000);
  session.Device().Trigger()->SetSource(BImagingDeviceTrigger::eFreeRun);
  BBaseAoi aoi(BBaseAoi::eRgb, L"[l]");
  session.Device().StartSnap(false);
  const auto begin = Clock::now();
  std::int64_t received = 0;
  while (SecondsSince(begin) < seconds) received += session.Device().Snap(&aoi, 1000, 0).IsError() ? 0 : 1;
  const double elapsed = SecondsSince(begin);
  session.Device().StopSnap();
  const nlohmann::json state = CameraState();
  std::printf("%.1f s at %.1f frames/s: exposed %lld, delivered %lld, dropped %lld, converted by the host %lld\n",
              elapsed, static_cast<double>(received) / elapsed, state["exposed"].get<long long>(),
              state["delivered"].get<long long>(), state["dropped"].get<long long>(), static_cast<long long>(received));
  // What came in after the last snap is in the queue, no more than the driver's ring holds.
  return state["dropped"] == 0 && state["delivered"].get<std::int64_t>() - received <= std::int64_t{kRingFrames};
}

}  // namespace

int main() {
  constexpr int kFrames = 500;
  std::printf("%d x %d Bayer frames to RGB, one host thread\n", kWidth, kHeight);
  const double conversion = ConversionsPerSecond(kFrames);
  const double snaps = SnapsPerSecond(kFrames);
  std::printf("conversion alone: %.1f frames/s\nthrough the driver: %.1f frames/s\nratio: %.2f\n", conversion, snaps,
              snaps / conversion);
  return NoFrameIsLost(10.0) ? 0 : 1;
}
