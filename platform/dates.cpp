#include "platform/dates.h"

#include <cmath>
#include <cstdio>

#include "number_text.h"
#include "platform/text.h"

namespace zimbrat::platform {
namespace {

constexpr long long kSecondsOfDay = 86400;
constexpr long long kDaysFrom0000To1899 = 693899;  // 0000-03-01 to 1899-12-30

// Days since 1899-12-30 in the Gregorian calendar. Years are counted from March, so that the leap day
// is the last of its year.
long long DayNumber(long long year, int month, long long day) {
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

// A number of 1 to `most` digits at `position`; -1 when there is none.
int ReadNumber(std::u16string_view text, std::size_t& position, int most, int* width = nullptr) {
  int value = 0;
  int digits = 0;
  while (position < text.size() && IsDigit(text[position])) {
    if (++digits > most) return -1;
    value = value * 10 + (text[position++] - u'0');
  }
  if (width != nullptr) *width = digits;
  return digits == 0 ? -1 : value;
}

bool Take(std::u16string_view text, std::size_t& position, char16_t sign) {
  if (position == text.size() || text[position] != sign) return false;
  ++position;
  return true;
}

std::optional<double> DayOf(int year, int month, int day) {
  if (month < 1 || month > 12 || day < 1 || day > 31) return std::nullopt;
  const double date = DateSerial(year, month, day);
  if (!IsDateInRange(date) || PartsOfDate(date).day != day) return std::nullopt;
  return date;
}

std::optional<double> ReadDay(std::u16string_view text, std::size_t& position) {
  int width = 0;
  const int first = ReadNumber(text, position, 4, &width);
  if (first < 0) return std::nullopt;
  if (width == 4) {
    if (first < 100 || !Take(text, position, u'-')) return std::nullopt;
    const int month = ReadNumber(text, position, 2);
    if (!Take(text, position, u'-')) return std::nullopt;
    return DayOf(first, month, ReadNumber(text, position, 2));
  }
  const char16_t sign = position < text.size() ? text[position] : u'\0';
  if ((sign != u'.' && sign != u'/') || width > 2) return std::nullopt;
  ++position;
  const int month = ReadNumber(text, position, 2);
  if (!Take(text, position, sign)) return std::nullopt;
  const int year = ReadNumber(text, position, 4, &width);
  if (width != 4 && width != 2) return std::nullopt;
  return DayOf(year, month, first);
}

std::optional<double> ReadTime(std::u16string_view text, std::size_t& position) {
  const int hour = ReadNumber(text, position, 2);
  if (!Take(text, position, u':')) return std::nullopt;
  const int minute = ReadNumber(text, position, 2);
  const int second = Take(text, position, u':') ? ReadNumber(text, position, 2) : 0;
  if (hour < 0 || hour > 23 || minute < 0 || minute > 59 || second < 0 || second > 59) {
    return std::nullopt;
  }
  return TimeSerial(hour, minute, second);
}

}  // namespace

double DateSerial(int year, int month, int day) {
  long long fullYear = year;
  if (year >= 0 && year < 100) fullYear += year < 30 ? 2000 : 1900;
  const long long months = fullYear * 12 + month - 1LL;
  const long long carriedYear = (months >= 0 ? months : months - 11) / 12;
  return static_cast<double>(
      DayNumber(carriedYear, static_cast<int>(months - carriedYear * 12) + 1, day));
}

double TimeSerial(int hour, int minute, int second) {
  return static_cast<double>(hour * 3600LL + minute * 60LL + second) /
         static_cast<double>(kSecondsOfDay);
}

double DateFromParts(const DateParts& parts) {
  return Joined(DateSerial(parts.year, parts.month, parts.day),
                TimeSerial(parts.hour, parts.minute, parts.second));
}

DateParts PartsOfDate(double date) {
  DateParts parts;
  if (!IsDateInRange(date)) return parts;
  auto day = static_cast<long long>(std::trunc(date));
  const double time = std::fabs(date - std::trunc(date));
  long long seconds = std::llround(time * static_cast<double>(kSecondsOfDay));
  if (seconds == kSecondsOfDay) {
    seconds = 0;
    ++day;
  }
  SetDay(day, parts);
  parts.hour = static_cast<int>(seconds / 3600);
  parts.minute = static_cast<int>(seconds / 60 % 60);
  parts.second = static_cast<int>(seconds % 60);
  return parts;
}

bool IsDateInRange(double date) { return date > -657435.0 && date < 2958466.0; }

std::u16string TextFromDate(double date) {
  const DateParts parts = PartsOfDate(date);
  char text[64];
  std::snprintf(text, sizeof text, "%04d-%02d-%02d", parts.year, parts.month, parts.day);
  std::u16string result = Utf16FromUtf8(text);
  if (parts.hour == 0 && parts.minute == 0 && parts.second == 0) return result;
  std::snprintf(text, sizeof text, " %02d:%02d:%02d", parts.hour, parts.minute, parts.second);
  return result + Utf16FromUtf8(text);
}

std::optional<double> FindDate(std::u16string_view text) {
  const std::u16string_view words = TrimBlanks(text);
  std::size_t position = 0;
  if (const std::optional<double> time = ReadTime(words, position)) {
    if (position == words.size()) return time;
    return std::nullopt;
  }
  position = 0;
  const std::optional<double> day = ReadDay(words, position);
  if (!day || position == words.size()) return day;
  if (words[position] != u' ') return std::nullopt;
  while (words[position] == u' ') ++position;
  const std::optional<double> time = ReadTime(words, position);
  if (!time || position != words.size()) return std::nullopt;
  return Joined(*day, *time);
}

}  // namespace zimbrat::platform
