// system_probe.h
// Measures what a check says of the computer, the library and its cameras.
#pragma once

#include "check/known_facts.h"
#include "library/module.h"
#include "messages/message_log.h"

namespace Kelcam {

// What is known without asking a camera.
SystemFacts SystemFactsNow();
// Which library answers the module.
std::optional<LibraryFacts> LibraryFactsOf(const Module& module);

// Starts the camera system and lists the cameras. No camera may be open.
void ListCameras(const Module& module, MessageLog& log, KnownFacts& known);

}  // namespace Kelcam
