// What expressions stored with a table mean for its rows: default values and validation rules.
#pragma once

#include <string_view>
#include <vector>

#include "jet/catalog/catalog.h"
#include "jet/sql/expression.h"

namespace zimbrat::jet {

// The default values of a table, parsed once.
class RowDefaults {
 public:
  RowDefaults(Catalog& catalog, Table& table);
  // By column: the default brought to the column's type, else Null (Boolean: False).
  std::vector<dao::Value> Values(Table& table, double now) const;

 private:
  std::vector<ExpressionPtr> expressions_;  // null where there is none
};

// Errors 3355 (syntax), 3388 (function), 3344 (name) for a text that is no default value.
void CheckDefault(std::u16string_view expression, std::u16string_view field);

// Errors 3317 and 3316 for values that a rule of the field or of the table forbids.
void CheckValidationRules(Catalog& catalog, Table& table, const std::vector<dao::Value>& values, double now);

}  // namespace zimbrat::jet
