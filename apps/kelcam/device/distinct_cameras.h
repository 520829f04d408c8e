// distinct_cameras.h
// Whether the cameras that a command line asks for are several.
#pragma once

#include <vector>

#include "device/camera_choice.h"
#include "library/module.h"

namespace Kelcam {

// Throws UsageError when two of them are one camera, as far as the library behind the module knows the cameras now. No
// camera may be open: a second opening would be refused, as if another program had the camera.
void CheckDistinct(const std::vector<CameraChoice>& choices, const Module& module);

}  // namespace Kelcam
