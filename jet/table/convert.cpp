#include "jet/table/convert.h"

#include <cmath>
#include <limits>

#include "jet/file/errors.h"
#include "jet/table/decimal.h"
#include "jet/table/guid_text.h"
#include "platform/dates.h"
#include "platform/numbers.h"

namespace zimbrat::jet {

namespace {

constexpr int kCurrencyPlaces = 4;

using platform::ExactNumber;

[[noreturn]] void RaiseConversion() { Raise(platform::kErrDataConversion); }

template <class T>
T Required(std::optional<T> value) {
  if (!value) RaiseConversion();
  return *std::move(value);
}

double DoubleOf(const dao::Value& value) {
  const std::optional<double> number = FindDouble(value);
  if (!number || !std::isfinite(*number)) RaiseConversion();
  return *number;
}

template <class T>
T WholeNumberOf(const dao::Value& value) {
  const double number = platform::RoundHalfEven(DoubleOf(value));
  if (number < std::numeric_limits<T>::min() || number > std::numeric_limits<T>::max()) RaiseConversion();
  return static_cast<T>(number);
}

bool BooleanOf(const dao::Value& value) {
  if (dao::IsNull(value)) return false;
  const auto* text = std::get_if<std::u16string>(&value);
  if (!text) return DoubleOf(value) != 0;
  return Required(platform::FindBoolean(*text));
}

float SingleOf(const dao::Value& value) {
  const double number = DoubleOf(value);
  if (std::abs(number) > std::numeric_limits<float>::max()) RaiseConversion();
  return static_cast<float>(number);
}

dao::Date DateOf(const dao::Value& value) {
  const double days = Required(FindDateValue(value));
  if (!platform::IsDateInRange(days)) RaiseConversion();
  return {days};
}

dao::Guid GuidOf(const dao::Value& value) {
  if (const auto* guid = std::get_if<dao::Guid>(&value)) return *guid;
  const auto* text = std::get_if<std::u16string>(&value);
  return Required(text ? FindGuid(*text) : std::nullopt);
}

dao::Value TextFor(const Column& column, const dao::Value& value) {
  if (std::holds_alternative<dao::Binary>(value)) RaiseConversion();
  std::u16string text = TextOfValue(value);
  if (column.type == kTypeText && text.size() * 2 > column.length) {
    Raise(platform::kErrFieldTooSmall, column.name);
  }
  return text;
}

dao::Value BinaryFor(const Column& column, const dao::Value& value) {
  const auto* bytes = std::get_if<dao::Binary>(&value);
  if (!bytes) RaiseConversion();
  if (column.type == kTypeBinary && bytes->size() > column.length) {
    Raise(platform::kErrFieldTooSmall, column.name);
  }
  return *bytes;
}

dao::Decimal DecimalFor(const Column& column, const dao::Value& value) {
  return Required(FindDecimal(Required(FindExact(value)), column.DecimalScale(), column.DecimalPrecision()));
}

struct DoubleFinder {
  std::optional<double> operator()(dao::Null) const { return std::nullopt; }
  std::optional<double> operator()(bool v) const { return v ? -1.0 : 0.0; }
  std::optional<double> operator()(std::uint8_t v) const { return v; }
  std::optional<double> operator()(std::int16_t v) const { return v; }
  std::optional<double> operator()(std::int32_t v) const { return v; }
  std::optional<double> operator()(dao::Currency v) const {
    return static_cast<double>(v.scaled) / 10000.0;
  }
  std::optional<double> operator()(float v) const { return v; }
  std::optional<double> operator()(double v) const { return v; }
  std::optional<double> operator()(dao::Date v) const { return v.days; }
  std::optional<double> operator()(const std::u16string& v) const {
    const std::optional<ExactNumber> number = platform::FindExactNumber(v);
    if (!number) return std::nullopt;
    return DoubleFromExact(*number);
  }
  std::optional<double> operator()(const dao::Binary&) const { return std::nullopt; }
  std::optional<double> operator()(const dao::Guid&) const { return std::nullopt; }
  std::optional<double> operator()(const dao::Decimal& v) const { return DoubleFromExact(ExactFromDecimal(v)); }
};

}  // namespace

std::optional<double> FindDouble(const dao::Value& value) { return std::visit(DoubleFinder{}, value); }

std::optional<ExactNumber> FindExact(const dao::Value& value) {
  if (const auto* amount = std::get_if<dao::Currency>(&value)) {
    return platform::ExactFromWhole(amount->scaled, kCurrencyPlaces);
  }
  if (const auto* decimal = std::get_if<dao::Decimal>(&value)) return ExactFromDecimal(*decimal);
  if (const auto* text = std::get_if<std::u16string>(&value)) return platform::FindExactNumber(*text);
  const std::optional<double> number = FindDouble(value);
  if (!number || !std::isfinite(*number)) return std::nullopt;
  const bool single = std::holds_alternative<float>(value);
  return platform::ExactFromDouble(*number, single ? platform::kSingleDigits : platform::kDoubleDigits);
}

std::optional<dao::Currency> FindCurrency(const dao::Value& value) {
  if (const auto* currency = std::get_if<dao::Currency>(&value)) return *currency;
  const std::optional<ExactNumber> number = FindExact(value);
  const auto scaled = number ? platform::FindScaled(*number, kCurrencyPlaces) : std::nullopt;
  if (!scaled) return std::nullopt;
  return dao::Currency{*scaled};
}

std::optional<double> FindDateValue(const dao::Value& value) {
  if (const auto* text = std::get_if<std::u16string>(&value)) {
    if (const std::optional<double> date = platform::FindDate(*text)) return date;
  }
  return FindDouble(value);
}

std::u16string TextOfValue(const dao::Value& value) {
  if (const auto* text = std::get_if<std::u16string>(&value)) return *text;
  if (const auto* date = std::get_if<dao::Date>(&value)) return platform::TextFromDate(date->days);
  if (const auto* guid = std::get_if<dao::Guid>(&value)) return TextFromGuid(*guid);
  if (const auto* single = std::get_if<float>(&value)) {
    return platform::TextFromDouble(*single, u',', platform::kSingleDigits);
  }
  if (std::holds_alternative<dao::Currency>(value) || std::holds_alternative<dao::Decimal>(value)) {
    return platform::TextFromExact(*FindExact(value));
  }
  const std::optional<double> number = FindDouble(value);
  return number ? platform::TextFromDouble(*number) : std::u16string();
}

dao::Value ConvertToColumn(const Column& column, const dao::Value& value) {
  if (column.type == kTypeBoolean) return BooleanOf(value);
  if (dao::IsNull(value)) return value;
  switch (column.type) {
    case kTypeByte: return WholeNumberOf<std::uint8_t>(value);
    case kTypeInteger: return WholeNumberOf<std::int16_t>(value);
    case kTypeLong: return WholeNumberOf<std::int32_t>(value);
    case kTypeCurrency: return Required(FindCurrency(value));
    case kTypeSingle: return SingleOf(value);
    case kTypeDouble: return DoubleOf(value);
    case kTypeDate: return DateOf(value);
    case kTypeText:
    case kTypeMemo: return TextFor(column, value);
    case kTypeGuid: return GuidOf(value);
    case kTypeDecimal: return DecimalFor(column, value);
    case kTypeBinary:
    case kTypeLongBinary: return BinaryFor(column, value);
    default: RaiseConversion();
  }
}

}  // namespace zimbrat::jet
