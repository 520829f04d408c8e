// control/environment.cpp
// The environment variable and the file that it names: where operating systems differ.
#include "control/environment.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <system_error>

namespace Simulator {
namespace {

std::filesystem::path PathOf(const std::string& utf8) {
  return std::filesystem::path(reinterpret_cast<const char8_t*>(utf8.c_str()));
}

[[noreturn]] void FailToRead(const std::string& utf8_path, const std::error_code& reason) {
  throw std::runtime_error(utf8_path + ": cannot be read: " + reason.message());
}

// Streams do not report why they failed. The system calls beneath them leave the reason in errno.
std::error_code LastError() { return {errno != 0 ? errno : EIO, std::generic_category()}; }

}  // namespace

std::optional<std::string> ConfigurationFile() {
#ifdef _WIN32
  const wchar_t* value = _wgetenv(L"VIMBA_SIM_CONFIG");
  if (!value || !*value) return std::nullopt;
  const std::u8string utf8 = std::filesystem::path(value).u8string();
  return std::string(reinterpret_cast<const char*>(utf8.c_str()));
#else
  const char* value = std::getenv("VIMBA_SIM_CONFIG");
  if (!value || !*value) return std::nullopt;
  return std::string(value);
#endif
}

std::string ReadTextFile(const std::string& utf8_path) {
  const std::filesystem::path path = PathOf(utf8_path);
  std::error_code ignored;
  // Some systems open a folder like a file, others report that the permission is missing.
  if (std::filesystem::is_directory(path, ignored))
    FailToRead(utf8_path, std::make_error_code(std::errc::is_a_directory));
  errno = 0;
  std::ifstream file(path, std::ios::binary);
  if (!file) FailToRead(utf8_path, LastError());
  std::string text;
  std::array<char, 4096> part{};
  do {
    file.read(part.data(), part.size());
    text.append(part.data(), static_cast<std::size_t>(file.gcount()));
  } while (file);
  if (file.bad()) FailToRead(utf8_path, LastError());
  return text;
}

}  // namespace Simulator
