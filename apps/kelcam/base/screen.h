// screen.h
// What a command prints while cameras run: whole texts, and below them lines that change on a terminal.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "base/report.h"
#include "bmutex.h"

namespace Kelcam {

// Several threads print, each about its camera. [any thread]
class Screen {
 public:
  // lines: how many may change. Wanted or not, they appear on a terminal only.
  Screen(std::size_t lines, bool wanted);

  void Show(std::size_t line, const std::string& text);
  // In one piece, above the lines that change.
  void Print(std::ostream& stream, const std::string& text);
  // From now on no line changes.
  void Clear();

 private:
  void Draw() KEL_REQUIRES(m_mutex);

  BMutex m_mutex;
  ProgressLines m_progress KEL_GUARDED_BY(m_mutex);
  std::vector<std::string> m_lines KEL_GUARDED_BY(m_mutex);  // empty: not shown
};

}  // namespace Kelcam
