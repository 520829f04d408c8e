// file_of_bytes.h
// A file with a fuzzer's bytes, in a temporary folder of its own.
#pragma once

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "wstring.h"

namespace Fuzz {

// One for the program: each input overwrites it.
class FileOfBytes {
 public:
  FileOfBytes() : m_folder(FreshFolder()), m_path(m_folder / "camera.ini") {}
  ~FileOfBytes() {
    std::error_code ignored;
    std::filesystem::remove_all(m_folder, ignored);
  }
  FileOfBytes(const FileOfBytes&) = delete;
  FileOfBytes& operator=(const FileOfBytes&) = delete;

  void Write(const std::string& bytes) const {
    std::ofstream(m_path, std::ios::binary | std::ios::trunc)
        .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  }
  std::string Bytes() const {
    std::ifstream stream(m_path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }
  WString Name() const { return WString(m_path.wstring()); }

 private:
  static std::filesystem::path FreshFolder() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
    std::filesystem::path folder = std::filesystem::temp_directory_path() / ("kel_fuzz_" + std::to_string(now));
    std::filesystem::create_directories(folder);
    return folder;
  }

  std::filesystem::path m_folder;
  std::filesystem::path m_path;
};

}  // namespace Fuzz
