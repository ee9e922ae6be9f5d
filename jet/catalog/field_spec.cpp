#include "jet/catalog/field_spec.h"

#include <algorithm>

#include "jet/file/errors.h"
#include "platform/text.h"

namespace zimbrat::jet {

namespace {

using namespace zimbrat::platform;

constexpr std::int32_t kMaxTextSize = 255;
constexpr std::int32_t kMaxBinarySize = 510;

std::uint8_t IndexFlags(const NewIndex& index) {
  unsigned flags = kIndexAlways;
  if (index.unique || index.primary) flags |= kIndexUnique;
  if (index.required || index.primary) flags |= kIndexRequired;
  if (index.ignoreNulls) flags |= kIndexIgnoreNulls;
  return static_cast<std::uint8_t>(flags);
}

}  // namespace

std::uint16_t FixedLength(std::int32_t type) {
  switch (type) {
    case dao::dbBoolean:
    case dao::dbByte: return 1;
    case dao::dbInteger: return 2;
    case dao::dbLong:
    case dao::dbSingle: return 4;
    case dao::dbCurrency:
    case dao::dbDouble:
    case dao::dbDate: return 8;
    case dao::dbGUID: return 16;
    default: return 0;
  }
}

ColumnSpec MakeColumnSpec(const FieldSpec& spec) {
  ColumnSpec column;
  column.name = spec.name;
  column.type = static_cast<std::uint8_t>(spec.type);
  column.length = FixedLength(spec.type);
  const bool fixedWanted = (spec.attributes & dao::dbFixedField) != 0;
  switch (spec.type) {
    case dao::dbText:
    case dao::dbBinary: {
      const std::int32_t most = spec.type == dao::dbText ? kMaxTextSize : kMaxBinarySize;
      const std::int32_t size = spec.size == 0 ? kMaxTextSize : spec.size;
      if (size < 0 || size > most) Raise(kErrFieldTooLong, spec.name);
      column.length = static_cast<std::uint16_t>(spec.type == dao::dbText ? size * 2 : size);
      column.fixed = fixedWanted;
      break;
    }
    case dao::dbMemo:
      column.hyperlink = (spec.attributes & dao::dbHyperlinkField) != 0;
      break;
    case dao::dbLongBinary: break;
    case dao::dbGUID: column.fixed = fixedWanted; break;
    default:
      if (column.length == 0) Raise(kErrInvalidFieldType, spec.name);
      column.fixed = true;
  }
  column.counter = spec.IsCounter();
  if (column.counter && !spec.defaultValue.empty()) Raise(kErrExpressionNotAllowed, spec.name);
  return column;
}

void PutFieldProperties(const FieldSpec& spec, PropertyBlob& properties) {
  const bool isText = spec.type == dao::dbText || spec.type == dao::dbMemo;
  if (!spec.IsCounter()) properties.PutBoolean(spec.name, u"Required", spec.required);
  if (isText) properties.PutBoolean(spec.name, u"AllowZeroLength", spec.allowZeroLength);
  properties.PutText(spec.name, u"DefaultValue", kTypeMemo, spec.defaultValue);
  properties.PutText(spec.name, u"ValidationRule", kTypeMemo, spec.validationRule);
  properties.PutText(spec.name, u"ValidationText", kTypeText, spec.validationText);
}

IndexSpec MakeIndexSpec(const NewIndex& index, const std::vector<Column>& columns) {
  if (index.name.empty()) Raise(kErrInvalidPropertyValue);
  CheckName(index.name);
  if (index.fields.empty()) Raise(kErrNoFieldDefined, index.name);
  if (index.fields.size() > kMaxIndexColumns) Raise(kErrTooManyIndexFields, index.name);
  IndexSpec spec{index.name, {}, IndexFlags(index), index.primary};
  for (const IndexFieldSpec& field : index.fields) {
    const auto column = std::find_if(columns.begin(), columns.end(), [&](const Column& c) {
      return EqualIgnoringCase(c.name, field.name);
    });
    if (column == columns.end()) Raise(kErrInvalidFieldName, field.name, index.name);
    if (column->type == kTypeLongBinary) Raise(kErrCannotIndexField, field.name);
    const bool twice = std::any_of(spec.columns.begin(), spec.columns.end(),
                                   [&](const IndexColumn& c) { return c.columnId == column->id; });
    if (twice) Raise(kErrInvalidIndexDefinition, index.name);
    spec.columns.push_back({column->id, !field.descending});
  }
  return spec;
}

void CheckName(std::u16string_view name) {
  const bool badLength = name.empty() || name.size() > kMaxNameLength;
  const bool badLetter = name.find_first_of(u".![]`") != name.npos ||
                         std::any_of(name.begin(), name.end(), [](char16_t c) { return c < 32; });
  if (badLength || badLetter || name.front() == u' ') Raise(kErrInvalidName, name);
}

}  // namespace zimbrat::jet
