// named_camera.h
// Whether a camera is there that is named by its address or id, and whether another program has it.
#pragma once

#include <string>

#include "library/vimba_library.h"

namespace Kelcam {

enum class CameraAnswer {
  kUnknown,  // nobody has asked, or the answers fit none of the others
  kNobody,
  kInUse,     // a camera that another program has open
  kOpenable,  // a camera that can be opened now
};

// Asks the network, and tries to open the camera. No camera may be open: an interrupt ends the program at once. A
// library that does not start gives kUnknown.
CameraAnswer AskForCamera(const std::string& name, const VimbaLibrary& library);

}  // namespace Kelcam
