// snap_summary.h
// What snap reports of several cameras at the end.
#pragma once

#include "camera_group.h"
#include "command_line.h"
#include "report.h"

namespace Kelcam {

// One row for each camera. The members' runs are SnapCameras.
std::string SnapSummary(const Options& options, const CameraGroup& group);
Json SnapDocument(const CameraGroup& group);

}  // namespace Kelcam
