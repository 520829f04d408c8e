// row_kernels.h
// The inner loops that vector units do faster, as a table for each kind of vector unit.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>

#include "bayer_pixel.h"
#include "kel_tools_api.h"

namespace Rows {

// A kernel fills `target`, the start of the row to be made, and returns the first pixel that it left to the caller: it
// may stop before `end`, or do nothing. What it makes is what the definition of that pixel says, bit for bit. Bayer
// rows are made from pixel 0 on, a band of them in one call, the rows of the target `target_step_bytes` apart; `end` is
// at most the rows' width.
using BayerKernel = int (*)(const BayerBand& band, int end, std::uint8_t* target, std::ptrdiff_t target_step_bytes);
// From pixel x on; `source` is the start of the row that pixel 0 comes from.
using RowKernel = int (*)(const std::uint8_t* source, int x, int end, std::uint8_t* target);
// Lines of a source, of which line i becomes column i of the target. Steps are bytes from row to row, and may be
// negative.
struct StripOfLines {
  const std::uint8_t* source;
  std::ptrdiff_t source_step_bytes;
  int lines;
  int columns;
  std::uint8_t* target;
  std::ptrdiff_t target_step_bytes;
};

// Transposes all of a strip.
using StripKernel = void (*)(const StripOfLines& strip);

// Lines of a strip: a cache line of the target's rows.
constexpr int kStripLines = 64;
constexpr int kNoStrips = std::numeric_limits<int>::max();

struct RowKernels {
  const char* name;
  BayerKernel bilinear_rgb;
  BayerKernel bilinear_luma;
  BayerKernel binomial;
  BayerKernel corrected_rgb;
  BayerKernel corrected_luma;
  BayerKernel corrected_weighted;
  RowKernel yuv_rgb;  // x is even
  RowKernel stretch;
  RowKernel grey_rgb;
  RowKernel copy;
  int least_lines;  // that a strip has, at most kStripLines; kNoStrips: there is no kernel for strips
  int least_columns;
  StripKernel transpose_strip;
};

// The kernels in use: the best that the processor can run. [any thread]
const RowKernels& Kernels();

// For tests and measurements: the names of the tables that this processor can run, best first, then null; and the
// choice of one of them. An unknown name changes nothing and returns false. [any thread]
KEL_TOOLS_API const char* const* KernelNames();
KEL_TOOLS_API bool UseKernels(const char* name);

}  // namespace Rows
