// The rows of the collation table, as generate_collation.cmake writes them.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zimbrat::jet {

// See general_collation.tsv.
enum class CollationKind : std::uint8_t {
  Plain,
  Accented,
  Kana,
  Expansion,
  Modifier,
  Position,
  Ignored,
  Repeat,
};

struct CollationRange {
  char16_t first;
  char16_t last;
  CollationKind kind;
  std::uint8_t
      high;  // first inline byte; of Position its record's byte; of Expansion the row of parts
  std::uint8_t low;  // second inline byte, 0: there is none
  std::uint8_t accent;
  std::uint8_t kana;
};

inline constexpr std::uint8_t kNoAccent = 2;
inline constexpr std::size_t kMaxExpansion = 3;

}  // namespace zimbrat::jet
