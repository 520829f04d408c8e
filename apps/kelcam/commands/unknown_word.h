// unknown_word.h
// A word of the command line that the program has no use for, and what may be meant by it.
#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace Kelcam {

// What is wrong with the first such word of a command line that was parsed and refused, and the nearest that would be
// right. Empty where every word has its place.
std::string WhyUnknownWord(const CLI::App& app, const std::vector<std::string>& arguments);

}  // namespace Kelcam
