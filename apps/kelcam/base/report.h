// report.h
// What the commands' reports have in common.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "base/failure.h"
#include "nlohmann/json.hpp"

namespace Kelcam {

using Json = nlohmann::ordered_json;  // members stand as they were written

// With "messages", "why" and "toDo" where the reason is known.
Json ToJson(const Fault& fault);

// The one document of --json, on standard output.
void PrintDocument(const Json& document);

// One of several documents: on a line of its own, and at once.
void PrintLine(const Json& document);

// With that many decimals.
std::string Fixed(double value, int decimals);

// Without control characters, for a terminal: a camera may claim any text.
std::string Printable(std::string text);

// "1 image", "2 images"
std::string Counted(std::uint64_t count, const std::string& noun);

// Of failures by their codes: " (12103: 2, 12106: 1)", or nothing.
std::string CountsByCode(const std::map<int, std::uint64_t>& failures);

// Lines on standard error that are written over again and again; only on a terminal, in a pipe they are silent.
// They are cut to the terminal's width.
class ProgressLines {
 public:
  explicit ProgressLines(bool wanted);
  ~ProgressLines();  // wipes them
  ProgressLines(const ProgressLines&) = delete;
  ProgressLines& operator=(const ProgressLines&) = delete;

  bool IsShown() const { return m_shown; }
  void Show(const std::vector<std::string>& texts);
  void Wipe();

  // Whether lines of the program are on the terminal and open. They stay where they are: who asks begins a new line
  // under them. [any thread]
  static bool LeaveOnScreen();

 private:
  bool m_shown;
  std::vector<std::size_t> m_widths;  // of the lines on the terminal
};

}  // namespace Kelcam
