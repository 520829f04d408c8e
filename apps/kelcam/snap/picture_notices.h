// picture_notices.h
// Where a picture will not be what the profile and the options ask for.
#pragma once

#include "commands/command_line.h"
#include "device/camera_session.h"

namespace Kelcam {

// Notices about the pictures of snap, before the first of them: those that are not turned or cut, that are grey or in
// colours against an option, that show another part of the sensor. Each names its key or option and what to do.
void PrintPictureNotices(const Options& options, const CameraSession& camera);

}  // namespace Kelcam
