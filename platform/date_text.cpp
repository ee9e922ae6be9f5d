// Dates as text, both ways.
#include <algorithm>
#include <cstdio>
#include <string>

#include "number_text.h"
#include "platform/dates.h"
#include "platform/text.h"

namespace zimbrat::platform {
namespace {

class DateReader {
 public:
  explicit DateReader(std::u16string_view text) : text_(TrimBlanks(text)) {}

  std::optional<double> ReadAll() {
    if (const std::optional<double> time = ReadTime(); time && AtEnd()) return time;
    position_ = 0;
    const std::optional<double> day = ReadDay();
    if (!day || AtEnd()) return day;
    if (!Take(u' ')) return std::nullopt;
    SkipBlanks();
    const std::optional<double> time = ReadTime();
    if (!time || !AtEnd()) return std::nullopt;
    return *day < 0 ? *day - *time : *day + *time;
  }

  std::optional<double> ReadWholeTime() {
    const std::optional<double> time = ReadTime();
    return AtEnd() ? time : std::nullopt;
  }

 private:
  bool AtEnd() const { return position_ == text_.size(); }
  void SkipBlanks() {
    while (Take(u' ')) {
    }
  }
  bool Take(char16_t sign) {
    if (AtEnd() || text_[position_] != sign) return false;
    ++position_;
    return true;
  }

  // A number of 1 to `most` digits; -1 when there is none.
  int ReadNumber(int most, int* width = nullptr) {
    int value = 0;
    int digits = 0;
    while (!AtEnd() && IsDigit(text_[position_])) {
      if (++digits > most) return -1;
      value = value * 10 + (text_[position_++] - u'0');
    }
    if (width != nullptr) *width = digits;
    return digits == 0 ? -1 : value;
  }

  std::optional<double> ReadDay() {
    int width = 0;
    const int first = ReadNumber(4, &width);
    if (first < 0 || AtEnd()) return std::nullopt;
    const char16_t sign = text_[position_++];
    if (sign == u' ' && width <= 2) return ReadDayWithName(first);
    if (sign != u'-' && sign != u'.' && sign != u'/') return std::nullopt;
    const int month = ReadNumber(2);
    if (!Take(sign)) return std::nullopt;
    if (width == 4) return first < 100 ? std::nullopt : DayOf(first, month, ReadNumber(2));
    return width <= 2 ? ReadYear(month, first) : std::nullopt;
  }

  // "5 lutego 2003", the day read already.
  std::optional<double> ReadDayWithName(int day) {
    SkipBlanks();
    const std::size_t end = std::min(text_.find(u' ', position_), text_.size());
    const std::u16string_view word = text_.substr(position_, end - position_);
    position_ = end;
    SkipBlanks();
    for (int month = 1; month <= 12; ++month) {
      for (const NameForm form : {NameForm::Full, NameForm::Short, NameForm::Genitive}) {
        if (EqualIgnoringCase(word, MonthName(month, form))) return ReadYear(month, day);
      }
    }
    return std::nullopt;
  }

  std::optional<double> ReadYear(int month, int day) {
    int width = 0;
    const int year = ReadNumber(4, &width);
    if (width == 2) return DayOf(FullYear(year), month, day);
    return width == 4 ? DayOf(year, month, day) : std::nullopt;
  }

  std::optional<double> ReadTime() {
    int hour = ReadNumber(2);
    if (hour < 0 || !Take(u':')) return std::nullopt;
    const int minute = ReadNumber(2);
    const int second = Take(u':') ? ReadNumber(2) : 0;
    if (minute < 0 || minute > 59 || second < 0 || second > 59 || !ReadHalf(hour) || hour > 23) {
      return std::nullopt;
    }
    return TimeSerial(hour, minute, second);
  }

  // AM or PM behind a time; false when the hour does not go with it.
  bool ReadHalf(int& hour) {
    const std::size_t before = position_;
    SkipBlanks();
    const std::u16string_view word = text_.substr(position_, 2);
    const bool afternoon = EqualIgnoringCase(word, u"PM");
    if (!afternoon && !EqualIgnoringCase(word, u"AM")) {
      position_ = before;
      return true;
    }
    position_ += 2;
    if (hour < 1 || hour > 12) return false;
    hour = hour % 12 + (afternoon ? 12 : 0);
    return true;
  }

  std::u16string_view text_;
  std::size_t position_ = 0;
};

}  // namespace

std::u16string TextFromDate(double date) {
  const DateParts parts = PartsOfDate(date);
  char day[32], time[32];
  std::snprintf(day, sizeof day, "%04d-%02d-%02d", parts.year, parts.month, parts.day);
  std::snprintf(time, sizeof time, "%02d:%02d:%02d", parts.hour, parts.minute, parts.second);
  const Moment moment = MomentOfDate(date);
  if (moment.second == 0) return Utf16FromUtf8(day);
  if (moment.day == 0) return Utf16FromUtf8(time);
  return Utf16FromUtf8(std::string(day) + " " + time);
}

std::optional<double> FindDate(std::u16string_view text) { return DateReader(text).ReadAll(); }

std::optional<double> FindTime(std::u16string_view text) { return DateReader(text).ReadWholeTime(); }

}  // namespace zimbrat::platform
