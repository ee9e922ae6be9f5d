// The accounting periods that the inputs ask for: what they cannot be is told before anything is made.
#pragma once

#include "generator/ModGeneruj.h"

#include <optional>
#include <string>
#include <string_view>

namespace zimbrat::app {

// The texts of the four inputs: months 1 to 12, years as the user typed them.
struct PeriodTexts {
  std::u16string_view monthFrom;
  std::u16string_view yearFrom;
  std::u16string_view monthTo;
  std::u16string_view yearTo;
};

// A sentence on what is wrong, or nothing and the periods. A first period later than the last one is
// right: no period is made then.
std::optional<std::u16string> ReadPeriods(const PeriodTexts& texts, generator::Periods& periods);

// The same for periods that are numbers already: more than a hundred years of them is a slip.
std::optional<std::u16string> FindPeriodFault(const generator::Periods& periods);

}  // namespace zimbrat::app
