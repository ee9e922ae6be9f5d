// The new table of a rescued one: its definition, its rows as they are, its indexes.
#pragma once

#include <string>
#include <vector>

#include "jet/check/rescue.h"
#include "jet/table/table.h"

namespace zimbrat::jet {

// Without rows, its trees empty. Columns and indexes keep their numbers, fixed columns move
// together; ends of relationships still name the pages of the former file. Returns the page of the
// definition.
PageNumber CreateFrom(const Storage& storage, const check::TableLayout& layout);

// A rescued row as a row of `table`, whose columns are those of the layout. Stores the long values.
RowFields FieldsFrom(Table& table, const check::RescuedRow& row);

// All rows, not yet in any index.
check::RowCounts CopyRows(check::Rescue& source, const check::TableLayout& layout, Table& table);

// Fills the trees. Where the rows do not allow what an index asks for, it asks for less; a note
// tells of each such index.
std::vector<std::u16string> BuildIndexes(Table& table);

}  // namespace zimbrat::jet
