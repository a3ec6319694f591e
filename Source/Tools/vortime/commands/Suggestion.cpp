#include "commands/Suggestion.h"

#include <algorithm>
#include <cstddef>

namespace KTX::VORTIME {
namespace {

constexpr std::size_t MIN_BEGINNING = 2;

using RowT = std::vector<std::size_t>;

// How many letters must be inserted, removed, replaced or swapped with their neighbour.
std::size_t editDistance(std::string_view a, std::string_view b) {
  RowT beforeLast(b.size() + 1);
  RowT last(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) {
    last[j] = j;
  }
  for (std::size_t i = 1; i <= a.size(); ++i) {
    RowT row(b.size() + 1, i);
    for (std::size_t j = 1; j <= b.size(); ++j) {
      std::size_t const replaced = last[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
      row[j] = std::min({last[j] + 1, row[j - 1] + 1, replaced});
      if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
        row[j] = std::min(row[j], beforeLast[j - 2] + 1);
      }
    }
    beforeLast = std::move(last);
    last = std::move(row);
  }
  return last[b.size()];
}

std::size_t distanceOf(std::string_view word, std::string_view name) {
  bool const isBeginning = word.size() >= MIN_BEGINNING && name.substr(0, word.size()) == word;
  return isBeginning ? 1 : editDistance(word, name);
}

}  // namespace

std::string nearestName(std::string_view word, std::vector<std::string> const& names) {
  std::string nearest;
  std::size_t limit = (word.size() + 1) / 3 + 1;
  for (std::string const& name : names) {
    // No work on words that are far too long.
    if (word.size() > 2 * name.size()) {
      continue;
    }
    std::size_t const distance = distanceOf(word, name);
    if (distance < limit) {
      nearest = name;
      limit = distance;
    }
  }
  return nearest;
}

}  // namespace KTX::VORTIME
