// driver_module.h
// The driver module as a host gets it: a file that is loaded at run time, and three functions found by name.
#pragma once

#include <string>

#include "driver/kel_camera_vimba.h"

// Stays loaded to the end of the process, since a host may open another device any time. A host may also unload the
// module once every device is released.
class DriverModule {
 public:
  // Throws std::runtime_error, which names the missing file or export and has the system's reason.
  explicit DriverModule(const std::string& file);

  CreateImagingDeviceFunction* create;
  ReleaseImagingDeviceFunction* release;
  ObjectIdentifierListFunction* list;
};
