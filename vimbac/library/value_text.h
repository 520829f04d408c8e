// library/value_text.h
// Values as text, in the record of calls, in faults and in messages.
#pragma once

#include <cstdint>
#include <string>

namespace VimbaLibrary {

// Integers in decimal, doubles as the shortest text that reads back as the same value.
std::string ValueText(std::int64_t value);
std::string ValueText(double value);

// In quotes, with quotes, backslashes and control characters escaped; null for a null pointer.
std::string QuotedText(const char* text);

}  // namespace VimbaLibrary
