// library/value_text.cpp
// Values as text, in the record of calls, in faults and in messages.
#include "library/value_text.h"

#include <array>
#include <charconv>

namespace VimbaLibrary {
namespace {

template <class Value>
std::string Shortest(Value value) {
  std::array<char, 400> text;
  const auto end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
  return {text.data(), end};
}

}  // namespace

std::string ValueText(std::int64_t value) { return Shortest(value); }

std::string ValueText(double value) { return Shortest(value); }

std::string QuotedText(const char* text) {
  static constexpr char kHex[] = "0123456789abcdef";
  if (!text) return "null";
  std::string quoted = "\"";
  for (; *text; ++text) {
    const auto code = static_cast<unsigned char>(*text);
    if (code < 0x20) {
      quoted += {'\\', 'x', kHex[code / 16], kHex[code % 16]};
      continue;
    }
    if (*text == '"' || *text == '\\') quoted += '\\';
    quoted += *text;
  }
  return quoted + '"';
}

}  // namespace VimbaLibrary
