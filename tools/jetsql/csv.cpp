#include "csv.h"

#include <array>
#include <charconv>

#include "platform/dates.h"
#include "platform/text.h"

namespace zimbrat::tools {

namespace {

constexpr std::int64_t kCurrencyScale = 10'000;

std::u16string HexText(const std::byte* bytes, std::size_t size) {
  constexpr std::u16string_view digits = u"0123456789ABCDEF";
  std::u16string text;
  for (std::size_t i = 0; i < size; ++i) {
    text += digits[std::to_integer<unsigned>(bytes[i]) >> 4];
    text += digits[std::to_integer<unsigned>(bytes[i]) & 15];
  }
  return text;
}

std::u16string Quoted(std::u16string_view text) {
  std::u16string quoted = u"\"";
  for (const char16_t c : text) quoted += c == u'"' ? std::u16string(u"\"\"") : std::u16string(1, c);
  return quoted + u"\"";
}

// The shortest digits that read back as the same number.
template <class Number>
std::u16string FloatingText(Number value) {
  std::array<char, 32> text;
  const auto end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
  return {text.data(), end};
}

// Digits with a point `scale` places from the right.
std::u16string WithPoint(std::u16string digits, std::size_t scale, bool negative) {
  if (digits.size() <= scale) digits.insert(0, scale + 1 - digits.size(), u'0');
  if (scale > 0) {
    digits.insert(digits.size() - scale, 1, u'.');
    digits.erase(digits.find_last_not_of(u'0') + 1);
    if (digits.back() == u'.') digits.pop_back();
  }
  return (negative ? u"-" : u"") + digits;
}

std::u16string AmountText(std::int64_t scaled) {
  const bool negative = scaled < 0;
  const std::uint64_t size = negative ? std::uint64_t{0} - static_cast<std::uint64_t>(scaled)
                                      : static_cast<std::uint64_t>(scaled);
  const std::u16string whole = platform::DecimalText(static_cast<long long>(size / kCurrencyScale));
  std::u16string part = platform::DecimalText(static_cast<long long>(size % kCurrencyScale));
  part.insert(0, 4 - part.size(), u'0');
  return WithPoint(whole + part, 4, negative);
}

// Divided by ten again and again: 128 bits have no type of their own.
std::u16string DecimalDigits(dao::Decimal value) {
  std::u16string digits;
  bool isZero = false;
  while (!isZero) {
    std::uint64_t rest = 0;
    isZero = true;
    for (std::uint32_t& word : value.magnitude) {
      rest = rest << 32 | word;
      word = static_cast<std::uint32_t>(rest / 10);
      rest %= 10;
      isZero = isZero && word == 0;
    }
    digits.insert(digits.begin(), static_cast<char16_t>(u'0' + rest));
  }
  return digits;
}

std::u16string GuidText(const dao::Guid& guid) {
  // The first three groups are numbers, lowest byte first.
  constexpr std::array<std::size_t, 16> order = {3, 2, 1, 0, 5, 4, 7, 6, 8, 9, 10, 11, 12, 13, 14, 15};
  std::u16string text = u"{";
  for (std::size_t i = 0; i < order.size(); ++i) {
    if (i == 4 || i == 6 || i == 8 || i == 10) text += u'-';
    text += HexText(&guid.bytes[order[i]], 1);
  }
  return text + u"}";
}

struct ToText {
  std::u16string operator()(dao::Null) const { return {}; }
  std::u16string operator()(bool value) const { return value ? u"True" : u"False"; }
  std::u16string operator()(dao::Currency value) const { return AmountText(value.scaled); }
  std::u16string operator()(float value) const { return FloatingText(value); }
  std::u16string operator()(double value) const { return FloatingText(value); }
  std::u16string operator()(dao::Date value) const { return platform::TextFromDate(value.days); }
  std::u16string operator()(const dao::Binary& value) const { return HexText(value.data(), value.size()); }
  std::u16string operator()(const dao::Guid& value) const { return GuidText(value); }
  std::u16string operator()(const dao::Decimal& value) const {
    return WithPoint(DecimalDigits(value), value.scale, value.negative);
  }
  std::u16string operator()(const std::u16string& value) const {
    const bool plain = !value.empty() && value.find_first_of(u",\"\r\n") == value.npos;
    return plain ? value : Quoted(value);
  }
  template <class Whole>
  std::u16string operator()(Whole value) const {
    return platform::DecimalText(value);
  }
};

template <class Of>
std::u16string Line(dao::Recordset& rows, Of of) {
  std::u16string line;
  const auto fields = rows.Fields();
  for (int i = 0; i < fields->Count(); ++i) {
    if (i > 0) line += u',';
    line += of(*fields->Item(i));
  }
  return line + u"\r\n";
}

}  // namespace

std::u16string CsvValue(const dao::Value& value) { return std::visit(ToText{}, value); }

std::u16string CsvHeader(dao::Recordset& rows) {
  return Line(rows, [](dao::Field& field) { return CsvValue(field.Name()); });
}

std::u16string CsvRow(dao::Recordset& rows) {
  return Line(rows, [](dao::Field& field) { return CsvValue(field.Value()); });
}

}  // namespace zimbrat::tools
