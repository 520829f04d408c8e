// random_cases.h
// Tests of a rule on many random cases: where their chance comes from, and how it is repeated.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <string>

#include "support/random.h"

// The seed is 1, or what the environment variable KEL_SEED holds. Each test begins with it and prints it; what fails
// names it.
struct RandomCases : testing::Test {
  const std::uint64_t seed = SeedOfEnvironment();
  Random random{seed};
  const testing::ScopedTrace trace{__FILE__, __LINE__, "again with KEL_SEED=" + std::to_string(seed)};

  RandomCases() { std::cout << "KEL_SEED=" << seed << std::endl; }

  static std::uint64_t SeedOfEnvironment() {
    const char* const text = std::getenv("KEL_SEED");
    return text ? std::strtoull(text, nullptr, 10) : 1;
  }
};
