#include "ddl.h"

#include <algorithm>

#include "jet/file/errors.h"
#include "jet/index/collation.h"
#include "platform/text.h"

#include "changes.h"
#include "column_change.h"
#include "from_compiler.h"

namespace zimbrat::jet {

namespace {

using namespace zimbrat::platform;

// A constraint without a name is named by what it is, numbered from the second on.
template <class IsTaken>
std::u16string FreeName(std::u16string_view start, IsTaken isTaken) {
  std::u16string name(start);
  for (int i = 1; isTaken(name); ++i) name = std::u16string(start) + DecimalText(i);
  return name;
}

template <class IsTaken>
NewIndex IndexOf(const ConstraintSpec& constraint, IsTaken isTaken) {
  NewIndex index;
  index.primary = constraint.kind == ConstraintSpec::Kind::Primary;
  index.unique = true;
  index.name = constraint.name;
  const std::u16string_view start = index.primary ? u"PrimaryKey" : std::u16string_view(constraint.columns.front());
  if (index.name.empty()) index.name = FreeName(start, isTaken);
  for (const std::u16string& column : constraint.columns) index.fields.push_back({column, false});
  return index;
}

}  // namespace

std::shared_ptr<Table> StructureChange::OpenUnused(std::u16string_view name, std::int32_t error) {
  std::shared_ptr<Table> table = OpenForChange(database_, name, error);
  requireUnused_(table->Page());
  return table;
}

void StructureChange::Run(const CreateTableStatement& statement) {
  const CatalogObject* taken = database_.GetCatalog().FindTableOrQuery(statement.table);
  if (taken && taken->IsTableOrLink()) Raise(kErrTableExists, statement.table);
  std::vector<NewIndex> indexes;
  const auto isTaken = [&](const std::u16string& name) {
    return std::any_of(indexes.begin(), indexes.end(),
                       [&](const NewIndex& index) { return EqualIgnoringCase(index.name, name); });
  };
  for (const ConstraintSpec& constraint : statement.constraints) {
    if (constraint.kind != ConstraintSpec::Kind::Foreign) indexes.push_back(IndexOf(constraint, isTaken));
  }
  schema_.CreateTable(statement.table, statement.fields, indexes);
  for (const ConstraintSpec& constraint : statement.constraints) {
    if (constraint.kind == ConstraintSpec::Kind::Foreign) AddReference(statement.table, constraint);
  }
}

void StructureChange::Run(const AlterTableStatement& statement) {
  const std::shared_ptr<Table> table = OpenUnused(statement.table, kErrTableOrConstraintNotFound);
  std::visit([&](const auto& change) { Change(*table, change); }, statement.change);
}

void StructureChange::Change(Table& table, const AddColumn& change) {
  if (table.Definition().FindColumn(change.field.name)) {
    Raise(kErrFieldExistsInTable, table.Name(), change.field.name);
  }
  schema_.AddField(table.Page(), change.field);
  for (const ConstraintSpec& constraint : change.constraints) Change(table, AddConstraint{constraint});
}

void StructureChange::Change(Table& table, const AlterColumn& change) {
  if (!table.Definition().FindColumn(change.field.name)) Raise(kErrNoSuchField, table.Name(), change.field.name);
  if (relationships_.FindUse(table.Name(), change.field.name)) Raise(kErrFieldInRelation, change.field.name);
  ChangeColumnType(database_, table, change.field);
}

void StructureChange::Change(Table& table, const DropColumn& change) {
  const auto position = table.Definition().FindColumn(change.name);
  if (!position) Raise(kErrNoSuchField, table.Name(), change.name);
  schema_.DropField(table.Page(), table.Definition().columns[*position].id);
}

void StructureChange::Change(Table& table, const AddConstraint& change) {
  if (change.constraint.kind == ConstraintSpec::Kind::Foreign) return AddReference(table.Name(), change.constraint);
  AddIndexOf(table, IndexOf(change.constraint, [&](const std::u16string& name) {
               return table.Definition().FindIndex(name) != nullptr;
             }));
}

void StructureChange::Change(Table& table, const DropConstraint& change) {
  for (const Relationship& relationship : relationships_.List()) {
    if (!EqualText(relationship.name, change.name) || !EqualText(relationship.foreignTable, table.Name())) continue;
    requireUnused_(OpenTable(database_, relationship.table, kErrNoSuchTable)->Page());
    return relationships_.Remove(relationship.name);
  }
  const LogicalIndex* index = table.Definition().FindIndex(change.name);
  if (!index || index->IsRelation()) Raise(kErrTableOrConstraintNotFound, change.name);
  schema_.DropIndex(table.Page(), change.name);
}

void StructureChange::AddIndexOf(Table& table, const NewIndex& index) {
  if (table.Definition().FindIndex(index.name)) Raise(kErrIndexExistsInTable, table.Name(), index.name);
  schema_.AddIndex(table.Page(), index);
}

std::vector<std::u16string> StructureChange::PrimaryKeyOf(Table& table) {
  std::vector<std::u16string> names;
  const TableDefinition& definition = table.Definition();
  for (const LogicalIndex& index : definition.logicalIndexes) {
    if (index.kind != kIndexPrimary) continue;
    for (const IndexColumn& part : definition.realIndexes[index.realIndex].columns) {
      names.push_back(definition.columns[*definition.FindColumnById(part.columnId)].name);
    }
  }
  if (names.empty()) Raise(kErrNoPrimaryKey, table.Name());
  return names;
}

void StructureChange::AddReference(std::u16string_view table, const ConstraintSpec& constraint) {
  const std::shared_ptr<Table> own = OpenUnused(table, kErrNoSuchTable);
  const std::shared_ptr<Table> other = OpenUnused(constraint.otherTable, kErrNoSuchTable);
  const std::vector<std::u16string> others =
      constraint.otherColumns.empty() ? PrimaryKeyOf(*other) : constraint.otherColumns;
  Relationship relationship;
  relationship.table = other->Name();
  relationship.foreignTable = own->Name();
  relationship.name = constraint.name;
  const auto isTaken = [&](const std::u16string& name) {
    return database_.GetCatalog().FindRelationship(name) || own->Definition().FindIndex(name);
  };
  if (relationship.name.empty()) relationship.name = FreeName(other->Name() + own->Name(), isTaken);
  if (database_.GetCatalog().FindRelationship(relationship.name)) Raise(kErrRelationExists, relationship.name);
  if (constraint.columns.size() != others.size()) Raise(kErrRelationFieldsDiffer, relationship.name);
  for (std::size_t i = 0; i < others.size(); ++i) {
    if (!own->Definition().FindColumn(constraint.columns[i])) {
      Raise(kErrNoSuchField, own->Name(), constraint.columns[i]);
    }
    if (!other->Definition().FindColumn(others[i])) Raise(kErrNoSuchField, other->Name(), others[i]);
    relationship.fields.push_back({others[i], constraint.columns[i]});
  }
  if (!HasUniqueIndex(*other, others)) Raise(kErrNotUniquelyIndexed, other->Name());
  relationships_.Add(std::move(relationship));
}

void StructureChange::Run(const CreateIndexStatement& statement) {
  AddIndexOf(*OpenUnused(statement.table, kErrNoSuchTable), statement.index);
}

void StructureChange::Run(const DropTableStatement& statement) {
  const CatalogObject* object = database_.GetCatalog().FindTable(statement.table);
  if (!object) Raise(kErrNoSuchTable, statement.table);
  if (object->Is(ObjectType::Table)) requireUnused_(static_cast<PageNumber>(object->id));
  schema_.DropTable(statement.table);
}

void StructureChange::Run(const DropIndexStatement& statement) {
  const std::shared_ptr<Table> table = OpenUnused(statement.table, kErrNoSuchTable);
  const LogicalIndex* index = table->Definition().FindIndex(statement.index);
  if (!index || index->end == kEndReferenced) Raise(kErrNoSuchIndex, statement.table, statement.index);
  schema_.DropIndex(table->Page(), statement.index);
}

}  // namespace zimbrat::jet
