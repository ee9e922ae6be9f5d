// Dates: their parts, putting them together, intervals.
#include <algorithm>
#include <cmath>

#include "jet/file/errors.h"
#include "jet/table/convert.h"
#include "platform/dates.h"
#include "platform/numbers.h"
#include "platform/text.h"

#include "function.h"
#include "weeks.h"

namespace zimbrat::jet {

namespace {

using platform::DateParts;
using platform::Moment;

constexpr long long kSecondsOfDay = 86400;

dao::Value Now(const Arguments& a) { return dao::Date{a.Now()}; }
dao::Value Today(const Arguments& a) { return dao::Date{std::trunc(a.Now())}; }
// By whole seconds, so that it equals the literal of the same time.
dao::Value TimeOf(double date) {
  return dao::Date{platform::DateFromMoment({0, platform::MomentOfDate(date).second})};
}
dao::Value TimeNow(const Arguments& a) { return TimeOf(a.Now()); }

DateParts Parts(const Arguments& a) { return platform::PartsOfDate(a.Date(0)); }
dao::Value Year(const Arguments& a) { return std::int32_t{Parts(a).year}; }
dao::Value Month(const Arguments& a) { return std::int32_t{Parts(a).month}; }
dao::Value Day(const Arguments& a) { return std::int32_t{Parts(a).day}; }
dao::Value Hour(const Arguments& a) { return std::int32_t{Parts(a).hour}; }
dao::Value Minute(const Arguments& a) { return std::int32_t{Parts(a).minute}; }
dao::Value Second(const Arguments& a) { return std::int32_t{Parts(a).second}; }

dao::Value Weekday(const Arguments& a) {
  const WeekRule rule = FindWeekRule(a.LongOr(1, 1), 1);
  return std::int32_t{DayOfWeekFrom(platform::MomentOfDate(a.Date(0)).day, rule.firstDay)};
}

// What is reckoned must stay within the years 100 to 9999, else error 5.
dao::Value DateOf(const Moment& moment) {
  const double date = platform::DateFromMoment(moment);
  if (!platform::IsDateInRange(date)) Raise(platform::kErrInvalidCall);
  return dao::Date{date};
}

int IntegerAt(const Arguments& a, std::size_t i) { return platform::IntegerFromDouble(a.Number(i)); }

dao::Value DateSerial(const Arguments& a) {
  const int year = platform::FullYear(IntegerAt(a, 0));
  return DateOf({platform::DayNumber(year, IntegerAt(a, 1), IntegerAt(a, 2)), 0});
}

dao::Value TimeSerial(const Arguments& a) {
  const long long seconds = IntegerAt(a, 0) * 3600LL + IntegerAt(a, 1) * 60LL + IntegerAt(a, 2);
  return DateOf(platform::CarriedMoment(0, seconds));
}

// Of a date or its text; other texts are error 13.
double DateInText(const Arguments& a) {
  if (const auto* text = std::get_if<std::u16string>(&a[0]); text && !platform::FindDate(*text)) {
    Raise(platform::kErrTypeMismatch);
  }
  return a.Date(0);
}
dao::Value DateValue(const Arguments& a) { return dao::Date{std::trunc(DateInText(a))}; }
dao::Value TimeValue(const Arguments& a) { return TimeOf(DateInText(a)); }

enum class Interval { Year, Quarter, Month, DayOfYear, Day, Weekday, Week, Hour, Minute, Second };

Interval IntervalAt(const Arguments& a, std::size_t i) {
  struct Row {
    std::u16string_view name;
    Interval interval;
  };
  constexpr Row rows[] = {
      {u"yyyy", Interval::Year}, {u"q", Interval::Quarter}, {u"m", Interval::Month}, {u"y", Interval::DayOfYear},
      {u"d", Interval::Day},     {u"w", Interval::Weekday}, {u"ww", Interval::Week}, {u"h", Interval::Hour},
      {u"n", Interval::Minute},  {u"s", Interval::Second},
  };
  const std::u16string name = a.Text(i);
  for (const Row& row : rows) {
    if (platform::EqualIgnoringCase(name, row.name)) return row.interval;
  }
  Raise(platform::kErrInvalidCall);
}

// The day of the month moves back when the month has no such day.
Moment WithMonthsAdded(const Moment& moment, long long months) {
  const DateParts parts = platform::PartsOfDate(static_cast<double>(moment.day));
  const long long start = platform::DayNumber(parts.year, parts.month + months, 1);
  const long long next = platform::DayNumber(parts.year, parts.month + months + 1, 1);
  return {std::min(start + parts.day, next) - 1, moment.second};
}

dao::Value DateAdd(const Arguments& a) {
  const Interval interval = IntervalAt(a, 0);
  const long long number = a.Long(1);
  const Moment moment = platform::MomentOfDate(a.Date(2));
  switch (interval) {
    case Interval::Year: return DateOf(WithMonthsAdded(moment, number * 12));
    case Interval::Quarter: return DateOf(WithMonthsAdded(moment, number * 3));
    case Interval::Month: return DateOf(WithMonthsAdded(moment, number));
    case Interval::Week: return DateOf({moment.day + number * 7, moment.second});
    case Interval::Hour: return DateOf(platform::CarriedMoment(moment.day, moment.second + number * 3600));
    case Interval::Minute: return DateOf(platform::CarriedMoment(moment.day, moment.second + number * 60));
    case Interval::Second: return DateOf(platform::CarriedMoment(moment.day, moment.second + number));
    default: return DateOf({moment.day + number, moment.second});
  }
}

long long Months(const Moment& moment) {
  const DateParts parts = platform::PartsOfDate(static_cast<double>(moment.day));
  return parts.year * 12LL + parts.month - 1;
}

// How many boundaries lie between; "w" counts whole weeks instead.
long long Difference(Interval interval, const Moment& a, const Moment& b, const WeekRule& rule) {
  const auto units = [](const Moment& m, int seconds) {
    return m.day * (kSecondsOfDay / seconds) + m.second / seconds;
  };
  switch (interval) {
    case Interval::Year: return Months(b) / 12 - Months(a) / 12;
    case Interval::Quarter: return Months(b) / 3 - Months(a) / 3;
    case Interval::Month: return Months(b) - Months(a);
    case Interval::Weekday: return (b.day - a.day) / 7;
    case Interval::Week:
      return (StartOfWeek(b.day, rule.firstDay) - StartOfWeek(a.day, rule.firstDay)) / 7;
    case Interval::Hour: return units(b, 3600) - units(a, 3600);
    case Interval::Minute: return units(b, 60) - units(a, 60);
    case Interval::Second: return units(b, 1) - units(a, 1);
    default: return b.day - a.day;
  }
}

dao::Value DateDiff(const Arguments& a) {
  const WeekRule rule = FindWeekRule(a.LongOr(3, 1), a.LongOr(4, 1));
  const Moment from = platform::MomentOfDate(a.Date(1)), to = platform::MomentOfDate(a.Date(2));
  return platform::LongFromDouble(static_cast<double>(Difference(IntervalAt(a, 0), from, to, rule)));
}

dao::Value DatePart(const Arguments& a) {
  const WeekRule rule = FindWeekRule(a.LongOr(2, 1), a.LongOr(3, 1));
  const double date = a.Date(1);
  const DateParts parts = platform::PartsOfDate(date);
  const long long day = platform::MomentOfDate(date).day;
  switch (IntervalAt(a, 0)) {
    case Interval::Year: return std::int32_t{parts.year};
    case Interval::Quarter: return std::int32_t{(parts.month + 2) / 3};
    case Interval::Month: return std::int32_t{parts.month};
    case Interval::DayOfYear: return std::int32_t{DayOfYear(day)};
    case Interval::Day: return std::int32_t{parts.day};
    case Interval::Weekday: return std::int32_t{DayOfWeekFrom(day, rule.firstDay)};
    case Interval::Week: return std::int32_t{WeekOfYear(day, rule)};
    case Interval::Hour: return std::int32_t{parts.hour};
    case Interval::Minute: return std::int32_t{parts.minute};
    default: return std::int32_t{parts.second};
  }
}

// A number from 1 to `most` that stands for a name.
int NumberOfName(const Arguments& a, std::size_t most) {
  const std::size_t number = a.Count(0, 1);
  if (number > most) Raise(platform::kErrInvalidCall);
  return static_cast<int>(number);
}

platform::NameForm FormAt(const Arguments& a, std::size_t i) {
  return i < a.Size() && a.Boolean(i) ? platform::NameForm::Short : platform::NameForm::Full;
}

dao::Value MonthName(const Arguments& a) {
  return std::u16string(platform::MonthName(NumberOfName(a, 12), FormAt(a, 1)));
}

// Days count from Monday unless the third argument says otherwise.
dao::Value WeekdayName(const Arguments& a) {
  const WeekRule rule = FindWeekRule(a.LongOr(2, 0), 1);
  const int day = (NumberOfName(a, 7) + rule.firstDay - 2) % 7 + 1;
  return std::u16string(platform::DayName(day, FormAt(a, 1)));
}

constexpr Function kFunctions[] = {
    {u"DATE", 0, 0, 0, {dao::dbDate}, Today},
    {u"DATEADD", 3, 3, 0b100, {dao::dbDate}, DateAdd},
    {u"DATEDIFF", 3, 5, 0b110, {dao::dbLong}, DateDiff},
    {u"DATEPART", 2, 4, 0b10, {dao::dbInteger}, DatePart},
    {u"DATESERIAL", 3, 3, 0, {dao::dbDate}, DateSerial},
    {u"DATEVALUE", 1, 1, 1, {dao::dbDate}, DateValue},
    {u"DAY", 1, 1, 1, {dao::dbInteger}, Day},
    {u"HOUR", 1, 1, 1, {dao::dbInteger}, Hour},
    {u"MINUTE", 1, 1, 1, {dao::dbInteger}, Minute},
    {u"MONTH", 1, 1, 1, {dao::dbInteger}, Month},
    {u"MONTHNAME", 1, 2, 1, {dao::dbText}, MonthName},
    {u"NOW", 0, 0, 0, {dao::dbDate}, Now},
    {u"SECOND", 1, 1, 1, {dao::dbInteger}, Second},
    {u"TIME", 0, 0, 0, {dao::dbDate}, TimeNow},
    {u"TIMESERIAL", 3, 3, 0, {dao::dbDate}, TimeSerial},
    {u"TIMEVALUE", 1, 1, 1, {dao::dbDate}, TimeValue},
    {u"WEEKDAY", 1, 2, 1, {dao::dbInteger}, Weekday},
    {u"WEEKDAYNAME", 1, 3, 1, {dao::dbText}, WeekdayName},
    {u"YEAR", 1, 1, 1, {dao::dbInteger}, Year},
};

}  // namespace

std::span<const Function> DateFunctions() { return kFunctions; }

}  // namespace zimbrat::jet
