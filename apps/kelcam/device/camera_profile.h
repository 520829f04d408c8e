// camera_profile.h
// The profile by which a module opens a camera: a file, or one made up for a camera that the command line names.
#pragma once

#include <optional>
#include <string>

#include "bcamprofile.h"
#include "bsmartref.h"
#include "device/camera_choice.h"
#include "library/module.h"
#include "library/vimba_session.h"

namespace Kelcam {

// The profile of --profile, or one for the camera of --camera, which is kept in memory: what the driver writes to it is
// gone with it. A colour camera's order of colours is found by trying, and a notice reports it. Throws Failure for a
// camera that there is not.
BSmartRef<BCamProfile> ProfileOf(const CameraChoice& choice, const Module& module);

// What the word of --camera means: an address as it is, else the id of the one attached camera with this serial number,
// id, identifier or place in the list. Searches for up to two seconds. Throws Failure when there is none.
struct NamedCamera {
  std::string id;  // what the library opens it by
  bool is_address = false;
};
NamedCamera FindCamera(const std::string& word, const VimbaSession& session);
// The id of that camera, as far as the library knows it now.
std::optional<std::string> IdOfNamed(const std::string& word, const VimbaSession& session);

// A value of Bayertype: the order of the colours on the sensor. None: no colours, or no raw format. The camera's pixel
// format is as before.
std::optional<std::string> FindBayerOrder(const OpenedCamera& camera);

// An ini line, with quotes around a value that needs them. Throws Failure for a value that no line can hold.
std::string ProfileLine(const std::string& key, const std::string& value);

// A profile with this text that takes what is written to it and saves it nowhere.
BSmartRef<BCamProfile> ProfileInMemory(const std::string& text);

}  // namespace Kelcam
