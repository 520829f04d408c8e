// command_live.cpp
// kelcam live: a continuous run and its figures.
#include <chrono>
#include <iostream>
#include <map>

#include "acquisition_run.h"
#include "camera_session.h"
#include "camera_setup.h"
#include "commands.h"
#include "interrupt.h"
#include "report.h"
#include "utf8.h"

namespace Kelcam {
namespace {

using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

constexpr std::chrono::milliseconds kProgressInterval{250};
constexpr const char* kFastConversion = "[l]";

struct LiveReport {
  std::uint64_t frames = 0;
  std::uint64_t failures = 0;
  std::map<int, std::pair<std::string, std::uint64_t>> faults;  // by code: the text, and how often
  Seconds elapsed{0.0};
  std::int64_t stream_rate_bytes_per_s = 0;

  double FramesPerSecond() const {
    return elapsed > Seconds::zero() ? static_cast<double>(frames) / elapsed.count() : 0.0;
  }

  void CountFailure(const Fault& fault) {
    ++failures;
    const auto [entry, is_new] = faults.try_emplace(fault.code, fault.text, 0);
    ++entry->second.second;
    if (is_new) std::cerr << fault.Sentence() << "\n";
  }

  std::string Line() const {
    return Counted(frames, "frame") + " in " + Fixed(elapsed.count(), 1) + " s, " + Fixed(FramesPerSecond(), 1) +
           " frames/s, " + Counted(failures, "failure") + ", stream rate " +
           Fixed(static_cast<double>(stream_rate_bytes_per_s) / 1e6, 1) + " MB/s";
  }
};

Json ToJson(const LiveReport& report, const std::string& camera) {
  Json errors = Json::array();
  for (const auto& [code, text_and_count] : report.faults) {
    errors.push_back({{"code", code}, {"text", text_and_count.first}, {"count", text_and_count.second}});
  }
  return {{"camera", camera},
          {"frames", report.frames},
          {"failures", report.failures},
          {"errors", errors},
          {"seconds", report.elapsed.count()},
          {"framesPerSecond", report.FramesPerSecond()},
          {"streamBytesPerSecond", report.stream_rate_bytes_per_s},
          {"interrupted", Interrupted()}};
}

void RunUntilOver(const Options& options, BImagingDevice& device, AcquisitionRun& run, LiveReport& report) {
  ProgressLine progress(!options.verbose && !options.quiet);
  const BSmartRef<BBaseAoi> area(new BBaseAoi(PictureKind(options, device),
                                              Wide(options.area_text.empty() ? kFastConversion : options.area_text)));
  const Clock::time_point start = Clock::now();
  Clock::time_point next_progress = start + kProgressInterval;
  while (!Interrupted() && (!options.duration || report.elapsed < *options.duration)) {
    if (const std::optional<Fault> fault = run.Snap(*area, options.timeout)) {
      progress.Wipe();
      report.CountFailure(*fault);
    } else {
      ++report.frames;
    }
    const Clock::time_point now = Clock::now();
    report.elapsed = now - start;
    if (!progress.IsShown() || now < next_progress) continue;
    report.stream_rate_bytes_per_s = device.GetBandwidth();
    progress.Show(report.Line());
    next_progress = now + kProgressInterval;
  }
}

}  // namespace

ExitCode RunLive(const Options& options, const Module& module, const MessageLog& log) {
  const CameraSession camera(module, log, options.profile_file);
  BImagingDevice& device = camera.Device();
  SetUpCamera(options, device);
  const TriggerChoice trigger = options.trigger.value_or(TriggerChoice::kFree);
  const TriggerSetting trigger_setting(device, trigger, options.trigger.has_value());
  LiveReport report;
  AcquisitionRun run(device, false, trigger);
  if (run.StartFault()) {
    report.CountFailure(*run.StartFault());
  } else {
    RunUntilOver(options, device, run, report);
  }
  // Asked for before stop-snap, which adapts it for the next run.
  report.stream_rate_bytes_per_s = device.GetBandwidth();
  if (const std::optional<Fault> fault = run.Stop()) report.CountFailure(*fault);
  if (options.json) {
    PrintDocument(ToJson(report, Utf8(WString(device.Name()))));
  } else {
    std::cout << report.Line() << "\n";
  }
  return report.failures ? kFailed : kDone;
}

}  // namespace Kelcam
