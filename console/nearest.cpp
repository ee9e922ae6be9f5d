#include "console/nearest.h"

#include "platform/text.h"

#include <algorithm>
#include <numeric>

namespace zimbrat::console {
namespace {

// Longer words are compared by their beginnings: a hostile one must not cost time.
constexpr std::size_t kCompared = 64;

std::size_t Distance(std::u16string_view a, std::u16string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 1; i <= a.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t changed = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
      diagonal = row[j];
      row[j] = std::min({changed, row[j] + 1, row[j - 1] + 1});
    }
  }
  return row.back();
}

}  // namespace

std::u16string NearestWord(std::u16string_view word,
                           const std::vector<std::u16string>& candidates) {
  const std::u16string wanted = platform::UpperCase(word.substr(0, kCompared));
  const std::u16string* nearest = nullptr;
  std::size_t least = 0;
  for (const std::u16string& candidate : candidates) {
    const std::size_t distance =
        Distance(wanted, platform::UpperCase(std::u16string_view(candidate).substr(0, kCompared)));
    if (nearest != nullptr && distance >= least) continue;
    nearest = &candidate;
    least = distance;
  }
  return nearest == nullptr ? std::u16string() : *nearest;
}

}  // namespace zimbrat::console
