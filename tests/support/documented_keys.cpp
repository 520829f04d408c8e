// documented_keys.cpp
// The profile keys that the profile's document lists.
#include "support/documented_keys.h"

#include <fstream>
#include <regex>
#include <sstream>

std::set<std::string> DocumentedKeys(const std::filesystem::path& document) {
  std::ostringstream bytes;
  bytes << std::ifstream(document, std::ios::binary).rdbuf();
  const std::string text = bytes.str();
  const std::regex row("(^|\n)\\| (`[^|]*)\\|");
  const std::regex name("`([^`]+)`");
  std::set<std::string> keys;
  for (std::sregex_iterator it(text.begin(), text.end(), row), end; it != end; ++it) {
    const std::string cell = (*it)[2];
    for (std::sregex_iterator key(cell.begin(), cell.end(), name); key != end; ++key) keys.insert((*key)[1]);
  }
  return keys;
}
