// Dates as OLE automation keeps them: days since 1899-12-30 in a Double, the fraction the time of
// day (for days before that the fraction still counts forwards in magnitude).
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zimbrat::platform {

struct DateParts {
  int year = 1899, month = 12, day = 30;
  int hour = 0, minute = 0, second = 0;
};

// A date as it can be reckoned with: days since 1899-12-30 and the seconds of the day, which always count
// forwards.
struct Moment {
  long long day = 0;
  long long second = 0;
};
// Rounded to the second.
Moment MomentOfDate(double date);
double DateFromMoment(const Moment& moment);
// Seconds below 0 or beyond the day carry over.
Moment CarriedMoment(long long day, long long second);

// Days since 1899-12-30; months and days outside their range carry over. Every year is meant as it stands.
long long DayNumber(long long year, long long month, long long day);
// 0 to 29 are years from 2000 on, 30 to 99 from 1930 on.
int FullYear(int year);
// Months and days outside their range carry over, as Visual Basic's DateSerial; years as FullYear.
double DateSerial(int year, int month, int day);
double TimeSerial(int hour, int minute, int second);
// Day and time put together; for days before 1899-12-30 the time is subtracted.
double DateFromParts(const DateParts& parts);
// Rounded to the second.
DateParts PartsOfDate(double date);

// Years 100 to 9999.
bool IsDateInRange(double date);
// Nothing when the month has no such day, or the year is outside the range.
std::optional<double> DayOf(int year, int month, int day);

// "yyyy-mm-dd", "hh:mm:ss" or both: how this engine shows dates as text. A time alone belongs to day 0.
std::u16string TextFromDate(double date);
// A date, a time or both: yyyy-mm-dd, dd.mm.yyyy, d/m/yyyy (one sign of - . /), "5 lutego 2003"; nothing
// when it is none.
std::optional<double> FindDate(std::u16string_view text);
// hh:nn[:ss] [AM|PM] as a part of a day.
std::optional<double> FindTime(std::u16string_view text);

// Polish names; months from 1, days of the week from 1 for Sunday.
enum class NameForm { Full, Short, Genitive };
std::u16string_view MonthName(int month, NameForm form);
std::u16string_view DayName(int dayOfWeek, NameForm form);
// 1 for Sunday.
int DayOfWeek(long long day);

}  // namespace zimbrat::platform
