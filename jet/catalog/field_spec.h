// Fields and indexes that are not in a table yet: their settings as DAO and SQL name them, and what they
// mean as columns and index entries.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "jet/catalog/properties.h"
#include "jet/table/table_design.h"
#include "platform/dao.h"

namespace zimbrat::jet {

struct FieldSpec {
  std::u16string name;
  std::int32_t type = 0;  // DAO's number
  std::int32_t size = 0;  // characters for text
  std::int32_t attributes = 0;
  bool required = false;
  bool allowZeroLength = false;
  std::u16string defaultValue;
  std::u16string validationRule;
  std::u16string validationText;

  bool IsCounter() const { return type == dao::dbLong && (attributes & dao::dbAutoIncrField) != 0; }
};

// A field of an index: a name and a direction.
struct IndexFieldSpec {
  std::u16string name;
  bool descending = false;
};

struct NewIndex {
  std::u16string name;
  std::vector<IndexFieldSpec> fields;
  bool primary = false;  // makes it unique and required
  bool unique = false;
  bool required = false;
  bool ignoreNulls = false;
};

// Length in bytes of the types of fixed size; 0 for the others. `type` is DAO's number.
std::uint16_t FixedLength(std::int32_t type);
// Errors 3259, 3382, 3313 (a default value for a counter).
ColumnSpec MakeColumnSpec(const FieldSpec& spec);
// The properties of a new field, as the catalogue keeps them.
void PutFieldProperties(const FieldSpec& spec, PropertyBlob& properties);
// Errors 3271, 3125, 3264, 3277, 3409, 3287, 3285.
IndexSpec MakeIndexSpec(const NewIndex& index, const std::vector<Column>& columns);

// Names of tables, fields, indexes and relationships: 1 to 64 characters, none of . ! [ ] `, no control
// characters, no leading blank. Error 3125.
void CheckName(std::u16string_view name);

}  // namespace zimbrat::jet
