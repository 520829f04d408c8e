// report.h
// What the commands' reports have in common.
#pragma once

#include <cstdint>
#include <string>

#include "failure.h"
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

// "1 image", "2 images"
std::string Counted(std::uint64_t count, const std::string& noun);

// A line on standard error that is written over again and again; only on a terminal, in a pipe it is silent.
// It is cut to the terminal's width.
class ProgressLine {
 public:
  explicit ProgressLine(bool wanted);
  ~ProgressLine();  // wipes it
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;

  bool IsShown() const { return m_shown; }
  void Show(const std::string& text);
  void Wipe();

  // Whether one of the program's lines is on the terminal and open. [any thread]
  static bool IsOnScreen();

 private:
  bool m_shown;
  std::size_t m_width = 0;
};

}  // namespace Kelcam
