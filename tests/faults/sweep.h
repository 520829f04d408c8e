// sweep.h
// Runs many cases in processes of their own, each with a deadline.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "verdict.h"

// What runs cases; made anew in each process.
class CaseSource {
 public:
  virtual ~CaseSource() = default;
  // The texts of all cases, the same ones in every process.
  virtual std::vector<std::string> Cases() = 0;
  virtual Findings Run(const std::string& text) = 0;
};
using MakeCases = std::function<std::unique_ptr<CaseSource>()>;

struct SweepOutcome {
  std::size_t runs = 0;
  std::size_t findings = 0;
};

// Each finding is printed with its case; `command` says how to run that case alone. A process that crashes or hangs is
// a finding of the case that it ran, and another one goes on with the next.
SweepOutcome Sweep(const MakeCases& make, std::size_t processes, const std::string& command);
