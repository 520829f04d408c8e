// profile_integer.cpp
// How this driver reads the whole numbers of a profile.
#include "profile/profile_integer.h"

#include "iprofile.h"

std::optional<int> ReadInteger(const IProfile& profile, const WString& key) {
  int value = 0;
  if (!profile.ReadInt(key, value, 0, IProfile::kMinInt, IProfile::kMaxInt)) return std::nullopt;
  return value;
}
