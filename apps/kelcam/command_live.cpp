// command_live.cpp
// kelcam live: a continuous run and its figures.
#include <iostream>
#include <map>

#include "bstopwatch.h"
#include "camera_session.h"
#include "camera_setup.h"
#include "commands.h"
#include "interrupt.h"
#include "report.h"
#include "utf8.h"

namespace kelcam {

static constexpr double kProgressEveryMs = 250.0;
static constexpr const char* kFastConversion = "[l]";

struct LiveReport {
  std::uint64_t frames = 0;
  std::uint64_t failures = 0;
  std::map<int, std::pair<std::string, std::uint64_t>> faults;  // by code: the text, and how often
  double seconds = 0.0;
  std::int64_t stream_bytes_per_second = 0;

  double FramesPerSecond() const { return seconds > 0.0 ? static_cast<double>(frames) / seconds : 0.0; }

  void CountFailure(const Fault& fault) {
    ++failures;
    const auto [entry, is_new] = faults.try_emplace(fault.code, fault.text, 0);
    ++entry->second.second;
    if (is_new) std::cerr << fault.Sentence() << "\n";
  }

  std::string Line() const {
    return Counted(frames, "frame") + " in " + Fixed(seconds, 1) + " s, " + Fixed(FramesPerSecond(), 1) +
           " frames/s, " + Counted(failures, "failure") + ", stream rate " +
           Fixed(static_cast<double>(stream_bytes_per_second) / 1e6, 1) + " MB/s";
  }
};

static Json ToJson(const LiveReport& report, const std::string& camera) {
  Json errors = Json::array();
  for (const auto& [code, text_and_count] : report.faults) {
    errors.push_back({{"code", code}, {"text", text_and_count.first}, {"count", text_and_count.second}});
  }
  return {{"camera", camera},
          {"frames", report.frames},
          {"failures", report.failures},
          {"errors", errors},
          {"seconds", report.seconds},
          {"framesPerSecond", report.FramesPerSecond()},
          {"streamBytesPerSecond", report.stream_bytes_per_second},
          {"interrupted", Interrupted()}};
}

static void RunUntilOver(const Options& options, BImagingDevice& device, SnapCycle& cycle, LiveReport& report) {
  ProgressLine progress(!options.verbose);
  const BSmartRef<BBaseAoi> area(new BBaseAoi(PictureKind(options, device),
                                              Wide(options.area_text.empty() ? kFastConversion : options.area_text)));
  const BStopWatch watch;
  BStopWatch since_progress;
  while (!Interrupted() && (!options.seconds || report.seconds < *options.seconds)) {
    if (const std::optional<Fault> fault = cycle.Snap(*area, options.timeout_ms)) {
      progress.Wipe();
      report.CountFailure(*fault);
    } else {
      ++report.frames;
    }
    report.seconds = watch.PeriodD() / 1000.0;
    if (!progress.IsShown() || since_progress.PeriodD() < kProgressEveryMs) continue;
    report.stream_bytes_per_second = device.GetBandwidth();
    progress.Show(report.Line());
    since_progress.Reset();
  }
}

ExitCode RunLive(const Options& options, const Module& module, const MessageLog& log) {
  const CameraSession camera(module, log, options.profile_file);
  BImagingDevice& device = camera.Device();
  SetUpCamera(options, device);
  const TriggerChoice trigger = options.trigger.value_or(TriggerChoice::eFree);
  const TriggerSetting trigger_setting(device, trigger, options.trigger.has_value());
  LiveReport report;
  SnapCycle cycle(device, false, trigger);
  if (cycle.StartFault()) {
    report.CountFailure(*cycle.StartFault());
  } else {
    RunUntilOver(options, device, cycle, report);
  }
  report.stream_bytes_per_second = device.GetBandwidth();  // the run's: stop-snap adapts it to the next one
  if (const std::optional<Fault> fault = cycle.Stop()) report.CountFailure(*fault);
  if (options.json) {
    PrintDocument(ToJson(report, Utf8(WString(device.Name()))));
  } else {
    std::cout << report.Line() << "\n";
  }
  return report.failures ? eFailed : eDone;
}

}  // namespace kelcam
