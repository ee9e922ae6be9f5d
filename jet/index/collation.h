// Sort keys of text by the sort order General (language 0409, version 0): byte strings that compare
// as the texts sort. Case never counts; accents count only between texts that are otherwise equal;
// apostrophes, hyphens and control characters after everything else.
#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace zimbrat::jet {

// What an index keeps of a text; the rest does not count.
inline constexpr std::size_t kMaxIndexedUnits = 255;

// The sort order that the keys are made by; text of others must not be indexed with them.
inline constexpr std::uint16_t kGeneralLanguage = 0x0409;

// Appends the key of the first 255 units, without blanks at the end, to `key`.
void AppendTextKey(std::u16string_view text, bool ascending, std::vector<std::byte>& key);

// By the keys of the whole texts: equal are "Łódź" and "ŁÓDŹ", "strasse" and "straße", but not
// "lodz" and "łódź".
std::weak_ordering CompareText(std::u16string_view a, std::u16string_view b);
inline bool EqualText(std::u16string_view a, std::u16string_view b) {
  return CompareText(a, b) == std::weak_ordering::equivalent;
}

// The part of the key that every text beginning with `start` has in common: a lower bound for a
// search.
void AppendTextKeyStart(std::u16string_view start, std::vector<std::byte>& key);

}  // namespace zimbrat::jet
