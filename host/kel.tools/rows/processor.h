// processor.h
// Which vector units the processor has.
#pragma once

namespace Rows {

enum class VectorUnit { kBaseline, kSsse3, kAvx2, kAvx512, kAvx512Vbmi };

// Whether the processor and the operating system run the instructions that the row kernels for `unit` are compiled
// with.
bool ProcessorHas(VectorUnit unit);

}  // namespace Rows
