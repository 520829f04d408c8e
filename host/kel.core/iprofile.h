// iprofile.h
// What a driver reads from and writes to the host's settings.
#pragma once

#include "kel_core_api.h"
#include "wstring.h"

// Keyed texts and what they mean as numbers. Every read reports whether the key is there with a usable value. When the
// key is missing, or its text is no value of the wanted kind or range, the read gives the default and returns false; in
// the second case the profile also notes a complaint that a host can show. Nothing here throws, except std::bad_alloc.
// [host thread]
class KEL_CORE_API IProfile {
 public:
  // The range of whole numbers where nothing narrower holds.
  static constexpr int kMinInt = -2147483645;
  static constexpr int kMaxInt = 2147483645;

  virtual ~IProfile();

  // The key's text; may be empty.
  virtual bool ReadString(const WString& key, WString& value, const WString& default_value = {}) const = 0;
  // A whole decimal number from min to max, both included.
  virtual bool ReadInt(const WString& key, int& value, int default_value, int min, int max) const = 0;
  // A finite number with a decimal point, in every locale.
  virtual bool ReadDouble(const WString& key, double& value, double default_value) const = 0;
  // 1, true, yes, on; 0, false, no, off; in any case.
  virtual bool ReadBool(const WString& key, bool& value, bool default_value) const = 0;

  // Gives the key this text and saves it. False, and a complaint, when it cannot be saved; the next read gives the new
  // text all the same, unless no profile could hold it.
  virtual bool Write(const WString& key, const WString& value) = 0;
};
