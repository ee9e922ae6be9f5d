#include "app/period_rules.h"

#include "suite/manners.h"
#include "platform/dates.h"
#include "platform/numbers.h"
#include "platform/text.h"

namespace zimbrat::app {
namespace {

constexpr int kMostMonths = 1200;
constexpr int kMonthsOfYear = 12;

// Months since year 0 of the period's first day, as the generator will take it.
int MonthCount(std::int16_t year, std::int16_t month) {
  const platform::DateParts first = platform::PartsOfDate(platform::DateSerial(year, month, 1));
  return kMonthsOfYear * first.year + first.month;
}

bool ReadNumber(std::u16string_view text, std::int16_t& number) {
  return !suite::Attempt([&] { number = platform::IntegerFromText(platform::TrimBlanks(text)); });
}

std::u16string WrongNumber(std::u16string_view what, std::u16string_view text) {
  return std::u16string(what) + u" okresu obliczeniowego „" + std::u16string(text) +
         u"” nie jest liczbą. Popraw okresy.";
}

}  // namespace

std::optional<std::u16string> FindPeriodFault(const generator::Periods& periods) {
  int months = 0;
  const auto error = suite::Attempt([&] {
    months = MonthCount(periods.yearTo, periods.monthTo) -
             MonthCount(periods.yearFrom, periods.monthFrom);
  });
  if (error) return u"Rok okresu obliczeniowego jest spoza kalendarza. Popraw okresy.";
  if (months < kMostMonths) return std::nullopt;
  return u"Zakres okresów obliczeniowych obejmuje ponad 100 lat. Popraw okresy.";
}

std::optional<std::u16string> ReadPeriods(const PeriodTexts& texts, generator::Periods& periods) {
  const struct {
    std::u16string_view what;
    std::u16string_view text;
    std::int16_t& number;
  } inputs[] = {{u"Miesiąc", texts.monthFrom, periods.monthFrom},
                {u"Rok", texts.yearFrom, periods.yearFrom},
                {u"Miesiąc", texts.monthTo, periods.monthTo},
                {u"Rok", texts.yearTo, periods.yearTo}};
  for (const auto& input : inputs) {
    if (!ReadNumber(input.text, input.number)) return WrongNumber(input.what, input.text);
  }
  return FindPeriodFault(periods);
}

}  // namespace zimbrat::app
