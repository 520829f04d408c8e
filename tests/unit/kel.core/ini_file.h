// ini_file.h
// An ini file of given bytes in a temporary folder of its own.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "wstring.h"

// The folder goes with the object.
class IniFile {
 public:
  explicit IniFile(const std::string& bytes, const std::filesystem::path& name = "camera.ini");
  ~IniFile();
  IniFile(const IniFile&) = delete;
  IniFile& operator=(const IniFile&) = delete;

  const std::filesystem::path& Path() const { return m_path; }
  WString Name() const;  // as a profile takes it
  std::filesystem::path Folder() const { return m_path.parent_path(); }
  std::string Bytes() const;
  void Write(const std::string& bytes) const;
  // The names of the files in the folder, sorted.
  std::vector<std::string> Neighbours() const;

 private:
  std::filesystem::path m_path;
};

// A path as a profile takes it, in any locale.
WString WideName(const std::filesystem::path& path);

// The bytes of any file.
std::string BytesOf(const std::filesystem::path& path);
