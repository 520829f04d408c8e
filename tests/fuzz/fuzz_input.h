// fuzz_input.h
// Takes the bytes of a fuzzer apart: numbers, flags and texts, in the order in which a target asks for them.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace Fuzz {

// Ends a text within an input. It occurs in no UTF-8 text.
constexpr std::uint8_t kSeparator = 0xFF;

// Every read of an empty input gives zero, or the smallest number that was asked for.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : m_rest(data, size) {}

  bool IsEmpty() const { return m_rest.empty(); }

  std::uint8_t Byte() {
    if (m_rest.empty()) return 0;
    const std::uint8_t byte = m_rest.front();
    m_rest = m_rest.subspan(1);
    return byte;
  }

  bool Flag() { return (Byte() & 1) != 0; }

  // From min to max, both included. One byte where that suffices: then `min` is the byte 0, or the letter or digit '0'.
  int Number(int min, int max) {
    const int choices = max - min + 1;
    int value = Byte();
    if (choices > 256) value = value * 256 + Byte();
    return min + (value >= '0' && choices <= 10 ? value - '0' : value) % choices;
  }

  std::uint32_t Bits32() {
    std::uint32_t value = 0;
    for (int i = 0; i < 4; ++i) value = value << 8U | Byte();
    return value;
  }

  // Up to the next separator, which is taken, too.
  std::string Text() {
    const auto end = std::find(m_rest.begin(), m_rest.end(), kSeparator);
    std::string text(m_rest.begin(), end);
    m_rest = m_rest.subspan(std::min(text.size() + 1, m_rest.size()));
    return text;
  }

  std::string Rest() {
    std::string text(m_rest.begin(), m_rest.end());
    m_rest = {};
    return text;
  }

 private:
  std::span<const std::uint8_t> m_rest;
};

// Ends the program where something is not as it was promised: that is what a fuzzer looks for.
inline void Expect(bool holds, const std::string& promise) {
  if (holds) return;
  std::fprintf(stderr, "broken promise: %s\n", promise.c_str());
  std::abort();
}

}  // namespace Fuzz
