#include "platform/dates.h"

#include <cmath>

namespace zimbrat::platform {
namespace {

constexpr long long kSecondsOfDay = 86400;
constexpr long long kDaysFrom0000To1899 = 693899;  // 0000-03-01 to 1899-12-30

// Years are counted from March, so that the leap day is the last of its year.
long long DayOfMonth(long long year, int month, long long day) {
  if (month < 3) --year;
  const long long era = (year >= 0 ? year : year - 399) / 400;
  const long long yearOfEra = year - era * 400;
  const long long monthFromMarch = (month + 9) % 12;
  const long long dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 +
                             (153 * monthFromMarch + 2) / 5;
  return era * 146097 + dayOfEra + day - 1 - kDaysFrom0000To1899;
}

void SetDay(long long number, DateParts& parts) {
  const long long days = number + kDaysFrom0000To1899;
  const long long era = days / 146097;  // never negative in the range of dates
  const long long dayOfEra = days % 146097;
  const long long yearOfEra =
      (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
  const long long dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const long long monthFromMarch = (5 * dayOfYear + 2) / 153;
  parts.day = static_cast<int>(dayOfYear - (153 * monthFromMarch + 2) / 5 + 1);
  parts.month = static_cast<int>(monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9);
  parts.year = static_cast<int>(yearOfEra + era * 400 + (parts.month < 3 ? 1 : 0));
}

double Joined(double day, double time) { return day < 0 ? day - time : day + time; }

}  // namespace

long long DayNumber(long long year, long long month, long long day) {
  const long long months = year * 12 + month - 1;
  const long long carriedYear = (months >= 0 ? months : months - 11) / 12;
  return DayOfMonth(carriedYear, static_cast<int>(months - carriedYear * 12) + 1, day);
}

int FullYear(int year) {
  if (year < 0 || year > 99) return year;
  return year + (year < 30 ? 2000 : 1900);
}

double DateSerial(int year, int month, int day) {
  return static_cast<double>(DayNumber(FullYear(year), month, day));
}

double TimeSerial(int hour, int minute, int second) {
  return static_cast<double>(hour * 3600LL + minute * 60LL + second) /
         static_cast<double>(kSecondsOfDay);
}

double DateFromParts(const DateParts& parts) {
  return Joined(DateSerial(parts.year, parts.month, parts.day),
                TimeSerial(parts.hour, parts.minute, parts.second));
}

Moment MomentOfDate(double date) {
  Moment moment;
  if (!IsDateInRange(date)) return moment;
  moment.day = static_cast<long long>(std::trunc(date));
  const double time = std::fabs(date - std::trunc(date));
  moment.second = std::llround(time * static_cast<double>(kSecondsOfDay));
  return CarriedMoment(moment.day, moment.second);
}

Moment CarriedMoment(long long day, long long second) {
  const long long days = (second >= 0 ? second : second - (kSecondsOfDay - 1)) / kSecondsOfDay;
  return {day + days, second - days * kSecondsOfDay};
}

double DateFromMoment(const Moment& moment) {
  return Joined(static_cast<double>(moment.day),
                static_cast<double>(moment.second) / static_cast<double>(kSecondsOfDay));
}

DateParts PartsOfDate(double date) {
  DateParts parts;
  if (!IsDateInRange(date)) return parts;
  const Moment moment = MomentOfDate(date);
  SetDay(moment.day, parts);
  parts.hour = static_cast<int>(moment.second / 3600);
  parts.minute = static_cast<int>(moment.second / 60 % 60);
  parts.second = static_cast<int>(moment.second % 60);
  return parts;
}

bool IsDateInRange(double date) { return date > -657435.0 && date < 2958466.0; }

std::optional<double> DayOf(int year, int month, int day) {
  if (month < 1 || month > 12 || day < 1 || day > 31 || year < 100 || year > 9999) return std::nullopt;
  const double date = static_cast<double>(DayNumber(year, month, day));
  if (PartsOfDate(date).day != day) return std::nullopt;
  return date;
}

int DayOfWeek(long long day) { return static_cast<int>(((day + 6) % 7 + 7) % 7) + 1; }

}  // namespace zimbrat::platform
