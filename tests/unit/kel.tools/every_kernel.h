// every_kernel.h
// Tests that run once for each vector unit's row kernels.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "rows/row_kernels.h"

// The names of the tables that this processor can run, best first.
inline std::vector<std::string> KernelNames() {
  std::vector<std::string> names;
  for (const char* const* name = Rows::KernelNames(); *name != nullptr; ++name) names.emplace_back(*name);
  return names;
}

inline void UseKernels(const std::string& name) {
  ASSERT_TRUE(Rows::UseKernels(name.c_str())) << "this processor has no kernels called " << name;
}

inline void UseBestKernels() { UseKernels(KernelNames().front()); }

// Its parameter is the name of a table, in use while a test runs.
class EveryKernel : public testing::TestWithParam<std::string> {
 protected:
  void SetUp() override { UseKernels(GetParam()); }
  void TearDown() override { UseBestKernels(); }
};

// Names the tests after it.
inline std::string KernelOf(const testing::TestParamInfo<std::string>& test) { return test.param; }
