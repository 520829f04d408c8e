// vector_kernels.cpp
// The tables of row kernels for the vector units; this file is compiled once for each of them.
#include "vector_kernels.h"

#include <cstdint>

#include "processor.h"
#include "row_kernels.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "rows/vector_kernels.cpp"
#define HWY_WANT_AVX3_DL
// Brings these loops nothing over SSSE3.
#define HWY_DISABLED_TARGETS HWY_SSE4
#include "hwy/foreach_target.h"

#include "hwy/highway.h"

#if HWY_TARGET != HWY_SCALAR && HWY_TARGET != HWY_EMU128
#include "bayer_rows-inl.h"
#include "plain_rows-inl.h"
#include "transpose-inl.h"

HWY_BEFORE_NAMESPACE();
namespace Rows {
namespace HWY_NAMESPACE {

const RowKernels* Table() {
  static constexpr RowKernels kTable = {
#if HWY_TARGET == HWY_SSSE3
    "ssse3",
#elif HWY_TARGET == HWY_AVX2
    "avx2",
#elif HWY_TARGET == HWY_AVX3
    "avx512",
#elif HWY_TARGET == HWY_AVX3_DL
    "avx512vbmi",
#else
    "native",
#endif
    BayerRows<Interpolated<BilinearLanes, AsRgb>>,
    BayerRows<Interpolated<BilinearLanes, AsLuma>>,
    BayerRows<Binomial121>,
    BayerRows<Interpolated<CorrectedLanes, AsRgb>>,
    BayerRows<Interpolated<CorrectedLanes, AsLuma>>,
    BayerRows<Interpolated<CorrectedLanes, AsWeightedMean>>,
    RowSweep<YuvStep, 2>,
    RowSweep<StretchStep, 1>,
    RowSweep<GreyStep, 1>,
    RowSweep<CopyStep, 1>,
    kTileLines,
    kTileColumns,
    TransposeStrip,
  };
  return &kTable;
}

}  // namespace HWY_NAMESPACE
}  // namespace Rows
HWY_AFTER_NAMESPACE();
#endif

#if HWY_ONCE
namespace Rows {
namespace {

using TableOf = const RowKernels* (*)();

struct Candidate {
  VectorUnit unit;
  TableOf table;
};

// Best first. A unit without table was not compiled.
constexpr Candidate kCandidates[] = {
#if HWY_ARCH_X86
    {VectorUnit::kAvx512Vbmi, HWY_CHOOSE_AVX3_DL(Table)},
    {VectorUnit::kAvx512, HWY_CHOOSE_AVX3(Table)},
    {VectorUnit::kAvx2, HWY_CHOOSE_AVX2(Table)},
    {VectorUnit::kSsse3, HWY_CHOOSE_SSSE3(Table)},
#elif HWY_STATIC_TARGET != HWY_SCALAR && HWY_STATIC_TARGET != HWY_EMU128
    {VectorUnit::kBaseline, HWY_STATIC_DISPATCH(Table)},
#endif
    {VectorUnit::kBaseline, nullptr},
};

}  // namespace

std::vector<const RowKernels*> VectorKernels() {
  std::vector<const RowKernels*> tables;
  for (const Candidate& candidate : kCandidates) {
    if (candidate.table != nullptr && ProcessorHas(candidate.unit)) tables.push_back(candidate.table());
  }
  return tables;
}

}  // namespace Rows
#endif
