// camera_source.h
// What a camera is opened from, the first time and again.
#pragma once

#include <cstddef>
#include <string>

#include "bcamprofile.h"
#include "bsmartref.h"
#include "device/camera_choice.h"
#include "library/module.h"
#include "messages/message_log.h"

namespace Kelcam {

// Sessions of one camera share it, one after the other. [the thread that owns the camera]
struct CameraSource {
  const Module& module;
  MessageLog& log;
  BSmartRef<BCamProfile> profile;
  std::string title;                   // what names the camera in a failure
  std::string label;                   // with what a line begins until the identifier is known; empty: nothing
  std::size_t complaints_printed = 0;  // of the profile
};

// Of --profile or --camera: the word is looked up once, so a number in the list means the same camera later. Throws
// Failure for a camera that there is not.
CameraSource SourceOf(const Module& module, MessageLog& log, const CameraChoice& choice);

// Whether the camera can be seen, which takes less time than trying to open it. True, too, where only that shows it.
// Throws Failure when the library does not start.
bool IsThere(const CameraSource& source);

}  // namespace Kelcam
