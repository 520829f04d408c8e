// attached_cameras.h
// The cameras that a module lists.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "library/module.h"
#include "messages/call_watch.h"

namespace Kelcam {

// Their identifiers in UTF-8, or none where the module cannot start its camera system. No camera may be open: an
// interrupt ends the program at once.
std::optional<std::vector<std::string>> AttachedCameras(const Module& module, CallWatch& watch);

}  // namespace Kelcam
