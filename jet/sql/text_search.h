// Finding a text within a text in time that grows with their lengths alone.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace zimbrat::jet {

// How texts are searched and compared: by their units, or without regard to case.
enum class TextComparison { Binary, Text };

// `part` must not be empty. Overlapping places count, too.
class TextSearch {
 public:
  TextSearch(std::u16string_view part, TextComparison comparison);

  // Where `part` begins in `text` at `from` or behind it; npos when nowhere.
  std::size_t Find(std::u16string_view text, std::size_t from) const;
  // The last place that ends at `end` or before it.
  std::size_t FindLast(std::u16string_view text, std::size_t end) const;

 private:
  char16_t Unit(char16_t unit) const;

  TextComparison comparison_;
  std::u16string part_;
  std::vector<std::size_t> borders_;  // by length of a matched start: the longest start that also ends it
};

}  // namespace zimbrat::jet
