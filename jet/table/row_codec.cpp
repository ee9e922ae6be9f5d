#include "jet/table/row_codec.h"

#include <algorithm>
#include <cmath>

#include "jet/file/errors.h"

namespace zimbrat::jet {

namespace {

constexpr std::size_t kSizeColumnCount = 2;
constexpr std::size_t kSizeVariableOffset = 2;
constexpr std::size_t kMinRowSize = 4;  // so that a pointer can take its place
constexpr std::size_t kMinCompressedText = 3;
constexpr std::size_t kMaxCompressedBytes = 1024;
constexpr std::size_t kSizeDecimal = 17;

[[noreturn]] void RaiseBadRow() { RaiseDamaged(u"wiersz tabeli jest nieczytelny"); }

// The variable part of a row, found from its end.
struct VariablePart {
  ConstBytes row;
  std::size_t count = 0;
  std::size_t table = 0;  // offset of the entry of the last column's end

  std::size_t Start(std::size_t index) const {
    return Get16(row, table + kSizeVariableOffset * (count - index));
  }
  ConstBytes Value(std::size_t index) const {
    const std::size_t start = Start(index);
    const std::size_t end = Get16(row, table + kSizeVariableOffset * (count - index - 1));
    if (start > end || end > table) RaiseBadRow();
    return row.subspan(start, end - start);
  }
};

std::size_t MaskSize(std::size_t columns) { return (columns + 7) / 8; }

VariablePart FindVariablePart(ConstBytes row, std::size_t maskSize) {
  VariablePart part;
  part.row = row;
  const std::size_t fromEnd = maskSize + kSizeVariableOffset;
  if (row.size() < kSizeColumnCount + fromEnd) RaiseBadRow();
  part.count = Get16(row, row.size() - fromEnd);
  const std::size_t tableSize = kSizeVariableOffset * (part.count + 1);
  if (part.count > kMaxColumns + 1 || row.size() < kSizeColumnCount + fromEnd + tableSize) RaiseBadRow();
  part.table = row.size() - fromEnd - tableSize;
  return part;
}

bool MaskBit(ConstBytes mask, std::size_t id) { return (Get8(mask, id / 8) >> (id % 8) & 1) != 0; }

std::vector<std::byte> Copy(ConstBytes bytes) { return {bytes.begin(), bytes.end()}; }

template <class T>
FieldBytes Number(T value) {
  FieldBytes field{true, std::vector<std::byte>(sizeof(T))};
  PutLittle(Bytes(field.bytes), 0, value);
  return field;
}

template <class T>
T NumberOf(const FieldBytes& field) {
  if (field.bytes.size() < sizeof(T)) RaiseBadRow();
  return GetLittle<T>(field.bytes, 0);
}

std::vector<std::byte> PlainText(std::u16string_view text) {
  std::vector<std::byte> bytes(text.size() * 2);
  for (std::size_t i = 0; i < text.size(); ++i) Put16(bytes, 2 * i, text[i]);
  return bytes;
}

bool IsCompressible(std::u16string_view text) {
  return text.size() >= kMinCompressedText && text.size() + 2 <= kMaxCompressedBytes &&
         std::all_of(text.begin(), text.end(), [](char16_t c) { return c >= 1 && c <= 0xFF; });
}

// Fixed Text is filled up with blanks, as the real engine does.
FieldBytes EncodeFixedText(const Column& column, std::u16string_view text) {
  std::u16string padded(text);
  padded.resize(std::max<std::size_t>(padded.size(), column.length / 2u), u' ');
  return {true, PlainText(padded)};
}

FieldBytes EncodeDecimal(const dao::Decimal& value) {
  FieldBytes field{true, std::vector<std::byte>(kSizeDecimal)};
  Put8(field.bytes, 0, value.negative ? 0x80 : 0);
  for (std::size_t i = 0; i < 4; ++i) Put32(field.bytes, 1 + 4 * i, value.magnitude[i]);
  return field;
}

dao::Decimal DecodeDecimal(const Column& column, const FieldBytes& field) {
  if (field.bytes.size() < kSizeDecimal) RaiseBadRow();
  dao::Decimal value;
  value.negative = (Get8(field.bytes, 0) & 0x80) != 0;
  for (std::size_t i = 0; i < 4; ++i) value.magnitude[i] = Get32(field.bytes, 1 + 4 * i);
  value.scale = column.DecimalScale();
  return value;
}

struct ValueEncoder {
  const Column& column;

  FieldBytes operator()(dao::Null) const { return {}; }
  FieldBytes operator()(bool v) const { return {v, {}}; }
  FieldBytes operator()(std::uint8_t v) const { return Number(v); }
  FieldBytes operator()(std::int16_t v) const { return Number(v); }
  FieldBytes operator()(std::int32_t v) const { return Number(v); }
  FieldBytes operator()(dao::Currency v) const { return Number(v.scaled); }
  // No negative zero: it would have another index key than zero.
  FieldBytes operator()(float v) const { return Number(v + 0.0f); }
  FieldBytes operator()(double v) const { return Number(v + 0.0); }
  FieldBytes operator()(dao::Date v) const { return Number(v.days + 0.0); }
  FieldBytes operator()(const std::u16string& v) const {
    if (column.IsFixed()) return EncodeFixedText(column, v);
    return {true, EncodeText(v, (column.flags2 & kColumnCompressed) != 0)};
  }
  FieldBytes operator()(const dao::Binary& v) const {
    FieldBytes field{true, v};
    if (column.IsFixed()) field.bytes.resize(column.length);
    return field;
  }
  FieldBytes operator()(const dao::Guid& v) const {
    return {true, std::vector<std::byte>(v.bytes.begin(), v.bytes.end())};
  }
  FieldBytes operator()(const dao::Decimal& v) const { return EncodeDecimal(v); }
};

}  // namespace

RowFields DecodeRow(const TableDefinition& definition, ConstBytes row) {
  if (row.size() < kSizeColumnCount) RaiseBadRow();
  const std::size_t columnsThen = Get16(row, 0);
  const std::size_t maskSize = MaskSize(columnsThen);
  if (columnsThen > kMaxColumns + 1 || row.size() < kSizeColumnCount + maskSize) RaiseBadRow();
  const ConstBytes mask = row.subspan(row.size() - maskSize);
  std::optional<VariablePart> variable;
  RowFields fields(definition.columns.size());
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const Column& column = definition.columns[i];
    if (column.id >= columnsThen || !MaskBit(mask, column.id)) continue;
    fields[i].present = true;
    if (column.type == kTypeBoolean) continue;
    if (column.IsFixed()) {
      const std::size_t from = kSizeColumnCount + column.fixedOffset;
      if (from + column.length > row.size() - maskSize) RaiseBadRow();
      fields[i].bytes = Copy(row.subspan(from, column.length));
      continue;
    }
    if (!variable) variable = FindVariablePart(row, maskSize);
    if (column.variableIndex >= variable->count) RaiseBadRow();
    fields[i].bytes = Copy(variable->Value(column.variableIndex));
  }
  return fields;
}

std::vector<std::byte> EncodeRow(const TableDefinition& definition, const RowFields& fields) {
  std::vector<std::byte> row(kSizeColumnCount + definition.EndOfFixedArea());
  Put16(row, 0, definition.maxColumns);
  std::vector<std::byte> mask(MaskSize(definition.maxColumns));
  std::vector<const FieldBytes*> variable(definition.variableColumns);
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const Column& column = definition.columns[i];
    const FieldBytes& field = fields[i];
    if (!field.present) continue;
    mask[column.id / 8u] |= std::byte{static_cast<std::uint8_t>(1u << (column.id % 8u))};
    if (column.type == kTypeBoolean) continue;
    if (column.IsFixed()) {
      const std::size_t size = std::min<std::size_t>(field.bytes.size(), column.length);
      std::copy_n(field.bytes.begin(), size, row.begin() + kSizeColumnCount + column.fixedOffset);
    } else {
      variable[column.variableIndex] = &field;
    }
  }
  std::vector<std::size_t> offsets;
  for (const FieldBytes* field : variable) {
    offsets.push_back(row.size());
    if (field) row.insert(row.end(), field->bytes.begin(), field->bytes.end());
  }
  offsets.push_back(row.size());
  const bool hasVariable = !variable.empty();
  std::size_t tail = mask.size() + (hasVariable ? kSizeVariableOffset * (offsets.size() + 1) : 0);
  if (row.size() + tail < kMinRowSize) row.resize(kMinRowSize - tail);
  if (row.size() + tail > kMaxRowSize) Raise(platform::kErrRecordTooLarge);
  if (hasVariable) {
    for (auto it = offsets.rbegin(); it != offsets.rend(); ++it) {
      row.resize(row.size() + kSizeVariableOffset);
      Put16(row, row.size() - kSizeVariableOffset, static_cast<std::uint16_t>(*it));
    }
    row.resize(row.size() + kSizeVariableOffset);
    Put16(row, row.size() - kSizeVariableOffset, static_cast<std::uint16_t>(variable.size()));
  }
  row.insert(row.end(), mask.begin(), mask.end());
  return row;
}

FieldBytes EncodeValue(const Column& column, const dao::Value& value) {
  return std::visit(ValueEncoder{column}, value);
}

dao::Value DecodeValue(const Column& column, const FieldBytes& field) {
  if (column.type == kTypeBoolean) return field.present;
  if (!field.present) return dao::Null{};
  switch (column.type) {
    case kTypeByte: return NumberOf<std::uint8_t>(field);
    case kTypeInteger: return NumberOf<std::int16_t>(field);
    case kTypeLong: return NumberOf<std::int32_t>(field);
    case kTypeCurrency: return dao::Currency{NumberOf<std::int64_t>(field)};
    case kTypeSingle: return NumberOf<float>(field);
    case kTypeDouble: return NumberOf<double>(field);
    case kTypeDate: return dao::Date{NumberOf<double>(field)};
    case kTypeText: return DecodeText(field.bytes);
    case kTypeDecimal: return DecodeDecimal(column, field);
    case kTypeGuid: {
      if (field.bytes.size() < sizeof(dao::Guid)) RaiseBadRow();
      dao::Guid guid;
      std::copy_n(field.bytes.begin(), guid.bytes.size(), guid.bytes.begin());
      return guid;
    }
    default: return dao::Binary(field.bytes);
  }
}

std::vector<std::byte> EncodeText(std::u16string_view text, bool compress) {
  const bool looksCompressed = !text.empty() && text.front() == 0xFEFF;
  if (looksCompressed) Raise(platform::kErrDataConversion);
  if (!compress || !IsCompressible(text)) return PlainText(text);
  std::vector<std::byte> bytes(2 + text.size());
  Put16(bytes, 0, 0xFEFF);
  std::ranges::transform(text, bytes.begin() + 2, [](char16_t c) { return static_cast<std::byte>(c); });
  return bytes;
}

std::u16string DecodeText(ConstBytes bytes) {
  std::u16string text(bytes.size(), u'\0');  // cut at the end: a letter takes a byte at least
  std::size_t count = 0;
  const bool compressed = bytes.size() >= 2 && Get16(bytes, 0) == 0xFEFF;
  bool narrow = compressed;
  for (std::size_t i = compressed ? 2 : 0; i < bytes.size();) {
    if (narrow) {
      const std::uint8_t byte = Get8(bytes, i++);
      if (byte == 0) {
        narrow = false;
      } else {
        text[count++] = byte;
      }
    } else if (compressed && bytes[i] == std::byte{0}) {
      narrow = true;
      ++i;
    } else if (i + 1 < bytes.size()) {
      text[count++] = static_cast<char16_t>(Get16(bytes, i));
      i += 2;
    } else {
      ++i;  // half a unit at the end
    }
  }
  text.resize(count);
  return text;
}

}  // namespace zimbrat::jet
