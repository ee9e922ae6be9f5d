// Looks for passwords in all memory that this process can write. In a program that links this, `delete` ends
// the process when the block given back holds one of the two below: its next owner may overwrite it before
// anybody else can look. What is looked for is kept masked, so that the search finds the program's copies
// and not its own.
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace zimbrat::tests {

inline constexpr char16_t kTextMask = 0x3A5C;

// A text of the source that stands nowhere in the program.
template <std::size_t Size>
consteval std::array<char16_t, Size - 1> Masked(const char16_t (&text)[Size]) {
  std::array<char16_t, Size - 1> masked{};
  for (std::size_t i = 0; i + 1 < Size; ++i) {
    masked[i] = static_cast<char16_t>(text[i] ^ kTextMask);
  }
  return masked;
}
using MaskedText = std::span<const char16_t>;

inline constexpr auto kLong = Masked(u"Zq7#kłódka!Vx93~Ążbw");
inline constexpr auto kShort = Masked(u"Qż#7v!");

// Adds it to a text without further copies when the text has room.
void AppendUnmasked(MaskedText masked, std::u16string& text);

// How often the text stands there, in UTF-16 or UTF-8.
int CountIn(std::string_view bytes, MaskedText masked);
int CountInMemory(MaskedText masked);

}  // namespace zimbrat::tests
