// ini_file.cpp
// An ini file of given bytes in a temporary folder of its own.
#include "ini_file.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <fstream>
#include <sstream>

namespace {

// Tests run side by side in processes of their own.
std::filesystem::path FreshFolder() {
  static std::atomic<unsigned> number{0};
  const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
  std::filesystem::path folder =
      std::filesystem::temp_directory_path() / ("kel_ini_" + std::to_string(now) + "_" + std::to_string(++number));
  std::filesystem::create_directories(folder);
  return folder;
}

}  // namespace

IniFile::IniFile(const std::string& bytes, const std::filesystem::path& name) : m_path(FreshFolder() / name) {
  Write(bytes);
}

IniFile::~IniFile() {
  std::error_code ignored;
  std::filesystem::remove_all(Folder(), ignored);
}

WString IniFile::Name() const { return WideName(m_path); }

std::string IniFile::Bytes() const { return BytesOf(m_path); }

void IniFile::Write(const std::string& bytes) const {
  std::ofstream(m_path, std::ios::binary | std::ios::trunc) << bytes;
}

std::vector<std::string> IniFile::Neighbours() const {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(Folder()))
    names.push_back(entry.path().filename().string());
  std::sort(names.begin(), names.end());
  return names;
}

WString WideName(const std::filesystem::path& path) {
  const std::u8string utf8 = path.u8string();
  return ToWString(BString(std::string(utf8.begin(), utf8.end())));
}

std::string BytesOf(const std::filesystem::path& path) {
  std::ostringstream bytes;
  bytes << std::ifstream(path, std::ios::binary).rdbuf();
  return bytes.str();
}
