// What Format shows: Visual Basic's patterns and named formats in the one locale (decimal comma, U+00A0 between
// groups, yyyy-mm-dd, Polish names; the words of Boolean formats are English, as Visual Basic's own).
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/dao.h"
#include "platform/exact_number.h"

#include "weeks.h"

namespace zimbrat::jet {

// Null is empty unless the pattern has a section for it. A text that is a number or a date where the pattern
// wants one is taken as such. Errors 6 for a date outside its range, 7 for a result that is too long.
std::u16string FormatValue(const dao::Value& value, std::u16string_view pattern, const WeekRule& weeks);

// A pattern with its quotes and backslashes resolved.
struct PatternUnit {
  char16_t unit = 0;
  bool literal = false;

  bool Is(char16_t sign) const { return !literal && unit == sign; }
  bool IsAnyOf(std::u16string_view signs) const { return !literal && signs.find(unit) != signs.npos; }
};
using Section = std::span<const PatternUnit>;

// One kind of pattern each.
std::u16string FormatNumber(platform::ExactNumber number, Section section);
std::u16string FormatDate(double date, Section section, const WeekRule& weeks);
std::u16string FormatText(std::u16string_view text, Section section);

}  // namespace zimbrat::jet
