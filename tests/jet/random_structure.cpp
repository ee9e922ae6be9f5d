// Operations on the structure.
#include <gtest/gtest.h>

#include <algorithm>

#include "platform/error_numbers.h"
#include "platform/text.h"
#include "random_database.h"

namespace zimbrat::tests {

using platform::EqualIgnoringCase;

namespace {

constexpr std::size_t kMostTables = 6;
constexpr std::size_t kMostColumns = 25;
constexpr std::size_t kMostIndexes = 7;
constexpr std::size_t kMostRelations = 8;

std::vector<ModelIndex>::iterator FindIndex(ModelTable& table, std::u16string_view name) {
  return std::find_if(table.indexes.begin(), table.indexes.end(),
                      [&](const ModelIndex& index) { return EqualIgnoringCase(index.name, name); });
}

}  // namespace

void RandomDatabase::PutField(dao::TableDef& table, const ModelColumn& column) {
  const auto field = table.CreateField(column.name, std::int32_t{column.type}, std::int32_t{column.size});
  field->SetRequired(column.required);
  field->SetAllowZeroLength(column.allowsEmpty);
  table.Fields()->Append(field);
}

void RandomDatabase::PutIndex(dao::TableDef& table, const ModelIndex& index) {
  const auto made = table.CreateIndex(index.name);
  made->SetUnique(index.unique);
  made->SetRequired(index.required);
  made->SetIgnoreNulls(index.ignoresNulls);
  for (const auto& [column, descending] : index.columns) {
    const auto field = made->CreateField(column);
    if (descending) field->SetAttributes(dao::dbDescending);
    made->Fields()->Append(field);
  }
  table.Indexes()->Append(made);
}

void RandomDatabase::PutRelation(const ModelRelation& relation) {
  const auto made = database_->CreateRelation(relation.name, relation.table, relation.foreignTable,
                                              std::int32_t{relation.attributes});
  const auto field = made->CreateField(relation.column);
  field->SetForeignName(relation.foreignColumn);
  made->Fields()->Append(field);
  database_->Relations()->Append(made);
}

bool RandomDatabase::CreateTable() {
  if (model_.tables.size() >= kMostTables) return false;
  const std::u16string name = chance_.Name(u"Tabela");
  if (model_.Find(name) != model_.tables.end()) return false;
  ModelTable model;
  model.columns.push_back({.name = u"Id", .type = dao::dbLong, .size = 4});
  const auto table = database_->CreateTableDef(name);
  const auto id = table->CreateField(u"Id", std::int32_t{dao::dbLong}, std::int32_t{4});
  id->SetAttributes(dao::dbAutoIncrField | dao::dbFixedField);
  table->Fields()->Append(id);
  const auto primary = table->CreateIndex(u"PK");
  primary->SetPrimary(true);
  primary->Fields()->Append(primary->CreateField(u"Id"));
  table->Indexes()->Append(primary);
  for (std::uint32_t i = chance_.Below(9); i > 0; --i) {
    const ModelColumn column = chance_.Column();
    if (model.HasColumn(column.name)) continue;
    PutField(*table, column);
    model.columns.push_back(column);
  }
  database_->TableDefs()->Append(table);
  model_.tables.emplace(name, std::move(model));
  return true;
}

bool RandomDatabase::DropTable(Place place) {
  const bool isRelated = model_.IsRelated(place->first);
  if (Expect({isRelated ? platform::kErrUsedInRelation : 0}, [&] { database_->TableDefs()->Delete(place->first); })) {
    model_.tables.erase(place);
  }
  return true;
}

bool RandomDatabase::RenameTable(Place place) {
  const std::u16string name = chance_.Name(u"Tabela"), former = place->first;
  const Place taken = model_.Find(name);
  const bool isFree = taken == model_.tables.end() || taken == place;
  if (!Expect({isFree ? 0 : platform::kErrTableExists}, [&] { TableOf(former)->SetName(name); })) return true;
  auto node = model_.tables.extract(place);
  node.key() = name;
  model_.tables.insert(std::move(node));
  for (ModelRelation& relation : model_.relations) {
    if (relation.table == former) relation.table = name;
    if (relation.foreignTable == former) relation.foreignTable = name;
  }
  return true;
}

bool RandomDatabase::AddField(Place place) {
  ModelTable& table = place->second;
  ModelColumn column = chance_.Column();
  if (table.columns.size() > kMostColumns) return false;
  // No row could be changed any more.
  if (!table.rows.empty()) column.required = false;
  const bool isTaken = table.HasColumn(column.name);
  const bool bySql = column.type == dao::dbLong && !column.required && chance_.OneIn(2);
  const std::int32_t refusal = bySql ? platform::kErrFieldExistsInTable : platform::kErrFieldDefinedTwice;
  const bool isDone = Expect({isTaken ? refusal : 0}, [&] {
    if (!bySql) return PutField(*TableOf(place->first), column);
    Execute(u"ALTER TABLE [" + place->first + u"] ADD COLUMN [" + column.name + u"] LONG");
  });
  if (!isDone) return true;
  table.columns.push_back(column);
  const dao::Value initial = column.type == dao::dbBoolean ? dao::Value(false) : dao::Value();
  for (auto& [id, row] : table.rows) row[column.name] = initial;
  return true;
}

bool RandomDatabase::DropField(Place place) {
  ModelTable& table = place->second;
  const ModelColumn* column = SomeColumn(table);
  if (!column) return false;
  const std::u16string name = column->name;
  const bool isRelated = std::any_of(model_.relations.begin(), model_.relations.end(),
                                     [&](const ModelRelation& r) { return r.Uses(place->first, name); });
  const std::int32_t expected =
      isRelated ? platform::kErrFieldInRelation : table.IsIndexed(name) ? platform::kErrFieldInIndex : 0;
  if (!Expect({expected}, [&] { TableOf(place->first)->Fields()->Delete(name); })) return true;
  std::erase_if(table.columns, [&](const ModelColumn& c) { return c.name == name; });
  for (auto& [id, row] : table.rows) row.erase(name);
  return true;
}

bool RandomDatabase::RenameField(Place place) {
  ModelTable& table = place->second;
  ModelColumn* column = SomeColumn(table);
  const std::u16string name = chance_.Name(u"Pole");
  if (!column) return false;
  const std::u16string former = column->name;
  const bool isTaken = table.HasColumn(name) && !EqualIgnoringCase(former, name);
  const bool isDone = Expect({isTaken ? platform::kErrFieldDefinedTwice : 0},
                             [&] { TableOf(place->first)->Fields()->Item(former)->SetName(name); });
  if (!isDone) return true;
  column->name = name;
  for (ModelIndex& index : table.indexes) {
    for (auto& [part, descending] : index.columns) part = part == former ? name : part;
  }
  for (ModelRelation& relation : model_.relations) {
    if (relation.table == place->first && relation.column == former) relation.column = name;
    if (relation.foreignTable == place->first && relation.foreignColumn == former) relation.foreignColumn = name;
  }
  for (auto& [id, row] : table.rows) {
    auto node = row.extract(former);
    node.key() = name;
    row.insert(std::move(node));
  }
  return true;
}

bool RandomDatabase::AddIndex(Place place) {
  ModelTable& table = place->second;
  if (table.indexes.size() >= kMostIndexes) return false;
  ModelIndex index{.name = chance_.Name(u"Indeks")};
  bool hasKnownKeys = true;
  for (std::uint32_t i = chance_.Below(3) + 1; i > 0; --i) {
    const ModelColumn* column = SomeColumn(table);
    if (!column || column->type == dao::dbLongBinary || index.Has(column->name)) continue;
    index.columns.emplace_back(column->name, chance_.OneIn(3));
    hasKnownKeys = hasKnownKeys && column->HasKnownKeys();
  }
  if (index.columns.empty()) return false;
  index.unique = hasKnownKeys && chance_.OneIn(2);
  index.required = chance_.OneIn(12);
  index.ignoresNulls = chance_.OneIn(4);
  std::set<std::int32_t> expected = table.BreachesOf(index);
  if (FindIndex(table, index.name) != table.indexes.end()) expected = {platform::kErrIndexExists};
  if (expected.empty()) expected = {0};
  // Rows whose texts together make too long a key have been put in while there was no index.
  const bool mayBeTooLarge = std::any_of(table.rows.begin(), table.rows.end(), [&](const auto& row) {
    return ModelTable::MayBeTooLarge(row.second, index);
  });
  if (mayBeTooLarge) expected.insert(platform::kErrRecordTooLarge);
  if (Expect(expected, [&] { PutIndex(*TableOf(place->first), index); })) table.indexes.push_back(index);
  return true;
}

bool RandomDatabase::DropIndex(Place place) {
  ModelTable& table = place->second;
  if (table.indexes.empty()) return false;
  const auto index = table.indexes.begin() + chance_.Below(table.indexes.size());
  std::set<std::int32_t> expected = {0};
  for (const ModelRelation& relation : model_.relations) {
    if (!index->unique || !relation.IsEnforced()) continue;
    const bool isParent = relation.table == place->first && index->IsOver(relation.column);
    const bool isChild = relation.foreignTable == place->first && index->IsOver(relation.foreignColumn);
    // Which one a relation leads to, where there are several, is known to the file alone.
    const bool isOnly = isParent && std::count_if(table.indexes.begin(), table.indexes.end(), [&](const ModelIndex& i) {
                          return i.unique && i.IsOver(relation.column);
                        }) == 1;
    if (isParent || isChild) expected.insert(platform::kErrUsedInRelation);
    if (isOnly) expected.erase(0);
  }
  if (Expect(expected, [&] { TableOf(place->first)->Indexes()->Delete(index->name); })) table.indexes.erase(index);
  return true;
}

bool RandomDatabase::RenameIndex(Place place) {
  ModelTable& table = place->second;
  if (table.indexes.empty()) return false;
  const auto index = table.indexes.begin() + chance_.Below(table.indexes.size());
  const std::u16string name = chance_.Name(u"Indeks");
  const auto taken = FindIndex(table, name);
  const bool isFree = taken == table.indexes.end() || taken == index;
  const bool isDone = Expect({isFree ? 0 : platform::kErrIndexExists},
                             [&] { TableOf(place->first)->Indexes()->Item(index->name)->SetName(name); });
  if (isDone) index->name = name;
  return true;
}

// A column for the referring side: a new one, or one whose numbers may fit or not.
std::optional<ModelColumn> RandomDatabase::ChildColumn(Place child) {
  ModelTable& table = child->second;
  if (chance_.OneIn(3)) {
    const ModelColumn* column = SomeColumnOf(table, dao::dbLong);
    if (!column || model_.ParentOf(child->first, column->name)) return std::nullopt;
    return *column;
  }
  const ModelColumn column{.name = chance_.Name(u"Pole"), .type = dao::dbLong};
  if (table.HasColumn(column.name) || table.columns.size() > kMostColumns) return std::nullopt;
  PutField(*TableOf(child->first), column);
  table.columns.push_back(column);
  for (auto& [id, row] : table.rows) row[column.name] = dao::Null{};
  return column;
}

bool RandomDatabase::AddRelation() {
  const Place parent = SomeTable(), child = SomeTable();
  // The outcome of a circle of cascades depends on the order in which they are followed.
  if (model_.relations.size() >= kMostRelations || model_.DependsOn(parent->first, child->first)) return false;
  ModelRelation relation{.name = chance_.Name(u"Relacja"), .table = parent->first, .column = u"Id"};
  for (const ModelIndex& index : parent->second.indexes) {
    const ModelColumn* number = SomeColumnOf(parent->second, dao::dbLong);
    if (number && index.unique && index.IsOver(number->name)) relation.column = number->name;
  }
  const std::optional<ModelColumn> column = ChildColumn(child);
  if (!column) return false;
  relation.foreignTable = child->first;
  relation.foreignColumn = column->name;
  constexpr std::int32_t attributes[] = {0, dao::dbRelationUpdateCascade, dao::dbRelationDeleteCascade,
                                         dao::dbRelationUpdateCascade | dao::dbRelationDeleteCascade,
                                         dao::dbRelationUpdateCascade | dao::dbRelationDeleteCascade,
                                         dao::dbRelationDontEnforce};
  relation.attributes = attributes[chance_.Below(std::size(attributes))];
  const bool isTaken = std::any_of(model_.relations.begin(), model_.relations.end(), [&](const ModelRelation& other) {
    return EqualIgnoringCase(other.name, relation.name);
  });
  const auto& parents = parent->second.rows;
  const bool isBroken = std::any_of(child->second.rows.begin(), child->second.rows.end(), [&](const auto& row) {
    const dao::Value& value = row.second.at(relation.foreignColumn);
    return !dao::IsNull(value) && std::none_of(parents.begin(), parents.end(), [&](const auto& of) {
      return ModelTable::ValueOf(of.first, of.second, relation.column) == value;
    });
  });
  const bool bySql = relation.attributes == 0 && chance_.OneIn(2);
  const std::int32_t taken = bySql ? platform::kErrRelationExists : platform::kErrObjectExists;
  const std::int32_t broken = isBroken && relation.IsEnforced() ? platform::kErrRelationDataViolates : 0;
  const bool isDone = Expect({isTaken ? taken : broken}, [&] {
    if (!bySql) return PutRelation(relation);
    Execute(u"ALTER TABLE [" + relation.foreignTable + u"] ADD CONSTRAINT [" + relation.name + u"] FOREIGN KEY ([" +
            relation.foreignColumn + u"]) REFERENCES [" + relation.table + u"] ([" + relation.column + u"])");
  });
  if (isDone) model_.relations.push_back(relation);
  return true;
}

bool RandomDatabase::DropRelation() {
  if (model_.relations.empty()) return false;
  const auto place = model_.relations.begin() + chance_.Below(model_.relations.size());
  database_->Relations()->Delete(place->name);
  model_.relations.erase(place);
  return true;
}

}  // namespace zimbrat::tests
