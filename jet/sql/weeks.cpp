#include "weeks.h"

#include "jet/file/errors.h"
#include "platform/dates.h"

namespace zimbrat::jet {

namespace {

constexpr int kDaysOfWeek = 7;
constexpr int kMonday = 2;
constexpr int kFourDays = 2;

int YearOf(long long day) { return platform::PartsOfDate(static_cast<double>(day)).year; }

// Where week 1 of a year begins.
long long FirstWeekOf(int year, const WeekRule& rule) {
  const long long start = platform::DayNumber(year, 1, 1);
  const long long week = StartOfWeek(start, rule.firstDay);
  const long long days = week + kDaysOfWeek - start;  // of that week within the year
  const long long least = rule.firstWeek == 1 ? 1 : rule.firstWeek == kFourDays ? 4 : kDaysOfWeek;
  return days >= least ? week : week + kDaysOfWeek;
}

}  // namespace

WeekRule FindWeekRule(std::int32_t firstDay, std::int32_t firstWeek) {
  if (firstDay < 0 || firstDay > kDaysOfWeek || firstWeek < 0 || firstWeek > 3) Raise(platform::kErrInvalidCall);
  return {firstDay == 0 ? kMonday : firstDay, firstWeek == 0 ? kFourDays : firstWeek};
}

long long StartOfWeek(long long day, int firstDay) { return day + 1 - DayOfWeekFrom(day, firstDay); }

int DayOfWeekFrom(long long day, int firstDay) {
  return (platform::DayOfWeek(day) - firstDay + kDaysOfWeek) % kDaysOfWeek + 1;
}

int DayOfYear(long long day) { return static_cast<int>(day - platform::DayNumber(YearOf(day), 1, 1)) + 1; }

int WeekOfYear(long long day, const WeekRule& rule) {
  const int year = YearOf(day);
  long long first = FirstWeekOf(year, rule);
  if (day < first) first = FirstWeekOf(year - 1, rule);
  // By the first rule the last days of a year keep its number.
  if (rule.firstWeek != 1 && day >= FirstWeekOf(year + 1, rule)) first = FirstWeekOf(year + 1, rule);
  return static_cast<int>((day - first) / kDaysOfWeek) + 1;
}

}  // namespace zimbrat::jet
