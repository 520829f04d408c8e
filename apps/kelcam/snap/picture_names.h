// picture_names.h
// Whether several cameras write to different files.
#pragma once

#include <vector>

#include "commands/command_line.h"
#include "device/camera_session.h"

namespace Kelcam {

// Throws UsageError when two pictures would get one name, also on a system to which letters of both cases are the same.
void CheckNamesDiffer(const Options& options, const std::vector<const CameraSession*>& cameras);

}  // namespace Kelcam
