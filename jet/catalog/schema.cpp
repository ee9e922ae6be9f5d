#include "jet/catalog/schema.h"

#include <algorithm>
#include <utility>

#include "jet/file/errors.h"
#include "platform/text.h"

namespace zimbrat::jet {

namespace {

using namespace zimbrat::platform;

// Errors 3010 and 3012. `own` is the id that may bear the name already, 0 for none.
void RequireFreeName(Catalog& catalog, std::u16string_view name, std::int32_t own = 0) {
  const CatalogObject* taken = catalog.FindTableOrQuery(name);
  if (!taken || taken->id == own) return;
  Raise(taken->Is(ObjectType::Query) ? kErrObjectExists : kErrTableExists, name);
}

// Columns as they will be: ids of a new table are given in the order of its fields.
std::vector<Column> FutureColumns(const std::vector<FieldSpec>& fields) {
  std::vector<Column> columns;
  for (const FieldSpec& field : fields) {
    Column column;
    column.name = field.name;
    column.type = static_cast<std::uint8_t>(field.type);
    column.id = static_cast<std::uint16_t>(columns.size());
    columns.push_back(std::move(column));
  }
  return columns;
}

std::vector<ColumnSpec> CheckFields(std::u16string_view table, const std::vector<FieldSpec>& fields) {
  std::vector<ColumnSpec> columns;
  std::size_t counters = 0;
  for (const FieldSpec& field : fields) {
    CheckName(field.name);
    const bool twice = std::any_of(columns.begin(), columns.end(), [&](const ColumnSpec& other) {
      return EqualIgnoringCase(other.name, field.name);
    });
    if (twice) Raise(kErrFieldDefinedTwice, field.name);
    columns.push_back(MakeColumnSpec(field));
    if (columns.back().counter && ++counters > 1) Raise(kErrTwoCounters, table);
  }
  return columns;
}

std::vector<IndexSpec> CheckIndexes(std::u16string_view table, const std::vector<NewIndex>& indexes,
                                    const std::vector<FieldSpec>& fields) {
  if (indexes.size() > kMaxIndexes) Raise(kErrTooManyIndexes, table);
  const std::vector<Column> columns = FutureColumns(fields);
  std::vector<IndexSpec> specs;
  for (const NewIndex& index : indexes) {
    IndexSpec spec = MakeIndexSpec(index, columns);
    for (const IndexSpec& other : specs) {
      if (spec.primary && other.primary) Raise(kErrPrimaryKeyExists, table);
      if (EqualIgnoringCase(other.name, spec.name)) Raise(kErrIndexExists, spec.name);
    }
    specs.push_back(std::move(spec));
  }
  return specs;
}

// A relationship needs its own entry, and the unique tree that it leads to. A plain tree that it merely
// shares stays with it.
bool IsNeeded(const TableDefinition& definition, const LogicalIndex& entry) {
  if (entry.IsRelation()) return true;
  const bool unique = definition.realIndexes[entry.realIndex].IsUnique();
  const std::vector<LogicalIndex>& all = definition.logicalIndexes;
  return unique && std::any_of(all.begin(), all.end(), [&](const LogicalIndex& other) {
    return other.realIndex == entry.realIndex && other.IsRelation();
  });
}

}  // namespace

void Schema::Changed(PageNumber table) {
  catalog_.DefinitionChanged(table);
  catalog_.Touch(static_cast<std::int32_t>(table));
}

PageNumber Schema::CreateTable(std::u16string_view name, const std::vector<FieldSpec>& fields,
                               const std::vector<NewIndex>& indexes) {
  if (fields.empty()) Raise(kErrNoFieldDefined, name);
  RequireFreeName(catalog_, name);
  CheckName(name);
  if (fields.size() > kMaxColumns) Raise(kErrTooManyFields);
  const std::vector<ColumnSpec> columns = CheckFields(name, fields);
  const std::vector<IndexSpec> specs = CheckIndexes(name, indexes, fields);
  PropertyBlob properties;
  for (const FieldSpec& field : fields) PutFieldProperties(field, properties);
  const PageNumber page = jet::CreateTable(storage_, columns, specs);
  catalog_.AddTable(name, page, properties);
  return page;
}

void Schema::DropTable(std::u16string_view name) {
  const CatalogObject* found = catalog_.FindTable(name);
  if (!found) Raise(kErrItemNotFound, name);
  const CatalogObject object = *found;
  if (object.IsSystem()) Raise(kErrUsedInRelation, name);
  if (Relationships(storage_, catalog_).FindUse(object.name)) Raise(kErrUsedInRelation, name);
  if (object.Is(ObjectType::Table)) FreeTable(storage_, static_cast<PageNumber>(object.id));
  // Its properties are a long value of the catalogue.
  catalog_.Remove(object.id);
}

void Schema::RenameTable(PageNumber table, std::u16string_view name) {
  const auto id = static_cast<std::int32_t>(table);
  const std::u16string former = catalog_.Open(table)->Name();
  CheckName(name);
  RequireFreeName(catalog_, name, id);
  catalog_.Rename(id, name);
  Relationships(storage_, catalog_).TableRenamed(former, name);
}

std::uint16_t Schema::AddField(PageNumber table, const FieldSpec& field) {
  CheckName(field.name);
  TableDesign design(storage_, table);
  if (design.definition.FindColumn(field.name)) Raise(kErrFieldDefinedTwice, field.name);
  const ColumnSpec spec = MakeColumnSpec(field);
  const auto isCounter = [](const Column& column) { return column.IsCounter(); };
  const std::vector<Column>& columns = design.definition.columns;
  if (spec.counter && std::any_of(columns.begin(), columns.end(), isCounter)) {
    Raise(kErrTwoCounters, catalog_.Open(table)->Name());
  }
  const std::size_t position = design.AddColumn(spec);
  const std::uint16_t columnId = design.definition.columns[position].id;
  design.Write();
  const auto id = static_cast<std::int32_t>(table);
  PropertyBlob properties = catalog_.Properties(id);
  PutFieldProperties(field, properties);
  catalog_.PutProperties(id, properties);
  Changed(table);
  return columnId;
}

void Schema::DropField(PageNumber table, std::uint16_t columnId) {
  TableDesign design(storage_, table);
  const auto position = design.definition.FindColumnById(columnId);
  if (!position) Raise(kErrItemNotFound);
  const std::u16string name = design.definition.columns[*position].name;
  const std::u16string tableName = catalog_.Open(table)->Name();
  if (Relationships(storage_, catalog_).FindUse(tableName, name)) Raise(kErrFieldInRelation, name);
  for (const RealIndex& index : design.definition.realIndexes) {
    for (const IndexColumn& part : index.columns) {
      if (part.columnId == columnId) Raise(kErrFieldInIndex, name);
    }
  }
  if (design.definition.columns.size() == 1) Raise(kErrNoFieldDefined, tableName);
  design.RemoveColumn(*position);
  design.Write();
  const auto id = static_cast<std::int32_t>(table);
  PropertyBlob properties = catalog_.Properties(id);
  properties.RemoveColumn(name);
  catalog_.PutProperties(id, properties);
  Changed(table);
}

void Schema::RenameField(PageNumber table, std::uint16_t columnId, std::u16string_view name) {
  CheckName(name);
  TableDesign design(storage_, table);
  const auto own = design.definition.FindColumnById(columnId);
  if (!own) Raise(kErrItemNotFound, name);
  const auto taken = design.definition.FindColumn(name);
  if (taken && taken != own) Raise(kErrFieldDefinedTwice, name);
  const std::u16string former = std::exchange(design.definition.columns[*own].name, name);
  design.Write();
  const auto id = static_cast<std::int32_t>(table);
  PropertyBlob properties = catalog_.Properties(id);
  properties.RenameColumn(former, name);
  catalog_.PutProperties(id, properties);
  Relationships(storage_, catalog_).ColumnRenamed(catalog_.Open(table)->Name(), former, name);
  Changed(table);
}

std::uint32_t Schema::AddIndex(PageNumber table, const NewIndex& index) {
  TableDesign design(storage_, table);
  const IndexSpec spec = MakeIndexSpec(index, design.definition.columns);
  const std::u16string tableName = catalog_.Open(table)->Name();
  if (design.definition.logicalIndexes.size() >= kMaxIndexes) Raise(kErrTooManyIndexes, tableName);
  for (const LogicalIndex& other : design.definition.logicalIndexes) {
    if (spec.primary && other.kind == kIndexPrimary) Raise(kErrPrimaryKeyExists, tableName);
  }
  if (design.definition.FindIndex(spec.name)) Raise(kErrIndexExists, spec.name);
  const LogicalIndex entry = design.AddIndex(spec);
  design.Write();
  Changed(table);
  catalog_.Open(table)->FillIndex(entry.realIndex);
  return entry.number;
}

void Schema::DropIndex(PageNumber table, std::u16string_view name) {
  TableDesign design(storage_, table);
  const LogicalIndex* found = design.definition.FindIndex(name);
  if (!found || found->end == kEndReferenced) Raise(kErrItemNotFound, name);
  const LogicalIndex entry = *found;
  if (IsNeeded(design.definition, entry)) Raise(kErrUsedInRelation, name);
  design.RemoveLogicalIndex(entry.number);
  design.Write();
  Changed(table);
}

void Schema::RenameIndex(PageNumber table, std::uint32_t number, std::u16string_view name) {
  CheckName(name);
  TableDesign design(storage_, table);
  const LogicalIndex* found = design.definition.FindIndexByNumber(number);
  if (!found) Raise(kErrItemNotFound, name);
  if (found->IsRelation()) Raise(kErrInvalidOperation);
  const LogicalIndex* taken = design.definition.FindIndex(name);
  if (taken && taken->number != number) Raise(kErrIndexExists, name);
  LogicalIndex renamed = *found;
  renamed.name = name;
  std::erase_if(design.definition.logicalIndexes,
                [&](const LogicalIndex& other) { return other.number == number; });
  design.definition.InsertIndexSorted(renamed);
  design.Write();
  Changed(table);
}

}  // namespace zimbrat::jet
