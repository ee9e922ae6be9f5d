// Weeks: where they begin, and how they are counted within a year.
#pragma once

#include <cstdint>

namespace zimbrat::jet {

struct WeekRule {
  int firstDay = 1;   // of a week: 1 Sunday to 7 Saturday
  int firstWeek = 1;  // of a year: 1 the one with 1 January, 2 the first of four days, 3 the first full one
};

// 0 stands for the Polish rule: Monday, four days. Error 5 for other numbers than those above.
WeekRule FindWeekRule(std::int32_t firstDay, std::int32_t firstWeek);

// The day on which the week of `day` begins; days since 1899-12-30.
long long StartOfWeek(long long day, int firstDay);
// From 1; the first days of a year may belong to the last week of the one before, and the reverse.
int WeekOfYear(long long day, const WeekRule& rule);
int DayOfYear(long long day);
// 1 for the rule's first day.
int DayOfWeekFrom(long long day, int firstDay);

}  // namespace zimbrat::jet
