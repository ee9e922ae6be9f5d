#include "index_columns.h"

#include <algorithm>

namespace zimbrat::jet::check {

IndexColumns::IndexColumns(const TableLayout& table, const IndexLayout& index) {
  for (const IndexLayout::Part& part : index.parts) {
    const ColumnLayout* column = table.FindColumn(part.columnId);
    if (!column || !IsIndexable(column->type)) continue;
    keys.push_back({column->type, part.ascending});
    columns.push_back(column);
  }
  isWhole_ = !columns.empty() && columns.size() == index.parts.size();
  areComparable_ = isWhole_ && std::ranges::all_of(columns, &ColumnLayout::HasComparableKeys);
}

void IndexColumns::AddEntry(Checking& check, const RowParts& row, RowPointer home, EntrySum& sum) {
  scratch_.clear();
  for (std::size_t i = 0; i < columns.size(); ++i) {
    AppendKeyColumn(keys[i], ValueOfField(check, *columns[i], row.Field(*columns[i])), scratch_);
  }
  sum.Add(scratch_, home);
}

bool NeedsEntry(const TableLayout& table, const IndexLayout& index, const RowParts& row) {
  if (!index.Has(kIndexIgnoreNulls)) return true;
  return std::any_of(index.parts.begin(), index.parts.end(), [&](const IndexLayout::Part& part) {
    const ColumnLayout* column = table.FindColumn(part.columnId);
    return column && (column->IsBoolean() || row.Field(*column));
  });
}

}  // namespace zimbrat::jet::check
