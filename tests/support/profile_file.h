// profile_file.h
// A camera profile in a temporary file, written line by line.
#pragma once

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "bcamprofile.h"
#include "bsmartref.h"

// ProfileFile().Key("API", "Vimba").Key("Init.Method", "Serial").Open(); the file goes with the object.
class ProfileFile {
 public:
  ProfileFile();  // with the line API=Vimba
  ~ProfileFile();
  ProfileFile(const ProfileFile&) = delete;
  ProfileFile& operator=(const ProfileFile&) = delete;

  ProfileFile& Key(const std::string& key, const std::string& value);  // replaces an earlier line of that key
  ProfileFile& Without(const std::string& key);
  BSmartRef<BCamProfile> Open() const;

  std::string Text() const;  // as it is on disk now
  const std::filesystem::path& Path() const { return m_path; }

 private:
  void Save() const;

  std::filesystem::path m_path;
  std::vector<std::pair<std::string, std::string>> m_keys;
};
