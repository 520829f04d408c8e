// vimba_codes.h
// What the numbers in the driver's messages mean.
#pragma once

#include <string_view>

namespace Kelcam {

// A few words for a person; empty for a number that is no code of an error. docs/diagnostics.md has the same.
std::string_view MeaningOfVimbaCode(int code);

}  // namespace Kelcam
