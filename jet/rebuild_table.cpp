#include "rebuild_table.h"

#include <algorithm>
#include <utility>

#include "jet/file/errors.h"
#include "jet/table/long_values.h"
#include "jet/table/table_design.h"

namespace zimbrat::jet {

namespace {

Column ColumnFrom(const check::ColumnLayout& layout) {
  Column column;
  column.name = layout.name;
  column.type = static_cast<std::uint8_t>(layout.type);
  column.id = layout.id;
  column.variableIndex = layout.variableIndex;
  column.displayOrder = layout.displayOrder;
  column.extra = layout.extra;
  column.flags = layout.flags;
  column.flags2 = layout.flags2;
  column.fixedOffset = layout.fixedOffset;
  column.length = layout.length;
  return column;
}

LogicalIndex LogicalFrom(const check::LogicalLayout& layout) {
  LogicalIndex index;
  index.name = layout.name;
  index.number = layout.number;
  index.realIndex = layout.index;
  index.end = layout.end;
  index.otherNumber = layout.otherNumber;
  index.otherTable = layout.otherTable;
  index.cascadeUpdate = layout.cascadeUpdates;
  index.cascadeDelete = layout.cascadeDeletes;
  index.kind = layout.kind;
  return index;
}

// Of a row; `lengthOf` tells of a variable column how long its bytes are.
template <class LengthOf>
std::size_t RowSize(const TableDefinition& d, LengthOf lengthOf) {
  constexpr std::size_t kSizeOffset = 2;
  std::size_t size = kSizeOffset + d.EndOfFixedArea() + (d.maxColumns + 7u) / 8u +
                     kSizeOffset * (d.variableColumns + 2u);
  for (std::size_t i = 0; i < d.columns.size(); ++i) {
    if (!d.columns[i].IsFixed()) size += lengthOf(i);
  }
  return size;
}

// As they would be stored inline up to the usual size.
std::size_t LengthInRow(const Column& column, std::size_t length) {
  if (!column.IsLongValue()) return length;
  return kSizeLongValueDescriptor + (length <= kMaxInlineLongValue ? length : 0);
}

// As the row would have been written before its last columns, in which it is null, were added.
std::vector<std::byte> EncodeShortest(const TableDefinition& d, const RowFields& fields) {
  TableDefinition former;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    if (fields[i].present)
      former.maxColumns = std::max<std::uint16_t>(former.maxColumns, d.columns[i].id + 1);
  }
  RowFields formerFields;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const Column& column = d.columns[i];
    if (column.id >= former.maxColumns) continue;
    former.columns.push_back(column);
    formerFields.push_back(fields[i]);
    if (!column.IsFixed())
      former.variableColumns =
          std::max<std::uint16_t>(former.variableColumns, column.variableIndex + 1);
  }
  return EncodeRow(former, formerFields);
}

// Deleted columns leave holes; rows that are written anew have none.
void CloseHoles(TableDefinition& d) {
  std::vector<Column*> fixed;
  for (Column& column : d.columns) {
    if (column.IsFixed() && column.type != kTypeBoolean) fixed.push_back(&column);
  }
  std::ranges::stable_sort(fixed, {}, &Column::fixedOffset);
  std::uint16_t offset = 0;
  for (Column* column : fixed) {
    column->fixedOffset = offset;
    offset = static_cast<std::uint16_t>(offset + column->length);
  }
}

std::u16string NamesOf(const TableDefinition& d, std::size_t realIndex) {
  std::u16string names;
  for (const LogicalIndex& index : d.logicalIndexes) {
    if (index.realIndex != realIndex || index.end == kEndReferenced) continue;
    names += (names.empty() ? u"„" : u", „") + index.name + u"”";
  }
  return names;
}

// System tables have primary keys that allow nulls.
bool ForbidsNulls(const TableDefinition& d, std::size_t realIndex) {
  if (d.realIndexes[realIndex].IsRequired()) return true;
  return d.tableType == kTableUser && std::any_of(d.logicalIndexes.begin(), d.logicalIndexes.end(),
                                                  [&](const LogicalIndex& index) {
                                                    return index.realIndex == realIndex &&
                                                           index.kind == kIndexPrimary;
                                                  });
}

// Takes from an index what its rows contradict; a note for each.
void RelaxIndex(TableDefinition& d, std::size_t i, const IndexConflicts& rows,
                std::vector<std::u16string>& notes) {
  RealIndex& index = d.realIndexes[i];
  const bool losesUnique = index.IsUnique() && rows.duplicates;
  const bool losesRequired = rows.nulls && ForbidsNulls(d, i);
  if (losesUnique) {
    index.flags &= static_cast<std::uint8_t>(~kIndexUnique);
    notes.push_back(u"indeks " + NamesOf(d, i) +
                    u" dopuszcza teraz powtórzenia, bo są w wierszach");
  }
  if (losesRequired) {
    index.flags &= static_cast<std::uint8_t>(~kIndexRequired);
    notes.push_back(u"indeks " + NamesOf(d, i) +
                    u" dopuszcza teraz wartości Null, bo są w wierszach");
  }
  if (!losesUnique && !losesRequired) return;
  for (LogicalIndex& logical : d.logicalIndexes) {
    if (logical.realIndex == i && logical.kind == kIndexPrimary) logical.kind = kIndexPlain;
  }
}

}  // namespace

PageNumber CreateFrom(const Storage& storage, const check::TableLayout& layout) {
  const PageNumber page = CreateEmptyTable(storage, layout.kind);
  TableDesign design(storage, page);
  TableDefinition& d = design.definition;
  d.counter = layout.counter;
  d.maxColumns = layout.maxColumns;
  d.variableColumns = layout.variableColumns;
  for (const check::ColumnLayout& column : layout.columns) d.columns.push_back(ColumnFrom(column));
  CloseHoles(d);
  for (const Column& column : d.columns) {
    if (column.IsLongValue()) design.AddLongValueMaps(column.id);
  }
  for (const check::IndexLayout& index : layout.indexes) {
    std::vector<IndexColumn> columns;
    for (const auto& part : index.parts) columns.push_back({part.columnId, part.ascending});
    design.AddRealIndex(columns, index.flags);
  }
  for (const check::LogicalLayout& logical : layout.logicals) {
    d.logicalIndexes.push_back(LogicalFrom(logical));
  }
  design.Write();
  return page;
}

RowFields FieldsFrom(Table& table, const check::RescuedRow& row) {
  const TableDefinition& d = table.Definition();
  const std::size_t size = RowSize(d, [&](std::size_t i) {
    return row.fields[i] ? LengthInRow(d.columns[i], row.fields[i]->size()) : 0;
  });
  // A value that was not inline before may be now, and the row too long with it.
  const std::size_t maxInline = size > kMaxRowSize ? 0 : kMaxInlineLongValue;
  RowFields fields(d.columns.size());
  for (std::size_t i = 0; i < fields.size(); ++i) {
    if (!row.fields[i]) continue;
    const Column& column = d.columns[i];
    fields[i].present = true;
    if (!column.IsLongValue()) {
      fields[i].bytes = *row.fields[i];
      continue;
    }
    const LongValueMaps* maps = d.FindLongValueMaps(column.id);
    fields[i].bytes = StoreLongValue(table.GetStorage(), *maps, *row.fields[i], maxInline);
  }
  return fields;
}

check::RowCounts CopyRows(check::Rescue& source, const check::TableLayout& layout, Table& table) {
  return source.ReadRows(layout, [&](const check::RescuedRow& row) {
    const TableDefinition& d = table.Definition();
    const RowFields fields = FieldsFrom(table, row);
    const bool isShort =
        RowSize(d, [&](std::size_t i) { return fields[i].bytes.size(); }) <= kMaxRowSize;
    table.Insert({isShort ? EncodeRow(d, fields) : EncodeShortest(d, fields), {}});
  });
}

std::vector<std::u16string> BuildIndexes(Table& table) {
  std::vector<IndexConflicts> conflicts;
  for (std::size_t i = 0; i < table.Definition().realIndexes.size(); ++i) {
    conflicts.push_back(table.FillIndexAsItIs(i));
  }
  TableDesign design(table.GetStorage(), table.Page());
  std::vector<std::u16string> notes;
  for (std::size_t i = 0; i < conflicts.size(); ++i) {
    RelaxIndex(design.definition, i, conflicts[i], notes);
  }
  if (!notes.empty()) design.Write();
  table.Reload();
  return notes;
}

}  // namespace zimbrat::jet
