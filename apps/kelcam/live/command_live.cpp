// command_live.cpp
// kelcam live: continuous runs and their figures.
#include "base/report.h"
#include "commands/commands.h"
#include "device/camera_group.h"
#include "device/distinct_cameras.h"
#include "live/live_camera.h"
#include "profile_text/profile_check.h"

namespace Kelcam {
namespace {

std::unique_ptr<LiveCamera> Opened(const Options& options, const CameraChoice& choice, const Module& module,
                                   MessageLog& log, LiveReport& report) {
  if (!choice.profile_file.empty()) PrintUnusedKeys(choice.profile_file);
  return std::make_unique<LiveCamera>(options, choice, module, log, report);
}

ExitCode LiveOfOne(const Options& options, const Module& module, MessageLog& log, LiveReport& report) {
  const auto camera = Opened(options, options.cameras.front(), module, log, report);
  camera->SetUp();
  camera->Run();
  report.End();
  camera->PrintTotal();
  return camera->HasFailed() ? kFailed : kDone;
}

// Of a camera that has not run, its error is the total.
void PrintTotals(const Options& options, const CameraGroup& group) {
  for (const CameraGroup::Member& member : group.Members()) {
    if (member.run) {
      static_cast<const LiveCamera&>(*member.run).PrintTotal();
    } else if (options.json && member.fault) {
      PrintLine({{"event", "error"}, {"camera", member.name}, {"error", ToJson(*member.fault)}});
    }
  }
}

ExitCode LiveOfSeveral(const Options& options, const Module& module, MessageLog& log, LiveReport& report) {
  CheckDistinct(options.cameras, module);
  CameraGroup group(options.cameras,
                    [&](const CameraChoice& choice) { return Opened(options, choice, module, log, report); });
  if (options.link) group.Link();
  group.Run();
  report.End();
  PrintTotals(options, group);
  return group.Result();
}

}  // namespace

ExitCode RunLive(const Options& options, const Module& module, MessageLog& log) {
  LiveReport report(options);
  return options.cameras.size() == 1 ? LiveOfOne(options, module, log, report)
                                     : LiveOfSeveral(options, module, log, report);
}

}  // namespace Kelcam
