// A column that is to hold values of another type, and questions about indexes that SQL asks on its own.
#pragma once

#include <string>
#include <vector>

#include "jet/catalog/database_file.h"
#include "jet/catalog/field_spec.h"

namespace zimbrat::jet {

// Rows keep their values, brought to the new type; properties, place and indexes of the column stay. The
// column must be there and in no relationship. Errors 3163 and 3421 for values that do not fit, 3259, 3090,
// those of an index over it: 3022, 3287.
void ChangeColumnType(DatabaseFile& database, Table& table, FieldSpec field);

// Whether a unique index is over exactly these columns, in any order.
bool HasUniqueIndex(Table& table, const std::vector<std::u16string>& columns);

}  // namespace zimbrat::jet
