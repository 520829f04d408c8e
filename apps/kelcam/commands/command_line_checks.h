// command_line_checks.h
// Which options of the command line fit together.
#pragma once

#include "commands/command_line.h"

namespace Kelcam {

// Throws UsageError for options that contradict each other, or are not enough. Sets what follows from others: whether a
// camera is one of several, and the kind of picture of a grey format.
void CheckOptions(Options& options);

}  // namespace Kelcam
