#include "platform/numbers.h"

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>

#include "number_text.h"
#include "platform/error_numbers.h"
#include "platform/exact_number.h"
#include "platform/run_time_error.h"
#include "platform/text.h"

namespace zimbrat::platform {
namespace {

bool IsExponentMark(char16_t unit) {
  return unit == u'e' || unit == u'E' || unit == u'd' || unit == u'D';
}

void CopyDigits(std::u16string_view text, std::size_t& position, std::string& digits) {
  while (position < text.size() && IsDigit(text[position])) {
    digits.push_back(static_cast<char>(text[position++]));
  }
}

// Takes the exponent at `position` when it is whole, else leaves both as they were.
void CopyExponent(std::u16string_view text, std::size_t& position, std::string& digits) {
  std::size_t at = position;
  if (at == text.size() || !IsExponentMark(text[at])) return;
  ++at;
  std::string exponent = "e";
  if (at < text.size() && (text[at] == u'+' || text[at] == u'-')) {
    exponent.push_back(static_cast<char>(text[at++]));
  }
  const std::size_t firstDigit = at;
  CopyDigits(text, at, exponent);
  if (at == firstDigit) return;
  digits += exponent;
  position = at;
}

bool HasDigit(const std::string& digits) {
  return digits.find_first_of("0123456789") != std::string::npos;
}

std::u16string WithoutBlanks(std::u16string_view text) {
  std::u16string rest;
  for (const char16_t unit : text) {
    if (unit != u' ' && unit != u'\t' && unit != u'\n' && unit != u'\r') rest.push_back(unit);
  }
  return rest;
}

std::u16string_view TrimBlanksAndTabs(std::u16string_view text) {
  const std::size_t first = text.find_first_not_of(u" \t");
  if (first == std::u16string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(u" \t") - first + 1);
}

// Takes one sign off the front or the back, or a pair of parentheses; true for minus.
bool TakeSign(std::u16string_view& text) {
  bool negative = false;
  if (text.size() > 1 && text.front() == u'(' && text.back() == u')') {
    negative = true;
    text = text.substr(1, text.size() - 2);
  } else if (!text.empty() && (text.front() == u'-' || text.front() == u'+')) {
    negative = text.front() == u'-';
    text.remove_prefix(1);
  } else if (!text.empty() && (text.back() == u'-' || text.back() == u'+')) {
    negative = text.back() == u'-';
    text.remove_suffix(1);
  }
  text = TrimBlanksAndTabs(text);
  return negative;
}

// Digits with group signs between them, a decimal sign and an exponent, up to the text's end.
std::optional<std::string> FindUnsigned(std::u16string_view text, const NumberLocale& locale) {
  std::size_t at = 0;
  std::string digits;
  CopyDigits(text, at, digits);
  while (!digits.empty() && at + 1 < text.size() && text[at] == locale.groupSign &&
         IsDigit(text[at + 1])) {
    ++at;
    CopyDigits(text, at, digits);
  }
  if (at < text.size() &&
      (text[at] == locale.decimalSign || (locale.acceptPoint && text[at] == u'.'))) {
    ++at;
    digits.push_back('.');
    CopyDigits(text, at, digits);
  }
  if (!HasDigit(digits)) return std::nullopt;
  CopyExponent(text, at, digits);
  if (at != text.size()) return std::nullopt;
  return digits;
}

template <class Integer>
Integer IntegerInRange(double value) {
  const double rounded = RoundHalfEven(value);
  if (!(rounded >= std::numeric_limits<Integer>::min() &&
        rounded <= std::numeric_limits<Integer>::max())) {
    throw OwnError(kErrOverflow);
  }
  return static_cast<Integer>(rounded);
}

std::int16_t CheckedInteger(std::int32_t value) {
  if (value < std::numeric_limits<std::int16_t>::min() ||
      value > std::numeric_limits<std::int16_t>::max()) {
    throw OwnError(kErrOverflow);
  }
  return static_cast<std::int16_t>(value);
}

}  // namespace

double Val(std::u16string_view text) {
  const std::u16string compact = WithoutBlanks(text);
  std::size_t at = 0;
  const bool negative = !compact.empty() && compact[0] == u'-';
  if (negative || (!compact.empty() && compact[0] == u'+')) ++at;
  if (at < compact.size() && compact[at] == u'&') {
    const double pattern = ReadRadixNumber(compact, at).value_or(0);
    return negative ? -pattern : pattern;
  }
  std::string digits;
  CopyDigits(compact, at, digits);
  const bool hasFraction = at < compact.size() && compact[at] == u'.';
  if (hasFraction) {
    digits.push_back('.');
    CopyDigits(compact, ++at, digits);
  }
  if (!HasDigit(digits)) return 0;
  CopyExponent(compact, at, digits);
  const char16_t next = at < compact.size() ? compact[at] : u'\0';
  if (hasFraction && (next == u'%' || next == u'&')) throw OwnError(kErrTypeMismatch);
  const double value = DoubleFromDigits(digits);
  return negative ? -value : value;
}

std::optional<std::string> FindDigits(std::u16string_view text, const NumberLocale& locale) {
  std::u16string_view rest = TrimBlanksAndTabs(text);
  const bool negative = TakeSign(rest);
  std::optional<std::string> digits;
  if (!rest.empty() && rest[0] == u'&') {
    std::size_t at = 0;
    const std::optional<std::int32_t> pattern = ReadRadixNumber(rest, at);
    if (!pattern || at != rest.size()) return std::nullopt;
    digits = std::to_string(negative ? -std::int64_t{*pattern} : std::int64_t{*pattern});
  } else {
    digits = FindUnsigned(rest, locale);
    if (digits && negative) digits->insert(0, 1, '-');
  }
  return digits;
}

std::optional<double> FindNumber(std::u16string_view text, const NumberLocale& locale) {
  const std::optional<std::string> digits = FindDigits(text, locale);
  if (!digits) return std::nullopt;
  return DoubleFromDigits(*digits);
}

double DoubleFromText(std::u16string_view text, const NumberLocale& locale) {
  const std::optional<double> value = FindNumber(text, locale);
  if (!value) throw OwnError(kErrTypeMismatch);
  return *value;
}

std::int32_t LongFromText(std::u16string_view text, const NumberLocale& locale) {
  return LongFromDouble(DoubleFromText(text, locale));
}

std::int16_t IntegerFromText(std::u16string_view text, const NumberLocale& locale) {
  return IntegerFromDouble(DoubleFromText(text, locale));
}

std::optional<bool> FindBoolean(std::u16string_view text, const NumberLocale& locale) {
  const std::u16string_view word = TrimBlanksAndTabs(text);
  if (EqualIgnoringCase(word, u"True") || EqualIgnoringCase(word, u"#TRUE#")) return true;
  if (EqualIgnoringCase(word, u"False") || EqualIgnoringCase(word, u"#FALSE#")) return false;
  const std::optional<double> number = FindNumber(text, locale);
  if (!number) return std::nullopt;
  return *number != 0;
}

bool BooleanFromText(std::u16string_view text, const NumberLocale& locale) {
  const std::optional<bool> value = FindBoolean(text, locale);
  if (!value) throw OwnError(kErrTypeMismatch);
  return *value;
}

std::int16_t IntegerFromDouble(double value) { return IntegerInRange<std::int16_t>(value); }
std::int32_t LongFromDouble(double value) { return IntegerInRange<std::int32_t>(value); }

// By hand, so that a rounding mode that a foreign library left behind does not matter.
double RoundHalfEven(double value) {
  const double below = std::floor(value);
  const double fraction = value - below;
  if (fraction < 0.5) return below;
  if (fraction > 0.5) return below + 1;
  return std::fmod(below, 2) == 0 ? below : below + 1;
}

std::int16_t AddIntegers(std::int16_t a, std::int16_t b) { return CheckedInteger(a + b); }
std::int16_t MultiplyIntegers(std::int16_t a, std::int16_t b) { return CheckedInteger(a * b); }

std::u16string TextFromDouble(double value, char16_t decimalSign, int precision) {
  if (!std::isfinite(value)) return Utf16FromUtf8(std::to_string(value));
  ExactNumber number = ExactFromDouble(value, precision);
  const int exponent = number.point - 1;
  const bool large = exponent >= precision;
  const bool small = exponent < -4 || number.Places() > precision;
  if (number.figures.empty() || (!large && !small)) return TextFromExact(number, decimalSign);
  number.point = 1;
  return TextFromExact(number, decimalSign) + (exponent < 0 ? u"E-" : u"E+") +
         (std::abs(exponent) < 10 ? u"0" : u"") + DecimalText(std::abs(exponent));
}

}  // namespace zimbrat::platform
