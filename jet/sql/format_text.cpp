// Texts by a pattern of @ (a character or a blank), & (a character or nothing), < > (case) and ! (fill from
// the left).
#include <algorithm>

#include "platform/text.h"

#include "format.h"

namespace zimbrat::jet {

namespace {

constexpr std::u16string_view kPlaces = u"@&";

std::u16string InCase(std::u16string_view text, Section section) {
  for (const PatternUnit& unit : section) {
    if (unit.Is(u'<')) return platform::LowerCase(text);
    if (unit.Is(u'>')) return platform::UpperCase(text);
  }
  return std::u16string(text);
}

}  // namespace

// What is longer than its places begins before them, or with "!" goes on behind them.
std::u16string FormatText(std::u16string_view source, Section section) {
  const std::u16string text = InCase(source, section);
  const auto isPlace = [](const PatternUnit& unit) { return unit.IsAnyOf(kPlaces); };
  const auto places = static_cast<std::size_t>(std::count_if(section.begin(), section.end(), isPlace));
  const bool fromLeft =
      std::any_of(section.begin(), section.end(), [](const PatternUnit& unit) { return unit.Is(u'!'); });
  const std::size_t missing = places > text.size() ? places - text.size() : 0;
  const std::size_t surplus = text.size() > places ? text.size() - places : 0;
  std::u16string result;
  std::size_t place = 0, taken = 0;
  for (const PatternUnit& unit : section) {
    if (unit.IsAnyOf(kPlaces)) {
      if (place == 0 && !fromLeft) {
        result.append(text, 0, surplus);
        taken = surplus;
      }
      const bool empty = fromLeft ? taken == text.size() : place < missing;
      if (!empty) result += text[taken++];
      if (empty && unit.Is(u'@')) result += u' ';
      ++place;
    } else if (!unit.IsAnyOf(u"<>!")) {
      result += unit.unit;
    }
  }
  return result.append(text, taken);
}

}  // namespace zimbrat::jet
