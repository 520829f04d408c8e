// text_table.h
// Rows of texts in columns.
#pragma once

#include <string>
#include <vector>

namespace Kelcam {

// Lines of the rows' cells, each column as wide as its longest text and two blanks after it. All rows have as many
// cells as the first one.
std::string TextTable(const std::vector<std::vector<std::string>>& rows);

// Text of a camera, for a cell: without control characters, "-" where there is none.
std::string CellOf(const std::string& text);

}  // namespace Kelcam
