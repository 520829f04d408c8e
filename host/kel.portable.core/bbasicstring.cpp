// bbasicstring.cpp
// The operations of the host's text and its formatting.
#include "bbasicstring.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <system_error>

namespace {

template <class Char>
Char Lower(Char character) {
  return character >= 'A' && character <= 'Z' ? static_cast<Char>(character - 'A' + 'a') : character;
}

template <class Char>
bool SameLetter(Char a, Char b) {
  return Lower(a) == Lower(b);
}

// No field is wider than this, nor has more decimals: a number in a format is no way to ask for gigabytes.
constexpr std::size_t kLargestField = 1000;
constexpr std::size_t kDefaultDecimals = 6;

// One conversion of a format: what is between '%' and its letter, and the letter.
template <class Char>
struct Conversion {
  bool left = false;
  bool zeros = false;
  std::size_t width = 0;
  std::optional<std::size_t> precision;
  Char letter = 0;
};

template <class Char>
bool IsOneOf(Char character, const char* set) {
  return std::any_of(set, set + std::char_traits<char>::length(set),
                     [character](char member) { return character == static_cast<Char>(member); });
}

template <class Char>
std::size_t ReadNumber(const Char*& at) {
  std::size_t number = 0;
  for (; *at >= '0' && *at <= '9'; ++at) {
    number = std::min(kLargestField, number * 10 + static_cast<std::size_t>(*at - '0'));
  }
  return number;
}

// `at` is behind the '%' and moves behind the letter, or stays at the end of the format.
template <class Char>
Conversion<Char> ReadConversion(const Char*& at) {
  Conversion<Char> conversion;
  for (; *at == '0' || *at == '-'; ++at) (*at == '0' ? conversion.zeros : conversion.left) = true;
  conversion.width = ReadNumber(at);
  if (*at == '.') conversion.precision = ReadNumber(++at);
  while (IsOneOf(*at, "hlLqjzt")) ++at;
  if (*at) conversion.letter = *at++;
  return conversion;
}

template <class Char>
using Text = std::basic_string<Char>;

// Digits, signs, points and the letters of "inf" and "nan": the same in every alphabet.
template <class Char>
Text<Char> Widen(const char* begin, const char* end) {
  return Text<Char>(begin, end);
}

template <class Char, class Number>
Text<Char> Digits(Number number, int base) {
  char buffer[32];
  return Widen<Char>(buffer, std::to_chars(std::begin(buffer), std::end(buffer), number, base).ptr);
}

template <class Char>
std::optional<Text<Char>> WholeNumber(const Conversion<Char>& conversion, const BFormatArgument<Char>& argument) {
  const bool hexadecimal = conversion.letter == 'x';
  if (const auto* value = std::get_if<long long>(&argument.Get())) {
    if (hexadecimal) return Digits<Char>(static_cast<unsigned long long>(*value), 16);
    return Digits<Char>(*value, 10);
  }
  if (const auto* value = std::get_if<unsigned long long>(&argument.Get())) {
    return Digits<Char>(*value, hexadecimal ? 16 : 10);
  }
  return std::nullopt;
}

template <class Char>
std::optional<Text<Char>> FloatingNumber(const Conversion<Char>& conversion, const BFormatArgument<Char>& argument) {
  const auto* value = std::get_if<double>(&argument.Get());
  if (!value) return std::nullopt;
  // A double's digits before the point, with its sign.
  constexpr std::size_t kLongestWholePart = 320;
  char buffer[kLongestWholePart + kLargestField];
  const auto decimals = static_cast<int>(conversion.precision.value_or(kDefaultDecimals));
  const auto result = std::to_chars(std::begin(buffer), std::end(buffer), *value, std::chars_format::fixed, decimals);
  return Widen<Char>(buffer, result.ptr);
}

template <class Char>
std::optional<Text<Char>> Character(const BFormatArgument<Char>& argument) {
  if (const auto* character = std::get_if<Char>(&argument.Get())) return Text<Char>(1, *character);
  if (const auto* code = std::get_if<long long>(&argument.Get())) {
    const auto character = static_cast<Char>(*code);
    if (static_cast<long long>(character) == *code) return Text<Char>(1, character);
  }
  return std::nullopt;
}

// Zeros go between a number's sign and its digits.
template <class Char>
void FillWithZeros(Text<Char>& number, std::size_t width) {
  const std::size_t sign = !number.empty() && number[0] == '-' ? 1 : 0;
  if (number.size() < width) number.insert(sign, width - number.size(), Char('0'));
}

template <class Char>
std::optional<Text<Char>> Convert(const Conversion<Char>& conversion, const BFormatArgument<Char>& argument) {
  if (conversion.letter == 'c') return Character(argument);
  if (conversion.letter == 's') {
    const auto* text = std::get_if<std::basic_string_view<Char>>(&argument.Get());
    if (!text) return std::nullopt;
    return Text<Char>(text->substr(0, conversion.precision.value_or(text->size())));
  }
  const bool floating = conversion.letter == 'f';
  if (!floating && !IsOneOf(conversion.letter, "diux")) return std::nullopt;
  auto number = floating ? FloatingNumber(conversion, argument) : WholeNumber(conversion, argument);
  if (!number) return std::nullopt;
  if (!floating && conversion.precision) {
    const bool negative = number->front() == '-';
    FillWithZeros(*number, *conversion.precision + (negative ? 1 : 0));
  }
  // As in printf, zeros yield to '-', and to a whole number's own least count of digits.
  const bool zeros = conversion.zeros && !conversion.left && (floating || !conversion.precision);
  if (zeros) FillWithZeros(*number, conversion.width);
  return number;
}

template <class Char>
void AppendPadded(Text<Char>& out, const Text<Char>& field, const Conversion<Char>& conversion) {
  const std::size_t blanks = conversion.width > field.size() ? conversion.width - field.size() : 0;
  if (!conversion.left) out.append(blanks, Char(' '));
  out += field;
  if (conversion.left) out.append(blanks, Char(' '));
}

template <class Char>
constexpr Char kNotConvertible[] = {'%', '?', 0};

}  // namespace

template <class Char>
bool BBasicString<Char>::IEquals(const BBasicString& other) const {
  return std::equal(m_text.begin(), m_text.end(), other.m_text.begin(), other.m_text.end(), SameLetter<Char>);
}

template <class Char>
bool BBasicString<Char>::IIncludes(const BBasicString& part) const {
  if (part.IsEmpty()) return false;
  const auto& wanted = part.m_text;
  return std::search(m_text.begin(), m_text.end(), wanted.begin(), wanted.end(), SameLetter<Char>) != m_text.end();
}

template <class Char>
BBasicString<Char>& BBasicString<Char>::CutAfter(const BBasicString& mark, bool first) {
  if (mark.IsEmpty()) return *this;
  const std::size_t at = first ? m_text.find(mark.m_text) : m_text.rfind(mark.m_text);
  if (at != std::basic_string<Char>::npos) m_text.resize(at + mark.Length());
  return *this;
}

template <class Char>
BBasicString<Char>& BBasicString<Char>::EraseTrailingChars(const BBasicString& chars) {
  const std::size_t last = m_text.find_last_not_of(chars.m_text);
  m_text.resize(last == std::basic_string<Char>::npos ? 0 : last + 1);
  return *this;
}

template <class Char>
BBasicString<Char>& BBasicString<Char>::Replace(const BBasicString& what, const BBasicString& with) {
  if (what.IsEmpty()) return *this;
  std::basic_string<Char> out;
  std::size_t from = 0;
  for (std::size_t at; (at = m_text.find(what.m_text, from)) != std::basic_string<Char>::npos;) {
    out.append(m_text, from, at - from).append(with.m_text);
    from = at + what.Length();
  }
  out.append(m_text, from);
  m_text = std::move(out);
  return *this;
}

template <class Char>
BBasicString<Char> BBasicString<Char>::FormatList(const Char* format, const BFormatArgument<Char>* arguments,
                                                  std::size_t count) {
  std::basic_string<Char> out;
  std::size_t next = 0;
  for (const Char* at = format; at && *at;) {
    if (*at != '%') {
      const Char* const run = at;
      while (*at && *at != '%') ++at;
      out.append(run, at);
      continue;
    }
    const Conversion<Char> conversion = ReadConversion(++at);
    if (conversion.letter == '%') {
      out += conversion.letter;
      continue;
    }
    const auto field = next < count ? Convert(conversion, arguments[next]) : std::nullopt;
    ++next;
    if (field) {
      AppendPadded(out, *field, conversion);
    } else {
      out += kNotConvertible<Char>;
    }
  }
  return out;
}

template class BBasicString<char>;
template class BBasicString<wchar_t>;
