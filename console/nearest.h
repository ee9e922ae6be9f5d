// The word that a mistyped one was most likely meant to be.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zimbrat::console {

// The candidate with the fewest letters to change, without regard to case; the first of equals.
// Empty when there are no candidates.
std::u16string NearestWord(std::u16string_view word, const std::vector<std::u16string>& candidates);

}  // namespace zimbrat::console
