// profile_integer.h
// How this driver reads the whole numbers of a profile.
#pragma once

#include <optional>

#include "wstring.h"

class IProfile;

// The number behind the key. None when the key is missing or holds no whole number of the range that all drivers read
// with. [host thread]
std::optional<int> ReadInteger(const IProfile& profile, const WString& key);
