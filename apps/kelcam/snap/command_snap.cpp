// command_snap.cpp
// kelcam snap: images as files.
#include <iostream>

#include "base/platform.h"
#include "base/report.h"
#include "commands/commands.h"
#include "device/camera_group.h"
#include "device/distinct_cameras.h"
#include "profile_text/profile_check.h"
#include "snap/picture_names.h"
#include "snap/snap_camera.h"
#include "snap/snap_summary.h"

namespace Kelcam {
namespace {

std::unique_ptr<SnapCamera> Opened(const Options& options, const CameraChoice& choice, const Module& module,
                                   MessageLog& log, Screen& screen) {
  if (!choice.profile_file.empty()) PrintUnusedKeys(choice.profile_file);
  const auto line = static_cast<std::size_t>(&choice - options.cameras.data());
  return std::make_unique<SnapCamera>(options, choice, module, log, screen, line);
}

ExitCode SnapOne(const Options& options, const Module& module, MessageLog& log, Screen& screen) {
  const auto camera = Opened(options, options.cameras.front(), module, log, screen);
  camera->SetUp();
  camera->Run();
  if (options.json) PrintDocument(camera->Document());
  camera->PrintSummary();
  return camera->HasFailed() ? kFailed : kDone;
}

ExitCode SnapSeveral(const Options& options, const Module& module, MessageLog& log, Screen& screen) {
  CheckDistinct(options.cameras, module);
  CameraGroup group(options.cameras,
                    [&](const CameraChoice& choice) { return Opened(options, choice, module, log, screen); });
  CheckNamesDiffer(options, group.OpenCameras());
  if (options.link) group.Link();
  group.Run();
  screen.Clear();
  if (options.json) PrintDocument(SnapDocument(group));
  if (!options.quiet) std::cerr << SnapSummary(options, group);
  return group.Result();
}

}  // namespace

ExitCode RunSnap(const Options& options, const Module& module, MessageLog& log) {
  PictureSeries::CheckFiles(options, nullptr);
  if (IsStandardOutput(options)) MakeStandardOutputBinary();
  Screen screen(options.cameras.size(), SnapReport::WantsProgress(options));
  return options.cameras.size() == 1 ? SnapOne(options, module, log, screen)
                                     : SnapSeveral(options, module, log, screen);
}

}  // namespace Kelcam
