// bbasicstring.h
// The host's text type, written once for wide (WString) and narrow (BString) characters.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "bformatargument.h"
#include "kel_portable_core_api.h"

// A value type that owns its characters; they may include zeros. A null pointer given as text counts as the empty text,
// everywhere. "Without regard to case" means the letters A to Z, whatever locale the process is in. An object may be
// read by several threads at once, or used by one that changes it. The larger members are compiled in this library
// only, for char and wchar_t.
template <class Char>
class KEL_PORTABLE_CORE_TEMPLATE BBasicString {
 public:
  using View = std::basic_string_view<Char>;

  BBasicString() = default;
  BBasicString(const Char* text) : m_text(ViewOf(text)) {}
  BBasicString(std::basic_string<Char> text) : m_text(std::move(text)) {}
  explicit BBasicString(View text) : m_text(text) {}

  // Zero-terminated; valid until the text changes or goes.
  const Char* c_str() const { return m_text.c_str(); }
  const std::basic_string<Char>& Str() const { return m_text; }
  std::size_t Length() const { return m_text.size(); }
  bool IsEmpty() const { return m_text.empty(); }

  BBasicString& operator+=(const BBasicString& tail) {
    m_text += tail.m_text;
    return *this;
  }
  friend BBasicString operator+(BBasicString head, const BBasicString& tail) { return std::move(head += tail); }

  // By character value; the order serves as that of a map's keys, it is no dictionary's.
  friend bool operator==(const BBasicString& a, const BBasicString& b) { return a.m_text == b.m_text; }
  friend bool operator!=(const BBasicString& a, const BBasicString& b) { return a.m_text != b.m_text; }
  friend bool operator<(const BBasicString& a, const BBasicString& b) { return a.m_text < b.m_text; }
  friend bool operator==(const BBasicString& a, const Char* b) { return a.m_text == ViewOf(b); }
  friend bool operator!=(const BBasicString& a, const Char* b) { return a.m_text != ViewOf(b); }
  friend bool operator==(const Char* a, const BBasicString& b) { return ViewOf(a) == b.m_text; }
  friend bool operator!=(const Char* a, const BBasicString& b) { return ViewOf(a) != b.m_text; }

  // The same text without regard to case.
  KEL_PORTABLE_CORE_API bool IEquals(const BBasicString& other) const;
  // Whether `part` occurs in this text, without regard to case. An empty part never does.
  KEL_PORTABLE_CORE_API bool IIncludes(const BBasicString& part) const;

  // Drops what follows the first (else the last) occurrence of `mark` and keeps the mark itself. Without an occurrence,
  // and with an empty mark, the text stays as it is.
  KEL_PORTABLE_CORE_API BBasicString& CutAfter(const BBasicString& mark, bool first);
  // Drops the characters at the end that occur in `chars`.
  KEL_PORTABLE_CORE_API BBasicString& EraseTrailingChars(const BBasicString& chars);
  // Replaces every occurrence of `what`, from left to right; what `with` brings in is not looked at again. An empty
  // `what` occurs nowhere.
  KEL_PORTABLE_CORE_API BBasicString& Replace(const BBasicString& what, const BBasicString& with);

  // printf's %s, %c, %d, %i, %u, %x, %f and %%, each with flags '0' and '-', width and precision. Length letters are
  // read over: an argument's own type decides. %d, %i and %u print any whole number by its value, %x prints a negative
  // one in 64 bits. %f takes a floating value (6 decimals by default; the decimal separator is a point in
  // every locale), %s a text, %c a character or a whole number that is one. An argument that does not fit, one too few,
  // and a conversion other than these print "%?". Texts that come from elsewhere (a camera, a file) belong among the
  // arguments, where a '%' in them means nothing.
  template <class... Arguments>
  static BBasicString Format(const Char* format, const Arguments&... arguments) {
    const BFormatArgument<Char> list[] = {BFormatArgument<Char>(arguments)..., BFormatArgument<Char>(0)};
    return FormatList(format, list, sizeof...(arguments));
  }

 private:
  static View ViewOf(const Char* text) { return text ? View(text) : View(); }
  KEL_PORTABLE_CORE_API static BBasicString FormatList(const Char* format, const BFormatArgument<Char>* arguments,
                                                       std::size_t count);

  std::basic_string<Char> m_text;
};

template <class Char>
BFormatArgument<Char>::BFormatArgument(const BBasicString<Char>& text) : m_value(View(text.Str())) {}
