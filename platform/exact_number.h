// Exact decimal numbers: what amounts and Decimals are reckoned in, and what the texts of numbers are made of.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/numbers.h"

namespace zimbrat::platform {

// 0.figures times ten to the power of `point`: -12.5 is {true, "125", 2}.
struct ExactNumber {
  bool negative = false;
  std::string figures;  // ASCII, '0' neither first nor last; empty is zero
  int point = 0;

  // Figures behind the point.
  int Places() const;
  bool operator==(const ExactNumber&) const = default;
};

// value divided by ten to the power of `scale`.
ExactNumber ExactFromWhole(std::int64_t value, int scale = 0);
// The first `precision` figures of a finite number.
ExactNumber ExactFromDouble(double value, int precision = 15);
// As FindNumber, without the way over a Double.
std::optional<ExactNumber> FindExactNumber(std::u16string_view text, const NumberLocale& locale = {});

ExactNumber Negated(ExactNumber number);
ExactNumber Sum(const ExactNumber& a, const ExactNumber& b);
ExactNumber Product(const ExactNumber& a, const ExactNumber& b);
// Negative, zero or positive.
int Compare(const ExactNumber& a, const ExactNumber& b);

enum class Ties { ToEven, Away };
ExactNumber Rounded(ExactNumber number, int places, Ties ties = Ties::ToEven);

// The number times ten to the power of `scale`, half to even; nothing beyond 64 bits.
std::optional<std::int64_t> FindScaled(const ExactNumber& number, int scale);
// Infinite when it is too large, 0 when it is too small.
double DoubleFromExact(const ExactNumber& number);
// In full, without an exponent.
std::u16string TextFromExact(const ExactNumber& number, char16_t decimalSign = u',');

}  // namespace zimbrat::platform
