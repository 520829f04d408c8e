// camera_setup.cpp
// What snap and live ask of a camera before the first image.
#include "camera_setup.h"

#include <iostream>

namespace kelcam {

void SetUpCamera(const Options& options, BImagingDevice& device) {
  if (options.color && !device.IsColor()) std::cerr << "notice: --color does nothing on a monochrome camera\n";
  if (options.color && !device.SetColorMode(*options.color)) {
    throw Failure(std::string("the camera does not take the pixel format of colour mode ") +
                  (*options.color ? "on" : "off"));
  }
  for (const ControlSetting& setting : options.settings) {
    ApplyControlSetting(setting, device, options.color.value_or(false));
  }
}

BBaseAoi::Kind PictureKind(const Options& options, const BImagingDevice& device) {
  return options.kind.value_or(device.IsColor() ? BBaseAoi::eRgb : BBaseAoi::eMono8);
}

const char* NameOf(BBaseAoi::Kind kind) { return kind == BBaseAoi::eRgb ? "rgb" : "mono"; }

}  // namespace kelcam
