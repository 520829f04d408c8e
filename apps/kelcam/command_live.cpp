// command_live.cpp
// kelcam live: a continuous run and its figures.
#include <chrono>
#include <iostream>
#include <map>
#include <set>
#include <string>
#include <utility>

#include "acquisition_run.h"
#include "camera_session.h"
#include "camera_setup.h"
#include "commands.h"
#include "interrupt.h"
#include "profile_check.h"
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
  std::map<int, std::pair<Fault, std::uint64_t>> faults;  // by code: the first, and how many
  std::set<std::pair<int, std::string>> printed;          // what has been: code and next step
  Seconds elapsed{0.0};
  std::int64_t stream_rate_bytes_per_s = 0;
  std::optional<Fault> lost;  // the camera is gone, and the run has ended for it

  double FramesPerSecond() const {
    return elapsed > Seconds::zero() ? static_cast<double>(frames) / elapsed.count() : 0.0;
  }

  void CountFailure(const Fault& fault) {
    ++failures;
    ++faults.try_emplace(fault.code, fault, 0).first->second.second;
    const bool is_new = printed.emplace(fault.code, fault.reason.to_do).second;
    if (is_new) std::cerr << fault.Sentence() << "\n" << fault.reason.Text();
  }

  std::string Line() const {
    return Counted(frames, "frame") + " in " + Fixed(elapsed.count(), 1) + " s, " + Fixed(FramesPerSecond(), 1) +
           " frames/s, " + Counted(failures, "failure") + ", stream rate " +
           Fixed(static_cast<double>(stream_rate_bytes_per_s) / 1e6, 1) + " MB/s";
  }
};

Json ToJson(const LiveReport& report, const std::string& camera) {
  Json errors = Json::array();
  for (const auto& [code, fault_and_count] : report.faults) {
    Json error = ToJson(fault_and_count.first);
    error["count"] = fault_and_count.second;
    errors.push_back(error);
  }
  Json document = {{"camera", camera},
                   {"frames", report.frames},
                   {"failures", report.failures},
                   {"errors", errors},
                   {"seconds", report.elapsed.count()},
                   {"framesPerSecond", report.FramesPerSecond()},
                   {"streamBytesPerSecond", report.stream_rate_bytes_per_s},
                   {"interrupted", Interrupted()}};
  if (report.lost) document["error"] = ToJson(*report.lost);
  return document;
}

std::int64_t StreamRate(const CameraSession& camera) {
  const CallWatch::Call call(camera.Watch(), Operation::kControls);
  return camera.Device().GetBandwidth();
}

void RunUntilOver(const Options& options, const CameraSession& camera, AcquisitionRun& run, LiveReport& report) {
  const BImagingDevice& device = camera.Device();
  LostCamera lost(options.lost_after);
  ProgressLine progress(!options.verbose && !options.quiet);
  const BSmartRef<BBaseAoi> area(new BBaseAoi(PictureKind(options, device),
                                              Wide(options.area_text.empty() ? kFastConversion : options.area_text)));
  const Clock::time_point start = Clock::now();
  Clock::time_point next_progress = start + kProgressInterval;
  while (!Interrupted() && !report.lost && (!options.duration || report.elapsed < *options.duration)) {
    const std::optional<Fault> fault = run.Snap(*area, options.timeout);
    if (fault) {
      progress.Wipe();
      report.CountFailure(*fault);
    } else {
      ++report.frames;
    }
    if (lost.IsLostAfter(fault && camera.LooksGone())) {
      report.lost = lost.AsFault();
      std::cerr << report.lost->Sentence() << "\n";
    }
    const Clock::time_point now = Clock::now();
    report.elapsed = now - start;
    if (!progress.IsShown() || now < next_progress) continue;
    report.stream_rate_bytes_per_s = StreamRate(camera);
    progress.Show(report.Line());
    next_progress = now + kProgressInterval;
  }
}

}  // namespace

ExitCode RunLive(const Options& options, const Module& module, const MessageLog& log) {
  if (!options.profile_file.empty()) PrintUnusedKeys(options.profile_file);
  const CameraSession camera(module, log, options);
  BImagingDevice& device = camera.Device();
  {
    const CallWatch::Call call(camera.Watch(), Operation::kControls);
    SetUpCamera(options, device);
  }
  const TriggerChoice trigger = options.trigger.value_or(TriggerChoice::kFree);
  const TriggerSetting trigger_setting(device, trigger, options.trigger.has_value());
  LiveReport report;
  AcquisitionRun run(camera, false, trigger);
  if (run.StartFault()) {
    report.CountFailure(*run.StartFault());
  } else {
    RunUntilOver(options, camera, run, report);
  }
  // Asked for before stop-snap, which adapts it for the next run.
  report.stream_rate_bytes_per_s = StreamRate(camera);
  if (const std::optional<Fault> fault = run.Stop()) report.CountFailure(*fault);
  if (options.json) {
    PrintDocument(ToJson(report, Utf8(WString(device.Name()))));
  } else {
    std::cout << report.Line() << "\n";
  }
  return report.failures ? kFailed : kDone;
}

}  // namespace Kelcam
