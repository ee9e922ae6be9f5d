#include <algorithm>

#include "dao_table.h"
#include "jet/sql/defaults.h"

namespace zimbrat::jet {

namespace {

using namespace zimbrat::platform;

constexpr std::int32_t kDefaultTextSize = 255;
constexpr std::size_t kMaxExpression = 255;

}  // namespace

Column JetField::LiveColumn() {
  const std::shared_ptr<Table> table = table_->Open();
  const auto position = table->Definition().FindColumnById(*columnId_);
  if (!position) Raise(kErrObjectInvalid);
  return table->Definition().columns[*position];
}

FieldRules JetField::LiveRules() {
  const std::shared_ptr<Table> table = table_->Open();
  const auto position = table->Definition().FindColumnById(*columnId_);
  if (!position) Raise(kErrObjectInvalid);
  return table_->connection->GetCatalog().Rules(*table)[*position];
}

std::u16string JetField::Name() {
  return Member(dao::kSourceField, [&] { return IsLive() ? LiveColumn().name : spec_.name; });
}

void JetField::SetName(std::u16string_view name) {
  Member(dao::kSourceField, [&] {
    if (!IsLive()) {
      spec_.name = name;
      return;
    }
    if (LiveColumn().name == name) return;
    table_->ChangeStructure([&](Schema& schema) { schema.RenameField(table_->page, *columnId_, name); });
  });
}

std::int16_t JetField::Type() {
  return Member(dao::kSourceField, [&] {
    if (!IsLive()) return static_cast<std::int16_t>(spec_.type);
    const Column column = LiveColumn();
    return column.type == kTypeDecimal ? dao::dbDecimal : static_cast<std::int16_t>(column.type);
  });
}

std::int32_t JetField::Size() {
  return Member(dao::kSourceField, [&]() -> std::int32_t {
    if (IsLive()) {
      const Column column = LiveColumn();
      return column.type == kTypeText ? column.length / 2 : column.length;
    }
    if (spec_.type == dao::dbText && spec_.size == 0) return kDefaultTextSize;
    if (spec_.type == dao::dbText || spec_.type == dao::dbBinary) return spec_.size;
    return FixedLength(spec_.type);
  });
}

std::int32_t JetField::Attributes() {
  return Member(dao::kSourceField, [&]() -> std::int32_t {
    if (!IsLive()) return spec_.attributes;
    const Column column = LiveColumn();
    std::int32_t attributes = dao::dbUpdatableField;
    attributes |= column.IsFixed() ? dao::dbFixedField : dao::dbVariableField;
    if (column.IsCounter()) attributes |= dao::dbAutoIncrField;
    if ((column.flags & kColumnHyperlink) != 0) attributes |= dao::dbHyperlinkField;
    return attributes;
  });
}

void JetField::SetAttributes(std::int32_t attributes) {
  Member(dao::kSourceField, [&] {
    if (!IsLive()) {
      spec_.attributes = attributes;
      return;
    }
    // Neither counter nor fixed width change afterwards; other bits have no effect.
    const Column column = LiveColumn();
    const bool counter = (attributes & dao::dbAutoIncrField) != 0;
    const bool fixed = (attributes & dao::dbFixedField) != 0;
    if (counter != column.IsCounter() || fixed != column.IsFixed()) Raise(kErrPropertyFixed);
  });
}

void JetField::PutBoolean(std::u16string_view property, bool FieldSpec::*slot, bool value) {
  Member(dao::kSourceField, [&] {
    if (!IsLive()) {
      spec_.*slot = value;
      return;
    }
    const Column column = LiveColumn();
    table_->ChangeProperties(
        [&](PropertyBlob& properties) { properties.PutBoolean(column.name, property, value); });
  });
}

void JetField::RequireExpressionAllowed(std::u16string_view text) {
  if (text.empty()) return;
  if (text.size() > kMaxExpression) Raise(kErrPropertyTooLarge);
  const bool counter = IsLive() && LiveColumn().IsCounter();
  const std::int32_t type = IsLive() ? LiveColumn().type : spec_.type;
  if (counter || type == dao::dbLongBinary) Raise(kErrExpressionNotAllowed, Name());
}

void JetField::PutText(std::u16string_view property, std::uint8_t type, std::u16string FieldSpec::*slot,
                       std::u16string_view text) {
  RequireExpressionAllowed(text);
  if (!IsLive()) {
    spec_.*slot = text;
    return;
  }
  const Column column = LiveColumn();
  table_->ChangeProperties(
      [&](PropertyBlob& properties) { properties.PutText(column.name, property, type, text); });
}

bool JetField::Required() {
  return Member(dao::kSourceField, [&] { return IsLive() ? LiveRules().required : spec_.required; });
}
void JetField::SetRequired(bool required) { PutBoolean(u"Required", &FieldSpec::required, required); }

bool JetField::AllowZeroLength() {
  return Member(dao::kSourceField, [&] { return IsLive() ? LiveRules().allowZeroLength : spec_.allowZeroLength; });
}
void JetField::SetAllowZeroLength(bool allow) {
  const bool ignored = Member(dao::kSourceField, [&] { return IsLive() && !LiveColumn().IsText(); });
  if (!ignored) PutBoolean(u"AllowZeroLength", &FieldSpec::allowZeroLength, allow);
}

std::u16string JetField::DefaultValue() {
  return Member(dao::kSourceField, [&] { return IsLive() ? LiveRules().defaultValue : spec_.defaultValue; });
}
void JetField::SetDefaultValue(std::u16string_view expression) {
  Member(dao::kSourceField, [&] {
    CheckDefault(expression, Name());
    PutText(u"DefaultValue", kTypeMemo, &FieldSpec::defaultValue, expression);
  });
}

std::u16string JetField::ValidationRule() {
  return Member(dao::kSourceField, [&] { return IsLive() ? LiveRules().validationRule : spec_.validationRule; });
}
void JetField::SetValidationRule(std::u16string_view expression) {
  Member(dao::kSourceField, [&] { PutText(u"ValidationRule", kTypeMemo, &FieldSpec::validationRule, expression); });
}

std::u16string JetField::ValidationText() {
  return Member(dao::kSourceField, [&] { return IsLive() ? LiveRules().validationText : spec_.validationText; });
}
void JetField::SetValidationText(std::u16string_view text) {
  Member(dao::kSourceField, [&] { PutText(u"ValidationText", kTypeText, &FieldSpec::validationText, text); });
}

std::u16string JetField::ForeignName() {
  return Member(dao::kSourceField, [&]() -> std::u16string { Raise(kErrInvalidOperation); });
}
void JetField::SetForeignName(std::u16string_view) {
  Member(dao::kSourceField, [&] { Raise(kErrInvalidOperation); });
}
dao::Value JetField::Value() {
  return Member(dao::kSourceField, [&]() -> dao::Value { Raise(kErrValueNeedsRecordset); });
}
void JetField::SetValue(const dao::Value&) {
  Member(dao::kSourceField, [&] { Raise(kErrValueNeedsRecordset); });
}

}  // namespace zimbrat::jet
