#include "platform/exact_number.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "number_text.h"
#include "platform/text.h"

namespace zimbrat::platform {
namespace {

constexpr int kFarExponent = 100'000;  // beyond every number type, yet small enough to add to

// Takes the zeros off both ends.
ExactNumber Normalized(bool negative, std::string figures, int point) {
  const std::size_t first = figures.find_first_not_of('0');
  if (first == std::string::npos) return {};
  figures.erase(figures.find_last_not_of('0') + 1);
  figures.erase(0, first);
  return {negative, std::move(figures), point - static_cast<int>(first)};
}

int ExponentOf(std::string_view text) {
  int exponent = 0;
  if (!text.empty() && text.front() == '+') text.remove_prefix(1);
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), exponent);
  if (error == std::errc::result_out_of_range) exponent = text.front() == '-' ? -kFarExponent : kFarExponent;
  return std::clamp(exponent, -kFarExponent, kFarExponent);
}

// "-12.5e3" and its like.
ExactNumber ExactFromDigits(std::string_view text) {
  const bool negative = !text.empty() && text.front() == '-';
  if (negative) text.remove_prefix(1);
  const std::size_t mark = std::min(text.find('e'), text.size());
  const int exponent = mark < text.size() ? ExponentOf(text.substr(mark + 1)) : 0;
  std::string figures(text.substr(0, mark));
  const std::size_t point = std::min(figures.find('.'), figures.size());
  if (point < figures.size()) figures.erase(point, 1);
  return Normalized(negative, std::move(figures), static_cast<int>(point) + exponent);
}

// The figures as a whole number with `places` of them behind the point, none of them lost.
std::string WholeFigures(const ExactNumber& number, int places) {
  return number.figures + std::string(static_cast<std::size_t>(places - number.Places()), '0');
}

int CompareMagnitudes(const ExactNumber& a, const ExactNumber& b) {
  if (a.figures.empty() || b.figures.empty()) {
    return static_cast<int>(!a.figures.empty()) - static_cast<int>(!b.figures.empty());
  }
  if (a.point != b.point) return a.point < b.point ? -1 : 1;
  return a.figures < b.figures ? -1 : b.figures < a.figures ? 1 : 0;
}

// `larger` plus or minus `smaller`, from the last figure on.
std::string Combined(std::string larger, const std::string& smaller, bool subtract) {
  int carry = 0;
  for (std::size_t i = 1; i <= larger.size(); ++i) {
    char& figure = larger[larger.size() - i];
    const int other = (i <= smaller.size() ? smaller[smaller.size() - i] - '0' : 0) + carry;
    const int result = figure - '0' + (subtract ? -other : other);
    carry = result < 0 || result > 9 ? 1 : 0;
    figure = static_cast<char>('0' + (result + 10) % 10);
  }
  return carry == 0 ? larger : "1" + larger;
}

}  // namespace

int ExactNumber::Places() const { return static_cast<int>(figures.size()) - point; }

ExactNumber ExactFromWhole(std::int64_t value, int scale) {
  ExactNumber number = ExactFromDigits(std::to_string(value));
  if (!number.figures.empty()) number.point -= scale;
  return number;
}

ExactNumber ExactFromDouble(double value, int precision) {
  char buffer[64];
  const auto [end, error] =
      std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::scientific, precision - 1);
  return ExactFromDigits(std::string_view(buffer, static_cast<std::size_t>(end - buffer)));
}

std::optional<ExactNumber> FindExactNumber(std::u16string_view text, const NumberLocale& locale) {
  const std::optional<std::string> digits = FindDigits(text, locale);
  if (!digits) return std::nullopt;
  return ExactFromDigits(*digits);
}

ExactNumber Negated(ExactNumber number) {
  number.negative = !number.negative && !number.figures.empty();
  return number;
}

ExactNumber Sum(const ExactNumber& a, const ExactNumber& b) {
  if (CompareMagnitudes(a, b) < 0) return Sum(b, a);
  if (b.figures.empty()) return a;
  const int places = std::max(a.Places(), b.Places());
  const std::string larger = WholeFigures(a, places);
  std::string figures = Combined(larger, WholeFigures(b, places), a.negative != b.negative);
  const int point = static_cast<int>(figures.size()) - places;
  return Normalized(a.negative, std::move(figures), point);
}

ExactNumber Product(const ExactNumber& a, const ExactNumber& b) {
  std::string figures(a.figures.size() + b.figures.size(), '0');
  for (std::size_t i = a.figures.size(); i-- > 0;) {
    int carry = 0;
    for (std::size_t j = b.figures.size(); j-- > 0;) {
      char& figure = figures[i + j + 1];
      const int sum = (a.figures[i] - '0') * (b.figures[j] - '0') + (figure - '0') + carry;
      figure = static_cast<char>('0' + sum % 10);
      carry = sum / 10;
    }
    figures[i] = static_cast<char>('0' + carry);
  }
  return Normalized(a.negative != b.negative, std::move(figures), a.point + b.point);
}

int Compare(const ExactNumber& a, const ExactNumber& b) {
  if (a.negative != b.negative) return a.negative ? -1 : 1;
  const int order = CompareMagnitudes(a, b);
  return a.negative ? -order : order;
}

ExactNumber Rounded(ExactNumber number, int places, Ties ties) {
  if (number.Places() <= places) return number;
  const int kept = number.point + places;
  if (kept < 0) return {};
  const auto cut = static_cast<std::size_t>(kept);
  const char next = number.figures[cut];
  const bool tie = next == '5' && cut + 1 == number.figures.size();
  const bool odd = cut > 0 && (number.figures[cut - 1] - '0') % 2 == 1;
  const bool up = tie ? ties == Ties::Away || odd : next >= '5';
  std::string figures = number.figures.substr(0, cut);
  if (up) figures = Combined("0" + figures, "1", false);
  return Normalized(number.negative, std::move(figures), number.point + (up ? 1 : 0));
}

std::optional<std::int64_t> FindScaled(const ExactNumber& number, int scale) {
  const ExactNumber rounded = Rounded(number, scale);
  if (rounded.figures.empty()) return 0;
  if (rounded.point + scale > 19) return std::nullopt;
  const std::string figures = (rounded.negative ? "-" : "") + WholeFigures(rounded, scale);
  std::int64_t value = 0;
  const auto [end, error] = std::from_chars(figures.data(), figures.data() + figures.size(), value);
  if (error != std::errc()) return std::nullopt;
  return value;
}

double DoubleFromExact(const ExactNumber& number) {
  if (number.figures.empty()) return 0;
  const std::string digits = "0." + number.figures + "e" + std::to_string(number.point);
  double value = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  if (error == std::errc::result_out_of_range) value = number.point > 0 ? HUGE_VAL : 0;
  return number.negative ? -value : value;
}

std::u16string TextFromExact(const ExactNumber& number, char16_t decimalSign) {
  if (number.figures.empty()) return u"0";
  const int places = std::max(number.Places(), 0);
  std::string figures = WholeFigures(number, places);
  const auto behind = static_cast<std::size_t>(places);
  if (figures.size() <= behind) figures.insert(0, behind + 1 - figures.size(), '0');
  std::u16string text = Utf16FromUtf8((number.negative ? "-" : "") + figures);
  if (behind > 0) text.insert(text.size() - behind, 1, decimalSign);
  return text;
}

}  // namespace zimbrat::platform
