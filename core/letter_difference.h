// How far apart two names are, for "did you mean" suggestions: the library's, for a
// method a script misspelt, and the scenario runner's, for a misspelt statement.
#pragma once

#include <algorithm>
#include <cctype>
#include <string_view>
#include <vector>

namespace spindle {

// Names further apart than this are not offered as what was meant.
inline constexpr std::size_t kMaxLetterDifference = 2;

// The letters to insert, delete or replace to turn `a` into `b`, ignoring letter case
// (so "Round" and "round" are 0 apart).
inline std::size_t LetterDifference(std::string_view a, std::string_view b) {
  std::vector<std::size_t> previous(b.size() + 1);
  std::vector<std::size_t> current(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) previous[j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    current[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const bool same = std::tolower(static_cast<unsigned char>(a[i - 1])) ==
                        std::tolower(static_cast<unsigned char>(b[j - 1]));
      current[j] = std::min({previous[j] + 1, current[j - 1] + 1, previous[j - 1] + !same});
    }
    std::swap(previous, current);
  }
  return previous[b.size()];
}

}  // namespace spindle
