// Numbers: rounding, roots, angles and chance.
#include <bit>
#include <cmath>

#include "jet/file/errors.h"
#include "jet/table/convert.h"
#include "jet/table/decimal.h"
#include "platform/numbers.h"

#include "function.h"
#include "operators.h"

namespace zimbrat::jet {

namespace {

using platform::ExactNumber;

double Finite(double number) {
  if (!std::isfinite(number)) Raise(platform::kErrOverflow);
  return number;
}

// An exact number as the type that `like` has.
dao::Value ExactAs(const dao::Value& like, const ExactNumber& number) {
  if (std::holds_alternative<dao::Decimal>(like)) {
    if (const auto decimal = FindDecimal(number)) return *decimal;
  } else if (const auto scaled = platform::FindScaled(number, 4)) {
    return dao::Currency{*scaled};
  }
  Raise(platform::kErrOverflow);
}

// Whole numbers stay as they are, amounts and Decimals are rounded exactly, dates stay dates.
template <class Exactly, class Roughly>
dao::Value RoundedBy(const Arguments& a, Exactly exactly, Roughly roughly) {
  switch (KindOfNumber(a[0])) {
    case NumberKind::Whole: return a.Long(0);
    case NumberKind::Currency:
    case NumberKind::Decimal: return ExactAs(a[0], exactly(*FindExact(a[0])));
    case NumberKind::Date: return dao::Date{roughly(a.Number(0))};
    default: return roughly(a.Number(0));
  }
}

ExactNumber Truncated(ExactNumber number) {
  if (number.Places() <= 0) return number;
  if (number.point <= 0) return {};
  number.figures.resize(static_cast<std::size_t>(number.point));
  number.figures.erase(number.figures.find_last_not_of('0') + 1);
  return number;
}

ExactNumber Floor(const ExactNumber& number) {
  const ExactNumber whole = Truncated(number);
  if (!number.negative || whole == number) return whole;
  return Sum(whole, platform::ExactFromWhole(-1));
}

dao::Value Int(const Arguments& a) {
  return RoundedBy(a, Floor, [](double number) { return std::floor(number); });
}

dao::Value Fix(const Arguments& a) {
  return RoundedBy(a, Truncated, [](double number) { return std::trunc(number); });
}

// By the figures that are shown, so that 2.345 is a tie.
double RoundedDouble(double number, int places) {
  if (!std::isfinite(number)) return number;
  const ExactNumber exact = platform::ExactFromDouble(number);
  return exact.Places() <= places ? number : DoubleFromExact(platform::Rounded(exact, places));
}

dao::Value Round(const Arguments& a) {
  constexpr int kMostPlaces = 22;
  const int places = a.Size() > 1 ? a.Long(1) : 0;
  if (places < 0 || places > kMostPlaces) Raise(platform::kErrInvalidCall);
  return RoundedBy(
      a, [&](const ExactNumber& number) { return platform::Rounded(number, places); },
      [&](double number) { return RoundedDouble(number, places); });
}

dao::Value Abs(const Arguments& a) { return a.Number(0) < 0 ? Negated(a[0]) : Negated(Negated(a[0])); }

dao::Value Sgn(const Arguments& a) {
  const double number = a.Number(0);
  return std::int32_t{number > 0 ? 1 : number < 0 ? -1 : 0};
}

dao::Value Sqr(const Arguments& a) {
  if (a.Number(0) < 0) Raise(platform::kErrInvalidCall);
  return std::sqrt(a.Number(0));
}

dao::Value Log(const Arguments& a) {
  if (!(a.Number(0) > 0)) Raise(platform::kErrInvalidCall);
  return std::log(a.Number(0));
}

dao::Value Exp(const Arguments& a) { return Finite(std::exp(a.Number(0))); }
dao::Value Sin(const Arguments& a) { return Finite(std::sin(a.Number(0))); }
dao::Value Cos(const Arguments& a) { return Finite(std::cos(a.Number(0))); }
dao::Value Tan(const Arguments& a) { return Finite(std::tan(a.Number(0))); }
dao::Value Atn(const Arguments& a) { return std::atan(a.Number(0)); }

// A step of Visual Basic's generator from a seed made of the statement's time and the argument: one row differs
// from the other by what it passes. A negative argument alone is a seed that repeats.
dao::Value Rnd(const Arguments& a) {
  constexpr std::uint64_t kModulus = 1 << 24;
  const double argument = a.Size() > 0 ? a.Number(0) : 0;
  std::uint64_t seed = std::bit_cast<std::uint64_t>(argument);
  if (!(argument < 0)) seed ^= std::bit_cast<std::uint64_t>(a.Now()) * 0x9E3779B97F4A7C15u;
  seed ^= seed >> 29;
  seed *= 0xBF58476D1CE4E5B9u;
  const std::uint64_t next = ((seed >> 40) * 1140671485u + 12820163u) % kModulus;
  return static_cast<float>(next) / static_cast<float>(kModulus);
}

constexpr Function kFunctions[] = {
    {u"ABS", 1, 1, 1, kAsFirst, Abs},
    {u"ATN", 1, 1, 1, {dao::dbDouble}, Atn},
    {u"COS", 1, 1, 1, {dao::dbDouble}, Cos},
    {u"EXP", 1, 1, 1, {dao::dbDouble}, Exp},
    {u"FIX", 1, 1, 1, kAsFirst, Fix},
    {u"INT", 1, 1, 1, kAsFirst, Int},
    {u"LOG", 1, 1, 1, {dao::dbDouble}, Log},
    {u"RND", 0, 1, 1, {dao::dbSingle}, Rnd},
    {u"ROUND", 1, 2, 1, kAsFirst, Round},
    {u"SGN", 1, 1, 1, {dao::dbInteger}, Sgn},
    {u"SIN", 1, 1, 1, {dao::dbDouble}, Sin},
    {u"SQR", 1, 1, 1, {dao::dbDouble}, Sqr},
    {u"TAN", 1, 1, 1, {dao::dbDouble}, Tan},
};

}  // namespace

std::span<const Function> NumberFunctions() { return kFunctions; }

}  // namespace zimbrat::jet
