// row_kernels.cpp
// The inner loops that vector units do faster, as a table for each kind of vector unit.
#include "row_kernels.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include "vector_kernels.h"

namespace Rows {
namespace {

int LeaveBayer(const BayerBand&, int, std::uint8_t*, std::ptrdiff_t) { return 0; }
int LeaveRow(const std::uint8_t*, int x, int, std::uint8_t*) { return x; }

constexpr RowKernels kScalar = {"scalar", LeaveBayer, LeaveBayer, LeaveBayer, LeaveBayer, LeaveBayer, LeaveBayer,
                                LeaveRow, LeaveRow,   LeaveRow,   LeaveRow,   kNoStrips,  kNoStrips,  nullptr};

// Tables that this processor can run, best first.
const std::vector<const RowKernels*>& Runnable() {
  static const std::vector<const RowKernels*> kTables = [] {
    std::vector<const RowKernels*> list = VectorKernels();
    list.push_back(&kScalar);
    return list;
  }();
  return kTables;
}

std::atomic<const RowKernels*>& InUse() {
  static std::atomic<const RowKernels*> table{Runnable().front()};
  return table;
}

}  // namespace

const RowKernels& Kernels() { return *InUse().load(std::memory_order_relaxed); }

const char* const* KernelNames() {
  static const std::vector<const char*> kNames = [] {
    std::vector<const char*> list;
    for (const RowKernels* table : Runnable()) list.push_back(table->name);
    list.push_back(nullptr);
    return list;
  }();
  return kNames.data();
}

bool UseKernels(const char* name) {
  for (const RowKernels* table : Runnable()) {
    if (std::strcmp(table->name, name) != 0) continue;
    InUse().store(table, std::memory_order_relaxed);
    return true;
  }
  return false;
}

}  // namespace Rows
