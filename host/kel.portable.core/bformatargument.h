// bformatargument.h
// One argument of BBasicString::Format: a value that knows its own type.
#pragma once

#include <string>
#include <string_view>
#include <variant>

template <class Char>
class BBasicString;

// Made implicitly from what a caller of Format passes. Texts are borrowed for the length of the call; a null text
// prints as empty. Types without a constructor here (other pointers, the other kind of characters' texts) do not
// compile.
template <class Char>
class BFormatArgument {
 public:
  using View = std::basic_string_view<Char>;
  using Value = std::variant<Char, long long, unsigned long long, double, View>;

  BFormatArgument(Char character) : m_value(character) {}
  BFormatArgument(int value) : m_value(static_cast<long long>(value)) {}
  BFormatArgument(long value) : m_value(static_cast<long long>(value)) {}
  BFormatArgument(long long value) : m_value(value) {}
  BFormatArgument(unsigned value) : m_value(static_cast<unsigned long long>(value)) {}
  BFormatArgument(unsigned long value) : m_value(static_cast<unsigned long long>(value)) {}
  BFormatArgument(unsigned long long value) : m_value(value) {}
  BFormatArgument(double value) : m_value(value) {}
  BFormatArgument(const Char* text) : m_value(text ? View(text) : View()) {}
  BFormatArgument(const std::basic_string<Char>& text) : m_value(View(text)) {}
  BFormatArgument(const BBasicString<Char>& text);

  const Value& Get() const { return m_value; }

 private:
  Value m_value;
};
