// control/environment.cpp
// The environment variable and the file that it names: where operating systems differ.
#include "control/environment.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace simulator {
namespace {

std::filesystem::path PathOf(const std::string& utf8) {
  return std::filesystem::path(reinterpret_cast<const char8_t*>(utf8.c_str()));
}

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
  std::ifstream file(PathOf(utf8_path), std::ios::binary);
  std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  if (!file.is_open() || file.bad()) throw std::runtime_error(utf8_path + ": cannot be read");
  return text;
}

}  // namespace simulator
