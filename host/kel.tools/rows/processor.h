// processor.h
// Which vector units the processor has.
#pragma once

namespace rows {

enum class VectorUnit { eBaseline, eSsse3, eAvx2, eAvx512, eAvx512Vbmi };

// Whether the processor and the operating system run the instructions that the row kernels for `unit` are compiled
// with.
bool ProcessorHas(VectorUnit unit);

}  // namespace rows
