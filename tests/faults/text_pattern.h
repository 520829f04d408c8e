// text_pattern.h
// Texts with `*` for any part, and several of them apart by `|`.
#pragma once

#include <string_view>

inline bool Fits(std::string_view pattern, std::string_view text) {
  if (pattern.empty()) return text.empty();
  if (pattern.front() != '*') {
    return !text.empty() && pattern.front() == text.front() && Fits(pattern.substr(1), text.substr(1));
  }
  return Fits(pattern.substr(1), text) || (!text.empty() && Fits(pattern, text.substr(1)));
}

inline bool FitsOneOf(std::string_view patterns, std::string_view text) {
  while (true) {
    const std::size_t end = patterns.find('|');
    if (Fits(patterns.substr(0, end), text)) return true;
    if (end == std::string_view::npos) return false;
    patterns.remove_prefix(end + 1);
  }
}
