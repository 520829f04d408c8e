// wstring.cpp
// UTF-8 from and to wide text.
#include "wstring.h"

#include <cstdint>

namespace {

constexpr char32_t kReplacement = 0xFFFD;
constexpr char32_t kLargestCodePoint = 0x10FFFF;
constexpr bool kWideIsUtf16 = sizeof(wchar_t) == 2;

bool IsHighSurrogate(char32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool IsLowSurrogate(char32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

void AppendWide(std::wstring& out, char32_t code_point) {
  if (kWideIsUtf16 && code_point > 0xFFFF) {
    out += static_cast<wchar_t>(0xD800 + ((code_point - 0x10000) >> 10));
    out += static_cast<wchar_t>(0xDC00 + ((code_point - 0x10000) & 0x3FF));
  } else {
    out += static_cast<wchar_t>(code_point);
  }
}

void AppendUtf8(std::string& out, char32_t code_point) {
  const auto continuation = [&](int shift) { out += static_cast<char>(0x80 | ((code_point >> shift) & 0x3F)); };
  if (code_point < 0x80) {
    out += static_cast<char>(code_point);
  } else if (code_point < 0x800) {
    out += static_cast<char>(0xC0 | (code_point >> 6));
    continuation(0);
  } else if (code_point < 0x10000) {
    out += static_cast<char>(0xE0 | (code_point >> 12));
    continuation(6);
    continuation(0);
  } else {
    out += static_cast<char>(0xF0 | (code_point >> 18));
    continuation(12);
    continuation(6);
    continuation(0);
  }
}

// What may follow a first byte: how many more bytes there are, and the range of the first of them, which is what keeps
// out needlessly long forms, surrogates and values beyond Unicode.
struct Sequence {
  int following;
  std::uint8_t second_min;
  std::uint8_t second_max;
};

Sequence SequenceOf(std::uint8_t first) {
  if (first < 0x80) return {0, 0, 0};
  if (first >= 0xC2 && first <= 0xDF) return {1, 0x80, 0xBF};
  if (first == 0xE0) return {2, 0xA0, 0xBF};
  if (first == 0xED) return {2, 0x80, 0x9F};
  if (first >= 0xE1 && first <= 0xEF) return {2, 0x80, 0xBF};
  if (first == 0xF0) return {3, 0x90, 0xBF};
  if (first >= 0xF1 && first <= 0xF3) return {3, 0x80, 0xBF};
  if (first == 0xF4) return {3, 0x80, 0x8F};
  return {-1, 0, 0};
}

// The code point at `at`, which moves behind it, or behind the bytes that began one and broke off.
char32_t NextFromUtf8(const std::string& text, std::size_t& at) {
  const auto first = static_cast<std::uint8_t>(text[at++]);
  const Sequence sequence = SequenceOf(first);
  if (sequence.following < 0) return kReplacement;
  if (sequence.following == 0) return first;
  char32_t code_point = first & (0x3F >> sequence.following);
  for (int i = 0; i < sequence.following; ++i, ++at) {
    if (at == text.size()) return kReplacement;
    const auto byte = static_cast<std::uint8_t>(text[at]);
    const std::uint8_t min = i == 0 ? sequence.second_min : 0x80;
    const std::uint8_t max = i == 0 ? sequence.second_max : 0xBF;
    if (byte < min || byte > max) return kReplacement;
    code_point = (code_point << 6) | (byte & 0x3F);
  }
  return code_point;
}

char32_t NextFromWide(const std::wstring& text, std::size_t& at) {
  const auto unit = static_cast<char32_t>(text[at++]);
  if (kWideIsUtf16 && IsHighSurrogate(unit) && at < text.size()) {
    const auto low = static_cast<char32_t>(text[at]);
    if (IsLowSurrogate(low)) {
      ++at;
      return 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00);
    }
  }
  if (IsHighSurrogate(unit) || IsLowSurrogate(unit) || unit > kLargestCodePoint) return kReplacement;
  return unit;
}

}  // namespace

WString ToWString(const char* utf8) { return ToWString(BString(utf8)); }

WString ToWString(const BString& utf8) {
  std::wstring out;
  out.reserve(utf8.Length());
  for (std::size_t at = 0; at < utf8.Length();) AppendWide(out, NextFromUtf8(utf8.Str(), at));
  return out;
}

BString ToBString(const WString& text) {
  std::string out;
  out.reserve(text.Length());
  for (std::size_t at = 0; at < text.Length();) AppendUtf8(out, NextFromWide(text.Str(), at));
  return out;
}
