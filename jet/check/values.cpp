// The values in the fields of a row.
#include <algorithm>

#include "long_values.h"
#include "rows.h"
#include "jet/index/collation.h"

namespace zimbrat::jet::check {

namespace {

constexpr std::byte kCompressedMark[] = {std::byte{0xFF}, std::byte{0xFE}};
// The start of a Memo that a key can depend on: each unit takes at most two bytes, and each change
// between one and two bytes a unit one more.
constexpr std::size_t kKeyBytesOfMemo = 3 * kMaxIndexedUnits + 2;
// Beyond this the text of a Memo is not decoded; its pages are walked all the same.
constexpr std::size_t kDecodedBytesOfMemo = 64 * 1024;

bool IsCompressed(ConstBytes bytes) {
  return bytes.size() >= 2 &&
         std::equal(std::begin(kCompressedMark), std::end(kCompressedMark), bytes.begin());
}

std::optional<std::u16string> DecodePlain(ConstBytes bytes) {
  if (bytes.size() % 2 != 0) return std::nullopt;
  std::u16string text(bytes.size() / 2, u'\0');
  for (std::size_t i = 0; i < text.size(); ++i) text[i] = static_cast<char16_t>(Get16(bytes, 2 * i));
  return text;
}

std::optional<std::u16string> DecodeCompressed(ConstBytes bytes) {
  std::u16string text(bytes.size(), u'\0');  // cut at the end: a letter takes a byte at least
  std::size_t count = 0;
  bool isCompressed = true;
  for (std::size_t i = 0; i < bytes.size();) {
    if (Get8(bytes, i) == 0) {
      isCompressed = !isCompressed;
      ++i;
    } else if (isCompressed) {
      text[count++] = static_cast<char16_t>(Get8(bytes, i++));
    } else {
      if (i + 1 == bytes.size()) return std::nullopt;
      text[count++] = static_cast<char16_t>(Get16(bytes, i));
      i += 2;
    }
  }
  text.resize(count);
  return text;
}

dao::Decimal DecimalOf(ConstBytes bytes) {
  dao::Decimal decimal;
  decimal.negative = (Get8(bytes, 0) & 0x80) != 0;
  for (std::size_t i = 0; i < decimal.magnitude.size(); ++i)
    decimal.magnitude[i] = Get32(bytes, 1 + 4 * i);
  return decimal;
}

dao::Guid GuidOf(ConstBytes bytes) {
  dao::Guid guid;
  std::copy(bytes.begin(), bytes.end(), guid.bytes.begin());
  return guid;
}

std::u16string TextUpTo(ConstBytes bytes, std::size_t limit) {
  if (bytes.size() > limit) bytes = bytes.first(limit - limit % 2);
  // A cut inside a unit loses only what no key depends on.
  std::optional<std::u16string> text = DecodeText(bytes);
  if (!text && !bytes.empty()) text = DecodeText(bytes.first(bytes.size() - 1));
  return text.value_or(u"");
}

dao::Value TextValue(Checking& check, const ColumnLayout& column, ConstBytes field) {
  if (column.type == dao::dbText) return DecodeText(field).value_or(u"");
  return TextUpTo(PeekLongValue(check, field, kKeyBytesOfMemo).start, kKeyBytesOfMemo);
}

std::u16string CheckText(const ColumnLayout& column, ConstBytes field) {
  const std::optional<std::u16string> text = DecodeText(field);
  if (!text) return TextOf(u"kolumna „", column.name, u"” nie zawiera tekstu");
  if (text->size() * 2 <= column.length) return {};
  return TextOf(u"tekst kolumny „", column.name, u"” ma ", text->size(), u" znaków");
}

std::u16string CheckLongField(Checking& check, const TableLayout& table, const ColumnLayout& column,
                              ConstBytes field) {
  const LongValue value = CheckLongValue(check, table, field, kDecodedBytesOfMemo);
  if (!value.fault.empty()) return TextOf(u"kolumna „", column.name, u"”: ", value.fault);
  const bool isWhole = value.start.size() == value.length;
  if (column.type == dao::dbMemo && isWhole && !DecodeText(value.start)) {
    return TextOf(u"kolumna „", column.name, u"” nie zawiera tekstu");
  }
  return {};
}

}  // namespace

std::optional<std::u16string> DecodeText(ConstBytes bytes) {
  return IsCompressed(bytes) ? DecodeCompressed(bytes.subspan(2)) : DecodePlain(bytes);
}

dao::Value ValueOfField(Checking& check, const ColumnLayout& column,
                        std::optional<ConstBytes> field) {
  if (column.IsBoolean()) return field.has_value();
  if (!field) return dao::Null{};
  if (column.FixedSize() != 0 && field->size() != column.FixedSize()) return dao::Null{};
  switch (column.type) {
    case dao::dbByte:
      return GetLittle<std::uint8_t>(*field, 0);
    case dao::dbInteger:
      return GetLittle<std::int16_t>(*field, 0);
    case dao::dbLong:
      return GetLittle<std::int32_t>(*field, 0);
    case dao::dbCurrency:
      return dao::Currency{GetLittle<std::int64_t>(*field, 0)};
    case dao::dbSingle:
      return GetLittle<float>(*field, 0);
    case dao::dbDouble:
      return GetLittle<double>(*field, 0);
    case dao::dbDate:
      return dao::Date{GetLittle<double>(*field, 0)};
    case dao::dbGUID:
      return GuidOf(*field);
    case kColumnTypeDecimal:
      return DecimalOf(*field);
    case dao::dbText:
    case dao::dbMemo:
      return TextValue(check, column, *field);
    default:
      return dao::Binary(field->begin(), field->end());
  }
}

std::u16string CheckField(Checking& check, const TableLayout& table, const ColumnLayout& column,
                          ConstBytes field) {
  if (column.IsBoolean()) return {};
  if (const std::size_t size = column.FixedSize()) {
    if (field.size() == size) return {};
    return TextOf(u"kolumna „", column.name, u"” ma ", field.size(), u" bajtów zamiast ", size);
  }
  if (column.IsLongValue()) return CheckLongField(check, table, column, field);
  if (column.type == dao::dbText) return CheckText(column, field);
  if (field.size() <= column.length) return {};
  return TextOf(u"kolumna „", column.name, u"” ma ", field.size(), u" bajtów");
}

}  // namespace zimbrat::jet::check
