// camera_points.h
// The points of a check that are about one camera.
#pragma once

#include <span>

#include "check/judgement.h"

namespace Kelcam {

// In the order in which they are measured: setting up, then images.
std::span<const CameraPoint> SetUpPoints();
std::span<const CameraPoint> ImagePoints();

// Why nothing is known of a point of this camera: it was not opened, the check was stopped.
std::string WhyUnknown(const CheckFacts& facts, const CameraFacts& camera);

}  // namespace Kelcam
