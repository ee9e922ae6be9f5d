#include "date_literal.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/dates.h"
#include "platform/text.h"

namespace zimbrat::jet {

namespace {

struct Part {
  int value = 0;
  std::size_t width = 0;
};

// Three numbers of up to four digits with one sign between them.
std::optional<std::array<Part, 3>> FindParts(std::u16string_view text, char16_t sign) {
  std::array<Part, 3> parts;
  std::size_t count = 0;
  for (const char16_t unit : text) {
    if (unit == sign) {
      if (++count == parts.size()) return std::nullopt;
      continue;
    }
    Part& part = parts[count];
    if (unit < u'0' || unit > u'9' || ++part.width > 4) return std::nullopt;
    part.value = part.value * 10 + (unit - u'0');
  }
  const bool whole = std::all_of(parts.begin(), parts.end(), [](const Part& part) { return part.width > 0; });
  return whole ? std::optional(parts) : std::nullopt;
}

std::optional<double> FindDay(std::u16string_view text) {
  const auto parts = FindParts(text, text.find(u'/') != text.npos ? u'/' : u'-');
  if (!parts) return std::nullopt;
  auto [a, b, c] = *parts;
  if (a.width > 2) return platform::DayOf(a.value, b.value, c.value);
  if (a.value > 12) std::swap(a, b);
  return platform::DayOf(c.width <= 2 ? platform::FullYear(c.value) : c.value, a.value, b.value);
}

}  // namespace

std::optional<double> FindDateLiteral(std::u16string_view text) {
  text = platform::TrimBlanks(text);
  const std::size_t blank = std::min(text.find(u' '), text.size());
  if (text.substr(0, blank).find_first_of(u"/-") == text.npos) return platform::FindTime(text);
  const std::optional<double> day = FindDay(text.substr(0, blank));
  if (!day || blank == text.size()) return day;
  const std::optional<double> time = platform::FindTime(text.substr(blank));
  if (!time) return std::nullopt;
  return *day < 0 ? *day - *time : *day + *time;
}

}  // namespace zimbrat::jet
