// new_profile.h
// The text of a new profile: every key, with the camera's present value.
#pragma once

#include <string>

#include "library/module.h"
#include "messages/message_log.h"

namespace Kelcam {

struct NewProfile {
  std::string camera;  // the identifier of the camera that it is of
  std::string text;
};

// Opens the camera that the word of --camera names, and leaves it as it was. A key that has no effect on this camera,
// or that the driver writes itself, is a comment. Throws Failure when the camera cannot be found or opened.
NewProfile ProfileOfCamera(const std::string& word, const Module& module, MessageLog& log);

}  // namespace Kelcam
