// camera/drawing.h
// Draws the pattern that the tests check into the frames of a camera of Aravis.
#pragma once

#include <arv.h>

// An ArvFakeCameraFillPattern. Frames of other formats than Mono8, BayerRG8 and RGB8 stay as they are. [the camera's
// thread]
void DrawPattern(ArvBuffer* frame, void* data, guint32 exposure_us, guint32 gain, ArvPixelFormat format);
