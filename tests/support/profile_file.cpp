// profile_file.cpp
// A camera profile in a temporary file, written line by line.
#include "support/profile_file.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <fstream>
#include <sstream>

namespace {

// Tests run side by side in processes of their own.
std::filesystem::path FreshPath() {
  static std::atomic<unsigned> number{0};
  const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
  const std::filesystem::path folder =
      std::filesystem::temp_directory_path() / ("kel_profile_" + std::to_string(now) + "_" + std::to_string(++number));
  std::filesystem::create_directories(folder);
  return folder / "camera.ini";
}

}  // namespace

ProfileFile::ProfileFile() : m_path(FreshPath()) { Key("API", "Vimba"); }

ProfileFile::~ProfileFile() {
  std::error_code ignored;
  std::filesystem::remove_all(m_path.parent_path(), ignored);
}

ProfileFile& ProfileFile::Key(const std::string& key, const std::string& value) {
  Without(key);
  m_keys.emplace_back(key, value);
  Save();
  return *this;
}

ProfileFile& ProfileFile::Without(const std::string& key) {
  std::erase_if(m_keys, [&](const auto& line) { return line.first == key; });
  Save();
  return *this;
}

void ProfileFile::Save() const {
  std::ofstream file(m_path, std::ios::binary | std::ios::trunc);
  for (const auto& [key, value] : m_keys) file << key << "=" << value << "\n";
}

BSmartRef<BCamProfile> ProfileFile::Open() const { return new BCamProfile(WString(m_path.wstring())); }

std::string ProfileFile::Text() const {
  std::ifstream file(m_path, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}
