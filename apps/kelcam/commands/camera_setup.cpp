// camera_setup.cpp
// What snap and live ask of a camera before the first image.
#include "commands/camera_setup.h"

#include <iostream>

#include "base/failure.h"

namespace Kelcam {

void SetUpCamera(const Options& options, const CameraSession& camera, SettingNotices notices) {
  const bool wants_notices = notices == SettingNotices::kPrinted;
  BImagingDevice& device = camera.Device();
  const CallWatch::Call call(camera.Watch(), Operation::kControls);
  if (wants_notices && options.color && !device.IsColor()) {
    std::cerr << "notice: " + camera.Label() + "--color has no effect on a monochrome camera\n";
  }
  if (options.color && !device.SetColorMode(*options.color)) {
    throw Failure(std::string("the camera refused to switch colour mode ") + (*options.color ? "on" : "off"));
  }
  for (const ControlSetting& setting : options.settings) {
    ApplyControlSetting(setting, device, options.color.value_or(false), wants_notices);
  }
}

BBaseAoi::Kind PictureKind(const Options& options, const BImagingDevice& device) {
  return options.kind.value_or(device.IsColor() ? BBaseAoi::eRgb : BBaseAoi::eMono8);
}

const char* NameOf(BBaseAoi::Kind kind) { return kind == BBaseAoi::eRgb ? "rgb" : "mono"; }

}  // namespace Kelcam
