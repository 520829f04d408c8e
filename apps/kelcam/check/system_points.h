// system_points.h
// The points of a check that are about the computer, the library and its cameras.
#pragma once

#include <span>

#include "check/judgement.h"

namespace Kelcam {

std::span<const SystemPoint> SystemPoints();

}  // namespace Kelcam
