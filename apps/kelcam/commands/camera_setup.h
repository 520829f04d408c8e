// camera_setup.h
// What snap and live ask of a camera before the first image.
#pragma once

#include "commands/command_line.h"
#include "device/camera_session.h"

namespace Kelcam {

enum class SettingNotices { kPrinted, kSilent };

// Colour mode first, then the controls in the order of the command line: switching the mode brings that mode's white
// balance.
void SetUpCamera(const Options& options, const CameraSession& camera, SettingNotices notices);

// The kind of picture asked for, else the camera's own.
BBaseAoi::Kind PictureKind(const Options& options, const BImagingDevice& device);
const char* NameOf(BBaseAoi::Kind kind);

}  // namespace Kelcam
