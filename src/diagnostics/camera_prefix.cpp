// camera_prefix.cpp
// How the title of a device-bound message begins.
#include "diagnostics/camera_prefix.h"

#include "diagnostics/platform.h"

WString CameraPrefix(const WString& identifier) {
  const wchar_t last = identifier.IsEmpty() ? L' ' : identifier.Str().back();
  return WString::Format(L"Camera %c (%s) : Thread ID = %lu : ", last, identifier, CurrentThreadId());
}
