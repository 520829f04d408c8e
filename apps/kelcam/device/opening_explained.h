// opening_explained.h
// Why a camera could not be opened, and what to do next.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "base/failure.h"
#include "bcamprofile.h"
#include "device/named_camera.h"
#include "messages/driver_messages.h"
#include "messages/message_memory.h"

namespace Kelcam {

// What a profile asks for, as far as it can keep a camera from being opened.
struct ProfileFacts {
  std::string api;  // empty: the head of the file has none
  bool has_api_in_section = false;
  bool is_by_serial = false;  // Init.Method = Serial, with a serial number
  std::string serial;         // Serial.Number
  std::string camera_id;      // Camera_Identifier
  std::string address;        // IP
  bool has_bayer_type = false;
  std::string last_ident;  // the camera that was opened last, as the module lists it
  std::string last_id;     // the id of that camera
};

ProfileFacts FactsOf(const BCamProfile& profile);

// What is known of a failed opening.
struct OpeningEvidence {
  Lines lines;  // the driver's, since the opening began
  ProfileFacts profile;
  std::optional<Lines> attached = {};  // the cameras that the module lists; none: not asked
  CameraAnswer at_address = CameraAnswer::kUnknown;
  CameraAnswer with_id = CameraAnswer::kUnknown;

  // Whether the driver found no camera and it matters which are attached.
  bool IsWithoutCamera() const;
  // Whether it has tried the profile's address, too, or alone.
  bool HasTriedAddress() const;
  bool HasTriedId() const;
};

// The lines that failed, the cause and the next step; no cause where the lines fit none.
Reason ExplainOpening(const OpeningEvidence& evidence);

// What opening or listing ends with, with its reason. Where that is not known, with the driver's last messages.
Fault OpeningFault(std::string sentence, const OpeningEvidence& evidence, const MessageMemory& messages);

// The next step after an error that the opening threw; empty where the error says it all.
Reason ExplainOpeningError(int code);

}  // namespace Kelcam
