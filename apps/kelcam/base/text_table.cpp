// text_table.cpp
// Rows of texts in columns.
#include "base/text_table.h"

#include <algorithm>

#include "base/report.h"

namespace Kelcam {
namespace {

constexpr const char* kNothing = "-";

// The letters, of which some have several bytes.
std::size_t WidthOf(const std::string& text) {
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0u) != 0x80u; }));
}

}  // namespace

std::string TextTable(const std::vector<std::vector<std::string>>& rows) {
  std::string text;
  if (rows.empty()) return text;
  std::vector<std::size_t> widths(rows.front().size());
  for (const auto& cells : rows) {
    for (std::size_t i = 0; i < widths.size(); ++i) widths[i] = std::max(widths[i], WidthOf(cells[i]));
  }
  for (const auto& cells : rows) {
    for (std::size_t i = 0; i + 1 < widths.size(); ++i) {
      text += cells[i] + std::string(widths[i] - WidthOf(cells[i]) + 2, ' ');
    }
    text += cells.back() + "\n";
  }
  return text;
}

std::string CellOf(const std::string& text) { return text.empty() ? kNothing : Printable(text); }

}  // namespace Kelcam
