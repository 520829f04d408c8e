// utf8.h
// The program's texts are UTF-8; the host's are wide, and file names are the system's.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "wstring.h"

namespace Kelcam {

inline std::string Utf8(const WString& text) { return ToBString(text).Str(); }

inline std::string Utf8(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

inline WString Wide(std::string_view utf8) { return ToWString(std::string(utf8).c_str()); }

inline std::filesystem::path Path(std::string_view utf8) { return std::u8string(utf8.begin(), utf8.end()); }

}  // namespace Kelcam
