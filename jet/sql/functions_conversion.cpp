// Conversions: text that does not convert is error 13 here, Null 94, a number out of range 6.
#include <charconv>
#include <cmath>
#include <limits>

#include "jet/file/errors.h"
#include "jet/table/convert.h"
#include "platform/dates.h"
#include "platform/exact_number.h"
#include "platform/numbers.h"
#include "platform/text.h"

#include "format.h"
#include "function.h"

namespace zimbrat::jet {

namespace {

double ConvertedNumber(const Arguments& a) {
  if (a.IsNull(0)) Raise(platform::kErrInvalidNull);
  const std::optional<double> number = FindDouble(a[0]);
  if (!number) Raise(platform::kErrTypeMismatch);
  return *number;
}

template <class Integer>
dao::Value ToWhole(const Arguments& a) {
  const double rounded = platform::RoundHalfEven(ConvertedNumber(a));
  const bool fits =
      rounded >= std::numeric_limits<Integer>::min() && rounded <= std::numeric_limits<Integer>::max();
  if (!fits) Raise(platform::kErrOverflow);
  return static_cast<Integer>(rounded);
}

dao::Value ToSingle(const Arguments& a) {
  const double number = ConvertedNumber(a);
  if (!(std::abs(number) <= std::numeric_limits<float>::max())) Raise(platform::kErrOverflow);
  return static_cast<float>(number);
}

dao::Value ToDouble(const Arguments& a) {
  const double number = ConvertedNumber(a);
  if (!std::isfinite(number)) Raise(platform::kErrOverflow);
  return number;
}

dao::Value ToCurrency(const Arguments& a) {
  ConvertedNumber(a);
  const std::optional<dao::Currency> amount = FindCurrency(a[0]);
  if (!amount) Raise(platform::kErrOverflow);
  return *amount;
}

dao::Value ToBoolean(const Arguments& a) {
  if (const auto* text = std::get_if<std::u16string>(&a[0])) return platform::BooleanFromText(*text);
  return ConvertedNumber(a) != 0;
}

dao::Value ToDate(const Arguments& a) {
  if (a.IsNull(0)) Raise(platform::kErrInvalidNull);
  if (!FindDateValue(a[0])) Raise(platform::kErrTypeMismatch);
  return dao::Date{a.Date(0)};
}

dao::Value ToText(const Arguments& a) {
  if (const auto* boolean = std::get_if<bool>(&a[0])) return std::u16string(*boolean ? u"True" : u"False");
  return a.Text(0);
}

dao::Value ToVariant(const Arguments& a) { return a[0]; }

dao::Value Val(const Arguments& a) { return platform::Val(a.Text(0)); }

// A blank for the sign, a point, and nothing before it when the number is below 1.
dao::Value Str(const Arguments& a) {
  const double number = a.Number(0);
  const bool plain = !std::holds_alternative<std::u16string>(a[0]) && !std::holds_alternative<dao::Date>(a[0]);
  std::u16string text = plain ? TextOfValue(a[0]) : platform::TextFromDouble(number);
  if (const std::size_t comma = text.find(u','); comma != text.npos) text[comma] = u'.';
  const bool negative = text.front() == u'-';
  std::u16string_view rest(text);
  if (negative) rest.remove_prefix(1);
  if (rest.starts_with(u"0.")) rest.remove_prefix(1);
  return (negative ? u"-" : u" ") + std::u16string(rest);
}

// A negative number as its 16 or 32 bits.
dao::Value InRadix(const Arguments& a, int radix) {
  auto bits = static_cast<std::uint32_t>(a.Long(0));
  if (std::holds_alternative<std::int16_t>(a[0])) bits &= 0xFFFFu;
  char buffer[16];
  const auto [end, error] = std::to_chars(buffer, buffer + sizeof buffer, bits, radix);
  return platform::UpperCase(platform::Utf16FromUtf8(std::string_view(buffer, static_cast<std::size_t>(end - buffer))));
}
dao::Value Hex(const Arguments& a) { return InRadix(a, 16); }
dao::Value Oct(const Arguments& a) { return InRadix(a, 8); }

dao::Value IsNull(const Arguments& a) { return a.IsNull(0); }

dao::Value IsNumeric(const Arguments& a) {
  if (std::holds_alternative<dao::Date>(a[0])) return false;
  return FindExact(a[0]).has_value();
}

dao::Value IsDate(const Arguments& a) {
  if (const auto* text = std::get_if<std::u16string>(&a[0])) return platform::FindDate(*text).has_value();
  return std::holds_alternative<dao::Date>(a[0]);
}

dao::Value Format(const Arguments& a) {
  const std::u16string pattern = a.Size() > 1 && !a.IsNull(1) ? a.Text(1) : std::u16string();
  const WeekRule rule = FindWeekRule(a.LongOr(2, 1), a.LongOr(3, 1));
  return FormatValue(a[0], pattern, rule);
}

constexpr Function kFunctions[] = {
    {u"CBOOL", 1, 1, 0, {dao::dbBoolean}, ToBoolean},
    {u"CBYTE", 1, 1, 0, {dao::dbByte}, ToWhole<std::uint8_t>},
    {u"CCUR", 1, 1, 0, {dao::dbCurrency}, ToCurrency},
    {u"CDATE", 1, 1, 0, {dao::dbDate}, ToDate},
    {u"CDBL", 1, 1, 0, {dao::dbDouble}, ToDouble},
    {u"CINT", 1, 1, 0, {dao::dbInteger}, ToWhole<std::int16_t>},
    {u"CLNG", 1, 1, 0, {dao::dbLong}, ToWhole<std::int32_t>},
    {u"CSNG", 1, 1, 0, {dao::dbSingle}, ToSingle},
    {u"CSTR", 1, 1, 0, {dao::dbText}, ToText},
    {u"CVAR", 1, 1, 0, kAsFirst, ToVariant},
    {u"CVDATE", 1, 1, 1, {dao::dbDate}, ToDate},
    {u"FORMAT", 1, 4, 0, {dao::dbText}, Format},
    {u"HEX", 1, 1, 1, {dao::dbText}, Hex},
    {u"ISDATE", 1, 1, 0, {dao::dbBoolean}, IsDate},
    {u"ISNULL", 1, 1, 0, {dao::dbBoolean}, IsNull},
    {u"ISNUMERIC", 1, 1, 0, {dao::dbBoolean}, IsNumeric},
    {u"OCT", 1, 1, 1, {dao::dbText}, Oct},
    {u"STR", 1, 1, 1, {dao::dbText}, Str},
    {u"VAL", 1, 1, 0, {dao::dbDouble}, Val},
};

}  // namespace

std::span<const Function> ConversionFunctions() { return kFunctions; }

}  // namespace zimbrat::jet
