// nearest_name.cpp
// What somebody may have meant who wrote a name that there is not.
#include "base/nearest_name.h"

#include <algorithm>
#include <cstddef>

namespace Kelcam {
namespace {

// Changes that are still likely to be a slip: one of three letters.
constexpr std::size_t kLettersForAChange = 3;

char Folded(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

// How many changes make one text the other; two letters that were swapped are one change.
std::size_t ChangesBetween(std::string_view a, std::string_view b) {
  std::vector<std::vector<std::size_t>> changes(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
  for (std::size_t i = 0; i <= a.size(); ++i) {
    for (std::size_t j = 0; j <= b.size(); ++j) {
      std::size_t& least = changes[i][j] = std::max(i, j);
      if (i == 0 || j == 0) continue;
      const std::size_t differs = Folded(a[i - 1]) == Folded(b[j - 1]) ? 0 : 1;
      least = std::min({changes[i - 1][j] + 1, changes[i][j - 1] + 1, changes[i - 1][j - 1] + differs});
      const bool is_swap =
          i > 1 && j > 1 && Folded(a[i - 1]) == Folded(b[j - 2]) && Folded(a[i - 2]) == Folded(b[j - 1]);
      if (is_swap) least = std::min(least, changes[i - 2][j - 2] + 1);
    }
  }
  return changes[a.size()][b.size()];
}

}  // namespace

std::string NearestName(std::string_view wrong, const std::vector<std::string>& names) {
  std::string nearest;
  std::size_t least = 0;
  for (const std::string& name : names) {
    // Texts of very different lengths are far apart: the table is not made for them.
    const std::size_t most = std::max<std::size_t>(1, std::max(wrong.size(), name.size()) / kLettersForAChange);
    if (std::max(wrong.size(), name.size()) - std::min(wrong.size(), name.size()) > most) continue;
    const std::size_t changes = ChangesBetween(wrong, name);
    if (changes > most || (!nearest.empty() && changes >= least)) continue;
    nearest = name;
    least = changes;
  }
  return nearest;
}

std::string DidYouMean(std::string_view wrong, const std::vector<std::string>& names) {
  const std::string nearest = NearestName(wrong, names);
  return nearest.empty() ? nearest : "; did you mean " + nearest + "?";
}

}  // namespace Kelcam
