// profile_check.h
// What is wrong with a profile, without its camera.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace Kelcam {

struct ProfileFinding {
  enum Kind { kUnknownKey, kBelowSection, kValue, kMissing };

  Kind kind;
  std::size_t line;  // from 1; 0: the file as a whole
  std::string key;
  std::string text;     // a sentence about the key
  std::string nearest;  // of an unknown key: the one that may be meant

  // "camera.ini, line 3: SHUTER is ..."
  std::string Sentence(const std::string& file) const;
};

// In the order of the file's lines. Throws BError for a file that cannot be read or is malformed.
std::vector<ProfileFinding> FindingsIn(const std::string& file);

// Notices about the keys in the file that no driver reads: those that are unknown, and known ones below a section.
void PrintUnusedKeys(const std::string& file);

}  // namespace Kelcam
