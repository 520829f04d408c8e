// table_place.h
// Where a virtual operation stands in its class's table, as the compilers of this project lay it out.
#pragma once

#include <cstddef>
#include <cstring>

// On x86-64, g++, clang and MinGW-w64 keep one more than the byte offset into the table as a virtual member pointer's
// first word. A destructor takes two places.
template <class Member>
std::size_t TablePlace(Member member) {
  std::size_t word = 0;
  static_assert(sizeof member >= sizeof word);
  std::memcpy(&word, &member, sizeof word);
  return (word - 1) / sizeof(void*);
}
