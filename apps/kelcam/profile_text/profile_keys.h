// profile_keys.h
// Every key of a camera profile: what stands for a value, and what the key is for.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Kelcam {

enum class ValueType { kText, kWholeNumber, kNumber, kYesOrNo };

struct ProfileKeyRow {
  const char* group;  // a heading of docs/profile.md
  const char* name;   // as that document writes it
  ValueType type;
  const char* choices;  // the words or numbers that mean something, with a | between them; empty: any
  // Of numbers; min above max: any.
  double min;
  double max;
  const char* meaning;  // with its unit
};

inline constexpr const char* kIdentityGroup = "Which camera";

std::span<const ProfileKeyRow> ProfileKeys();

// Without regard to the case of A to Z; null for a key that no driver reads.
const ProfileKeyRow* FindProfileKey(std::string_view name);

// What is wrong with a value; empty: nothing.
std::string WhyNotValue(const ProfileKeyRow& key, const std::string& value);

std::vector<std::string> ProfileKeyNames();

}  // namespace Kelcam
