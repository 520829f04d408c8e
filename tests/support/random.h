// random.h
// Chance with a seed: the same on every platform.
#pragma once

#include <cstdint>
#include <random>

class Random {
 public:
  explicit Random(std::uint64_t seed) : m_engine(seed) {}

  // 0 to n - 1. The distributions of the standard library differ from one library to the next.
  int Below(int n) { return static_cast<int>(m_engine() % static_cast<std::uint64_t>(n)); }
  int Between(int least, int most) { return least + Below(most - least + 1); }
  bool OneIn(int n) { return Below(n) == 0; }
  // As Between, of numbers that need 64 bits. The range has fewer than 2^63 numbers.
  std::int64_t BetweenWide(std::int64_t least, std::int64_t most) {
    return least + static_cast<std::int64_t>(m_engine() % (static_cast<std::uint64_t>(most - least) + 1));
  }
  // For somebody else's chance.
  std::uint64_t Seed() { return m_engine(); }

 private:
  std::mt19937_64 m_engine;
};
