// screen.cpp
// What a command prints while cameras run: whole texts, and below them lines that change on a terminal.
#include "base/screen.h"

#include <algorithm>
#include <iterator>

namespace Kelcam {

Screen::Screen(std::size_t lines, bool wanted) : m_progress(wanted), m_lines(lines) {}

void Screen::Show(std::size_t line, const std::string& text) {
  const BMutexLock lock(m_mutex);
  m_lines.at(line) = text;
  Draw();
}

void Screen::Print(std::ostream& stream, const std::string& text) {
  const BMutexLock lock(m_mutex);
  m_progress.Wipe();
  stream << text << std::flush;
  Draw();
}

void Screen::Clear() {
  const BMutexLock lock(m_mutex);
  for (std::string& line : m_lines) line.clear();
  m_progress.Wipe();
}

void Screen::Draw() {
  std::vector<std::string> shown;
  std::copy_if(m_lines.begin(), m_lines.end(), std::back_inserter(shown),
               [](const std::string& line) { return !line.empty(); });
  if (!shown.empty()) m_progress.Show(shown);
}

}  // namespace Kelcam
