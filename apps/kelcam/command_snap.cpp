// command_snap.cpp
// kelcam snap: images as files.
#include "camera_session.h"
#include "camera_setup.h"
#include "commands.h"
#include "interrupt.h"
#include "picture_details.h"
#include "picture_notices.h"
#include "picture_series.h"
#include "platform.h"
#include "profile_check.h"
#include "raw_frame.h"
#include "report.h"
#include "utf8.h"

namespace Kelcam {
namespace {

Json ToJson(PictureSeries& series, const std::string& camera) {
  Json document = {{"camera", camera},
                   {"kind", series.KindName()},
                   {"images", series.Report().Images()},
                   {"taken", series.Report().Taken()},
                   {"interrupted", Interrupted()}};
  if (series.RunFault()) document["error"] = ToJson(*series.RunFault());
  return document;
}

std::optional<int> FrameOrderOf(const CameraSession& camera) {
  if (!camera.Device().IsColor()) return std::nullopt;
  return BayerOrderOf(camera.Profile());
}

}  // namespace

ExitCode RunSnap(const Options& options, const Module& module, const MessageLog& log) {
  PictureSeries::CheckFiles(options, std::nullopt);
  if (IsStandardOutput(options)) MakeStandardOutputBinary();
  if (!options.profile_file.empty()) PrintUnusedKeys(options.profile_file);
  const CameraSession camera(module, log, options);
  BImagingDevice& device = camera.Device();
  PictureSeries::CheckFiles(options, SerialOf(device));
  {
    const CallWatch::Call call(camera.Watch(), Operation::kControls);
    SetUpCamera(options, device);
  }
  PrintPictureNotices(options, camera);
  const bool single = options.mode == SnapMode::kSingle;
  const TriggerChoice trigger = options.trigger.value_or(single ? TriggerChoice::kSoftware : TriggerChoice::kFree);
  const TriggerSetting trigger_setting(device, trigger, options.trigger.has_value());
  PictureSeries series(options, camera, FrameOrderOf(camera));
  single ? series.TakeSingle(trigger) : series.TakeContinuous(trigger);
  if (options.json) PrintDocument(ToJson(series, Utf8(WString(device.Name()))));
  series.Report().PrintSummary(series.RunFault().has_value());
  return series.HasFailed() ? kFailed : kDone;
}

}  // namespace Kelcam
