// snap_summary.h
// What snap reports of several cameras at the end.
#pragma once

#include "base/report.h"
#include "commands/command_line.h"
#include "device/camera_group.h"

namespace Kelcam {

// One row for each camera. The members' runs are SnapCameras.
std::string SnapSummary(const Options& options, const CameraGroup& group);
Json SnapDocument(const CameraGroup& group);

}  // namespace Kelcam
