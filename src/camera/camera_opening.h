// camera_opening.h
// Finding and opening the camera that a profile names.
#pragma once

#include "wstring.h"

class IProfile;
class VimbaCamera;

// Opens the camera that the profile names by serial number, by unique id or by address, with retries, and adopts it.
// False when none of them opens. What is tried is shown; `text` is what the first line shows. The Vimba system is
// started. [host thread]
[[nodiscard]] bool OpenCamera(const IProfile& profile, const WString& text, VimbaCamera& camera);
