// camera/feature_map.h
// Which of a camera's features stands for which feature that callers ask for. docs/bridge.md has the table.
#pragma once

#include <arv.h>

#include <map>
#include <memory>
#include <string>

#include "camera/acquisition_state.h"
#include "camera/camera_clock.h"
#include "camera/feature.h"

namespace Bridge {

using MappedFeatures = std::map<std::string, std::unique_ptr<Feature>, std::less<>>;

// Those that are not simply the camera's own by that name. The arguments outlive them. A feature that the camera cannot
// serve, or only in a unit that is not known, is left out.
MappedFeatures MapFeatures(ArvDevice* device, CameraClock& clock, AcquisitionState& state);

}  // namespace Bridge
