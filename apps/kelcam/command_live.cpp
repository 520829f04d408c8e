// command_live.cpp
// kelcam live: a continuous run and its figures.
#include <chrono>
#include <iostream>

#include "acquisition_run.h"
#include "camera_session.h"
#include "camera_setup.h"
#include "commands.h"
#include "interrupt.h"
#include "live_report.h"
#include "profile_check.h"
#include "utf8.h"

namespace Kelcam {
namespace {

using Clock = std::chrono::steady_clock;

// Asking for it takes a call to the camera.
constexpr std::chrono::seconds kStreamRateInterval{1};
constexpr const char* kFastConversion = "[l]";

std::int64_t StreamRate(const CameraSession& camera) {
  const CallWatch::Call call(camera.Watch(), Operation::kControls);
  return camera.Device().GetBandwidth();
}

void RunUntilOver(const Options& options, const CameraSession& camera, AcquisitionRun& run, LiveReport& report) {
  const BImagingDevice& device = camera.Device();
  LostCamera lost(options.lost_after);
  bool is_lost = false;
  const BSmartRef<BBaseAoi> area(new BBaseAoi(PictureKind(options, device),
                                              Wide(options.area_text.empty() ? kFastConversion : options.area_text)));
  Clock::time_point next_rate = Clock::now();
  report.Start();
  while (!Interrupted() && !is_lost && !report.HasLostReader() &&
         (!options.duration || report.Elapsed() < *options.duration)) {
    if (Clock::now() >= next_rate) {
      report.SetStreamRate(StreamRate(camera));
      next_rate = Clock::now() + kStreamRateInterval;
    }
    const std::optional<Fault> fault = run.Snap(*area, options.timeout);
    fault ? report.AddFailure(*fault) : report.AddFrame();
    is_lost = lost.IsLostAfter(fault && camera.LooksGone());
  }
  report.Stop();
  if (is_lost) report.AddLoss(lost.AsFault());
}

}  // namespace

ExitCode RunLive(const Options& options, const Module& module, MessageLog& log) {
  if (!options.profile_file.empty()) PrintUnusedKeys(options.profile_file);
  const CameraSession camera(module, log, options);
  BImagingDevice& device = camera.Device();
  {
    const CallWatch::Call call(camera.Watch(), Operation::kControls);
    SetUpCamera(options, device);
  }
  const TriggerChoice trigger = options.trigger.value_or(TriggerChoice::kFree);
  const TriggerSetting trigger_setting(device, trigger, options.trigger.has_value());
  const FrameIds ids(log);
  LiveReport report(options, ids);
  AcquisitionRun run(camera, false, trigger);
  if (run.StartFault()) {
    report.AddFailure(*run.StartFault());
  } else {
    RunUntilOver(options, camera, run, report);
  }
  // Asked for before stop-snap, which adapts it for the next run.
  report.SetStreamRate(StreamRate(camera));
  if (const std::optional<Fault> fault = run.Stop()) report.AddFailure(*fault);
  report.PrintTotal(Utf8(WString(device.Name())));
  return report.HasFailed() ? kFailed : kDone;
}

}  // namespace Kelcam
