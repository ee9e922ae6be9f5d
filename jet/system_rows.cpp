#include "system_rows.h"

namespace zimbrat::jet {

RepairedTable CopySystemRows(check::Rescue& source, const Table& table,
                             const SystemRowVisit& visit) {
  RepairedTable report;
  report.name = table.Name();
  report.isSystem = true;
  const check::TableLayout layout = source.ReadTable(table.Page())->layout;
  const auto counts = source.ReadRows(layout, [&](const check::RescuedRow& row) {
    const RowFate fate = visit(layout, row);
    if (fate == RowFate::Lost) ++report.lost;
    if (fate != RowFate::Stored) return;
    ++report.saved;
    if (!row.isWhole) ++report.partial;
  });
  report.lost += counts.lost;
  return report;
}

RowFate StoreSystemRow(Table& table, const RowFields& fields) {
  const std::vector<RealIndex> indexes = table.Definition().realIndexes;
  for (std::size_t i = 0; i < indexes.size(); ++i) {
    const auto key = table.KeyOf(i, fields);
    if (indexes[i].IsUnique() && key && table.Tree(i).ContainsKey(*key)) return RowFate::Lost;
  }
  table.Insert(table.Prepare(fields));
  return RowFate::Stored;
}

void PutValue(Table& table, RowFields& fields, std::u16string_view column,
              const dao::Value& value) {
  const std::size_t position = *table.Definition().FindColumn(column);
  fields[position] = table.FieldOf(position, value);
}

}  // namespace zimbrat::jet
