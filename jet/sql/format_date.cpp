// Dates by a pattern of d, m, y, h, n, s, q, w, c, t and AM/PM.
#include <algorithm>
#include <optional>

#include "platform/dates.h"
#include "platform/text.h"

#include "format.h"
#include "operators.h"

namespace zimbrat::jet {

namespace {

using platform::DateParts;
using platform::NameForm;

std::u16string TwoDigits(int number) { return (number < 10 ? u"0" : u"") + platform::DecimalText(number); }

// The words for halves of the day.
struct HalfMark {
  std::u16string_view pattern, before, after;
};
constexpr HalfMark kHalfMarks[] = {
    {u"AM/PM", u"AM", u"PM"}, {u"am/pm", u"am", u"pm"}, {u"A/P", u"A", u"P"},
    {u"a/p", u"a", u"p"},     {u"AMPM", u"AM", u"PM"},  {u"ampm", u"AM", u"PM"},
};

const HalfMark* FindHalfMark(Section rest) {
  for (const HalfMark& mark : kHalfMarks) {
    const bool fits = rest.size() >= mark.pattern.size() &&
                      std::equal(mark.pattern.begin(), mark.pattern.end(), rest.begin(),
                                 [](char16_t sign, const PatternUnit& unit) { return unit.Is(sign); });
    if (fits) return &mark;
  }
  return nullptr;
}

bool HasHalfMark(Section section) {
  for (std::size_t i = 0; i < section.size(); ++i) {
    if (section[i].IsAnyOf(u"aA") && FindHalfMark(section.subspan(i))) return true;
  }
  return false;
}

// How many of a letter in a row mean something together.
std::size_t LongestRun(char16_t letter) {
  switch (letter) {
    case u'd': return 6;
    case u't': return 5;
    case u'm':
    case u'y': return 4;
    case u'h':
    case u'n':
    case u's':
    case u'w': return 2;
    case u'q':
    case u'c': return 1;
    default: return 0;
  }
}

class DateWriter {
 public:
  DateWriter(double date, Section section, const WeekRule& weeks)
      : date_(date),
        parts_(platform::PartsOfDate(date)),
        day_(platform::MomentOfDate(date).day),
        section_(section),
        weeks_(weeks),
        halves_(HasHalfMark(section)) {}

  std::u16string Write() {
    for (std::size_t i = 0; i < section_.size();) {
      const PatternUnit unit = section_[i];
      const char16_t letter = unit.literal ? u'\0' : platform::LowerCase(unit.unit);
      const HalfMark* mark = letter == u'a' ? FindHalfMark(section_.subspan(i)) : nullptr;
      if (mark) {
        text_ += parts_.hour < 12 ? mark->before : mark->after;
        i += mark->pattern.size();
      } else if (const std::size_t run = RunAt(i, letter); run > 0) {
        text_ += Item(letter, run);
        afterHour_ = letter == u'h';
        i += run;
      } else {
        text_ += unit.Is(u'/') ? u'-' : unit.unit;  // the locale's sign between the parts of a date
        ++i;
      }
    }
    return std::move(text_);
  }

 private:
  std::size_t RunAt(std::size_t at, char16_t letter) const {
    std::size_t run = 0;
    while (run < LongestRun(letter) && at + run < section_.size() && !section_[at + run].literal &&
           platform::LowerCase(section_[at + run].unit) == letter) {
      ++run;
    }
    return letter == u't' && run < LongestRun(letter) ? 0 : run;
  }

  static std::u16string Number(int number, std::size_t run) {
    return run == 1 ? platform::DecimalText(number) : TwoDigits(number);
  }

  std::u16string Item(char16_t letter, std::size_t run) const {
    switch (letter) {
      case u'd': return DayItem(run);
      case u'm': return afterHour_ && run <= 2 ? Number(parts_.minute, run) : MonthItem(run);
      case u'y': return YearItem(run);
      case u'h': return Number(halves_ ? (parts_.hour + 11) % 12 + 1 : parts_.hour, run);
      case u'n': return Number(parts_.minute, run);
      case u's': return Number(parts_.second, run);
      case u'q': return platform::DecimalText((parts_.month + 2) / 3);
      case u'w':
        return platform::DecimalText(run == 1 ? DayOfWeekFrom(day_, weeks_.firstDay) : WeekOfYear(day_, weeks_));
      case u't': return TwoDigits(parts_.hour) + u":" + TwoDigits(parts_.minute) + u":" + TwoDigits(parts_.second);
      default: return platform::TextFromDate(date_);
    }
  }

  std::u16string DayItem(std::size_t run) const {
    switch (run) {
      case 3: return std::u16string(platform::DayName(platform::DayOfWeek(day_), NameForm::Short));
      case 4: return std::u16string(platform::DayName(platform::DayOfWeek(day_), NameForm::Full));
      case 5: return platform::TextFromDate(static_cast<double>(day_));
      case 6:
        return platform::DecimalText(parts_.day) + u" " +
               std::u16string(platform::MonthName(parts_.month, NameForm::Genitive)) + u" " + YearItem(4);
      default: return Number(parts_.day, run);
    }
  }

  std::u16string MonthItem(std::size_t run) const {
    if (run <= 2) return Number(parts_.month, run);
    return std::u16string(platform::MonthName(parts_.month, run == 3 ? NameForm::Short : NameForm::Full));
  }

  std::u16string YearItem(std::size_t run) const {
    if (run == 1) return platform::DecimalText(DayOfYear(day_));
    if (run < 4) return TwoDigits(parts_.year % 100);
    const std::u16string year = platform::DecimalText(parts_.year);
    return std::u16string(4 - year.size(), u'0') + year;
  }

  double date_;
  DateParts parts_;
  long long day_;
  Section section_;
  WeekRule weeks_;
  bool halves_;
  bool afterHour_ = false;  // "hh:mm" means minutes
  std::u16string text_;
};

}  // namespace

std::u16string FormatDate(double date, Section section, const WeekRule& weeks) {
  return DateWriter(date, section, weeks).Write();
}

}  // namespace zimbrat::jet
