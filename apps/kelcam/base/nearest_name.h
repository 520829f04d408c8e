// nearest_name.h
// What somebody may have meant who wrote a name that there is not.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Kelcam {

// The name that takes the fewest changes (a letter more, less, another, or two swapped) without regard to the case of A
// to Z; the first of several. Empty when none is near: more than a third of the letters would change.
std::string NearestName(std::string_view wrong, const std::vector<std::string>& names);

// "; did you mean NAME?", or empty where none is near.
std::string DidYouMean(std::string_view wrong, const std::vector<std::string>& names);

}  // namespace Kelcam
