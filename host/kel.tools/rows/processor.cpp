// processor.cpp
// Which vector units the processor has.
#include "processor.h"

namespace Rows {

#if (defined(__x86_64__) || defined(__i386__)) && (defined(__GNUC__) || defined(__clang__))

namespace {

bool HasAvx2() {
  return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma") && __builtin_cpu_supports("bmi") &&
         __builtin_cpu_supports("bmi2") && __builtin_cpu_supports("aes") && __builtin_cpu_supports("pclmul");
}

bool HasAvx512() {
  return HasAvx2() && __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512vl") &&
         __builtin_cpu_supports("avx512dq") && __builtin_cpu_supports("avx512bw");
}

// What Highway's AVX3_DL is compiled with: all of Ice Lake's and Zen 4's.
bool HasAvx512Vbmi() {
  return HasAvx512() && __builtin_cpu_supports("avx512vbmi") && __builtin_cpu_supports("avx512vbmi2") &&
         __builtin_cpu_supports("avx512vnni") && __builtin_cpu_supports("avx512bitalg") &&
         __builtin_cpu_supports("avx512vpopcntdq") && __builtin_cpu_supports("vpclmulqdq") &&
         __builtin_cpu_supports("gfni");
}

}  // namespace

bool ProcessorHas(VectorUnit unit) {
  __builtin_cpu_init();
  switch (unit) {
    case VectorUnit::kBaseline:
      return true;
    case VectorUnit::kSsse3:
      return __builtin_cpu_supports("ssse3");
    case VectorUnit::kAvx2:
      return HasAvx2();
    case VectorUnit::kAvx512:
      return HasAvx512();
    case VectorUnit::kAvx512Vbmi:
      return HasAvx512Vbmi();
  }
  return false;
}

#else

bool ProcessorHas(VectorUnit unit) { return unit == VectorUnit::kBaseline; }

#endif

}  // namespace Rows
