// The type of a column that a query computes, as far as the expression tells it.
#pragma once

#include <cstdint>

#include "jet/sql/expression.h"

namespace zimbrat::jet {

struct ColumnType {
  std::int16_t type = 0;  // DAO's number
  std::int32_t size = 0;  // characters of text, bytes otherwise
};

// Of a bound expression; text of 255 characters where nothing is known.
ColumnType TypeOf(const Expression& expression);
ColumnType TypeOfAggregate(std::u16string_view name, const Expression& argument);
// Whether the value is surely True, False or Null, so that `And` means the same as two conditions.
bool IsCondition(const Expression& expression);

}  // namespace zimbrat::jet
