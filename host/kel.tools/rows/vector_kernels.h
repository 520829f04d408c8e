// vector_kernels.h
// The tables of row kernels for the vector units.
#pragma once

#include <vector>

#include "row_kernels.h"

namespace Rows {

// The tables that this processor can run, best first; none where there is no vector unit to serve. The tables are
// constants.
std::vector<const RowKernels*> VectorKernels();

}  // namespace Rows
