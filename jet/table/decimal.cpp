#include "jet/table/decimal.h"

#include <algorithm>
#include <string>

namespace zimbrat::jet {

namespace {

using Words = std::array<std::uint32_t, 4>;

// Divides by ten and gives the rest.
unsigned TakeFigure(Words& words) {
  std::uint64_t rest = 0;
  for (std::uint32_t& word : words) {
    rest = (rest << 32) | word;
    word = static_cast<std::uint32_t>(rest / 10);
    rest %= 10;
  }
  return static_cast<unsigned>(rest);
}

void AddFigure(Words& words, unsigned figure) {
  std::uint64_t carry = figure;
  for (auto word = words.rbegin(); word != words.rend(); ++word) {
    carry += std::uint64_t{*word} * 10;
    *word = static_cast<std::uint32_t>(carry);
    carry >>= 32;
  }
}

}  // namespace

platform::ExactNumber ExactFromDecimal(const dao::Decimal& decimal) {
  Words words = decimal.magnitude;
  platform::ExactNumber number;
  while (words != Words{}) {
    number.figures.push_back(static_cast<char>('0' + TakeFigure(words)));
  }
  if (number.figures.empty()) return number;
  std::reverse(number.figures.begin(), number.figures.end());
  number.negative = decimal.negative;
  number.point = static_cast<int>(number.figures.size()) - decimal.scale;
  number.figures.erase(number.figures.find_last_not_of('0') + 1);
  return number;
}

std::optional<dao::Decimal> FindDecimal(const platform::ExactNumber& number, int scale, int precision) {
  const platform::ExactNumber rounded = platform::Rounded(number, scale);
  dao::Decimal decimal;
  decimal.scale = static_cast<std::uint8_t>(scale);
  if (rounded.figures.empty()) return decimal;
  if (rounded.point + scale > std::min(precision, kMaxDecimalFigures)) return std::nullopt;
  decimal.negative = rounded.negative;
  for (const char figure : rounded.figures) AddFigure(decimal.magnitude, static_cast<unsigned>(figure - '0'));
  for (int i = rounded.Places(); i < scale; ++i) AddFigure(decimal.magnitude, 0);
  return decimal;
}

std::optional<dao::Decimal> FindDecimal(const platform::ExactNumber& number) {
  const int room = std::max(kMaxDecimalFigures - std::max(number.point, 0), 0);
  const platform::ExactNumber rounded = platform::Rounded(number, room);
  return FindDecimal(rounded, std::clamp(rounded.Places(), 0, room));
}

}  // namespace zimbrat::jet
