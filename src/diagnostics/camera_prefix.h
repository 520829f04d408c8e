// camera_prefix.h
// How the title of a device-bound message begins.
#pragma once

#include "wstring.h"

// "Camera %c (%s) : Thread ID = %lu : ", with the identifier's last character (a blank when it is empty), the
// identifier and the calling thread. [any thread]
WString CameraPrefix(const WString& identifier);
