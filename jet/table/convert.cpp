#include "jet/table/convert.h"

#include <cmath>
#include <limits>

#include "jet/file/errors.h"
#include "platform/dates.h"
#include "platform/numbers.h"
#include "platform/text.h"

namespace zimbrat::jet {

namespace {

constexpr double kCurrencyScale = 10000.0;

[[noreturn]] void RaiseConversion() { Raise(platform::kErrDataConversion); }

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
  if (platform::EqualIgnoringCase(*text, u"True")) return true;
  if (platform::EqualIgnoringCase(*text, u"False")) return false;
  return DoubleOf(value) != 0;
}

dao::Currency CurrencyOf(const dao::Value& value) {
  if (const auto* currency = std::get_if<dao::Currency>(&value)) return *currency;
  const double scaled = platform::RoundHalfEven(DoubleOf(value) * kCurrencyScale);
  if (std::abs(scaled) >= 9.2233720368547758e18) RaiseConversion();
  return {static_cast<std::int64_t>(scaled)};
}

float SingleOf(const dao::Value& value) {
  const double number = DoubleOf(value);
  if (std::abs(number) > std::numeric_limits<float>::max()) RaiseConversion();
  return static_cast<float>(number);
}

dao::Date DateOf(const dao::Value& value) {
  if (const auto* text = std::get_if<std::u16string>(&value)) {
    const std::optional<double> date = platform::FindDate(*text);
    if (date) return {*date};
  }
  const double days = DoubleOf(value);
  if (!platform::IsDateInRange(days)) RaiseConversion();
  return {days};
}

int HexDigit(char16_t c) {
  if (c >= u'0' && c <= u'9') return c - u'0';
  if (c >= u'a' && c <= u'f') return c - u'a' + 10;
  if (c >= u'A' && c <= u'F') return c - u'A' + 10;
  return -1;
}

// "{xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx}", braces optional; the first three groups are kept little-endian.
dao::Guid GuidOf(const dao::Value& value) {
  if (const auto* guid = std::get_if<dao::Guid>(&value)) return *guid;
  const auto* text = std::get_if<std::u16string>(&value);
  if (!text) RaiseConversion();
  std::vector<std::uint8_t> bytes;
  int high = -1;
  for (const char16_t c : *text) {
    if (c == u'{' || c == u'}' || c == u'-') continue;
    const int digit = HexDigit(c);
    if (digit < 0) RaiseConversion();
    if (high < 0) {
      high = digit;
    } else {
      bytes.push_back(static_cast<std::uint8_t>(high * 16 + digit));
      high = -1;
    }
  }
  constexpr std::array<std::size_t, 16> order = {3, 2, 1, 0, 5, 4, 7, 6, 8, 9, 10, 11, 12, 13, 14, 15};
  if (bytes.size() != order.size() || high >= 0) RaiseConversion();
  dao::Guid guid;
  for (std::size_t i = 0; i < order.size(); ++i) guid.bytes[i] = std::byte{bytes[order[i]]};
  return guid;
}

std::u16string TextOfGuid(const dao::Guid& guid) {
  constexpr std::u16string_view digits = u"0123456789ABCDEF";
  constexpr std::array<int, 20> order = {3, 2, 1, 0, -1, 5, 4, -1, 7, 6, -1, 8, 9, -1, 10, 11, 12, 13, 14, 15};
  std::u16string text = u"{";
  for (const int i : order) {
    if (i < 0) {
      text += u'-';
      continue;
    }
    const auto byte = std::to_integer<unsigned>(guid.bytes[static_cast<std::size_t>(i)]);
    text += digits[byte >> 4];
    text += digits[byte & 15];
  }
  return text + u"}";
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

double DoubleOfDecimal(const dao::Decimal& decimal) {
  double number = 0;
  for (const std::uint32_t word : decimal.magnitude) number = number * 4294967296.0 + word;
  number /= std::pow(10.0, decimal.scale);
  return decimal.negative ? -number : number;
}

dao::Decimal DecimalFor(const Column& column, const dao::Value& value) {
  if (const auto* decimal = std::get_if<dao::Decimal>(&value)) {
    if (decimal->scale == column.DecimalScale()) return *decimal;
  }
  const double scaled = platform::RoundHalfEven(DoubleOf(value) * std::pow(10.0, column.DecimalScale()));
  if (std::abs(scaled) >= 9.2233720368547758e18) RaiseConversion();
  const auto magnitude = static_cast<std::uint64_t>(std::abs(scaled));
  dao::Decimal decimal;
  decimal.negative = scaled < 0;
  decimal.magnitude = {0, 0, static_cast<std::uint32_t>(magnitude >> 32), static_cast<std::uint32_t>(magnitude)};
  decimal.scale = column.DecimalScale();
  return decimal;
}

struct DoubleFinder {
  std::optional<double> operator()(dao::Null) const { return std::nullopt; }
  std::optional<double> operator()(bool v) const { return v ? -1.0 : 0.0; }
  std::optional<double> operator()(std::uint8_t v) const { return v; }
  std::optional<double> operator()(std::int16_t v) const { return v; }
  std::optional<double> operator()(std::int32_t v) const { return v; }
  std::optional<double> operator()(dao::Currency v) const {
    return static_cast<double>(v.scaled) / kCurrencyScale;
  }
  std::optional<double> operator()(float v) const { return v; }
  std::optional<double> operator()(double v) const { return v; }
  std::optional<double> operator()(dao::Date v) const { return v.days; }
  std::optional<double> operator()(const std::u16string& v) const { return platform::FindNumber(v); }
  std::optional<double> operator()(const dao::Binary&) const { return std::nullopt; }
  std::optional<double> operator()(const dao::Guid&) const { return std::nullopt; }
  std::optional<double> operator()(const dao::Decimal& v) const { return DoubleOfDecimal(v); }
};

}  // namespace

std::optional<double> FindDouble(const dao::Value& value) { return std::visit(DoubleFinder{}, value); }

std::u16string TextOfValue(const dao::Value& value) {
  if (const auto* text = std::get_if<std::u16string>(&value)) return *text;
  if (const auto* date = std::get_if<dao::Date>(&value)) return platform::TextFromDate(date->days);
  if (const auto* guid = std::get_if<dao::Guid>(&value)) return TextOfGuid(*guid);
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
    case kTypeCurrency: return CurrencyOf(value);
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
