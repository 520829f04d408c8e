// camera/value_text.h
// Values as the simulator's records and faults write them.
#pragma once

#include <cstdint>
#include <string>

namespace Simulator {

// Integers are decimal, doubles the shortest text that reads back as the same value.
std::string ValueText(std::int64_t value);
std::string ValueText(double value);

// In quotes, with quotes, backslashes and control characters escaped; null for a null pointer.
std::string QuotedText(const char* text);

}  // namespace Simulator
