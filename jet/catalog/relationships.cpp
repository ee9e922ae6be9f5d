#include "jet/catalog/relationships.h"

#include <algorithm>
#include <map>
#include <utility>

#include "jet/catalog/row_store.h"
#include "jet/catalog/field_spec.h"
#include "jet/file/errors.h"
#include "jet/index/collation.h"

namespace zimbrat::jet {

namespace {

std::u16string TextAt(Table& table, const RowFields& fields, std::size_t column) {
  const dao::Value value = table.ValueOf(column, fields[column]);
  const auto* text = std::get_if<std::u16string>(&value);
  return text ? *text : std::u16string();
}

std::u16string TextAt(Table& table, const RowFields& fields, std::u16string_view column) {
  return TextAt(table, fields, ColumnOf(table, column));
}

std::int32_t LongAt(Table& table, const RowFields& fields, std::size_t column) {
  const dao::Value value = table.ValueOf(column, fields[column]);
  const auto* number = std::get_if<std::int32_t>(&value);
  return number ? *number : 0;
}

const CatalogObject& RequireLocalTable(Catalog& catalog, std::u16string_view name) {
  const CatalogObject* object = catalog.FindTable(name);
  if (!object || !object->Is(ObjectType::Table)) Raise(platform::kErrObjectNotFound, name);
  return *object;
}

std::vector<std::uint16_t> ColumnIds(Table& table, const Relationship& relationship, bool foreign) {
  std::vector<std::uint16_t> ids;
  for (const RelationField& field : relationship.fields) {
    const std::u16string& name = foreign ? field.foreignName : field.name;
    const auto column = table.Definition().FindColumn(name);
    if (!column) Raise(platform::kErrInvalidFieldName, name, relationship.name);
    ids.push_back(table.Definition().columns[*column].id);
  }
  return ids;
}

// The unique tree over exactly these columns, the primary key if there are several.
std::optional<std::uint32_t> FindUniqueIndex(const TableDefinition& d, const std::vector<std::uint16_t>& ids) {
  std::optional<std::uint32_t> found;
  for (std::uint32_t i = 0; i < d.realIndexes.size(); ++i) {
    const RealIndex& index = d.realIndexes[i];
    const bool same = index.columns.size() == ids.size() &&
                      std::all_of(index.columns.begin(), index.columns.end(), [&](const IndexColumn& c) {
                        return std::find(ids.begin(), ids.end(), c.columnId) != ids.end();
                      });
    if (!index.IsUnique() || !same) continue;
    const bool primary = std::any_of(
        d.logicalIndexes.begin(), d.logicalIndexes.end(),
        [&](const LogicalIndex& entry) { return entry.realIndex == i && entry.kind == kIndexPrimary; });
    if (!found || primary) found = i;
  }
  return found;
}

// The referring columns in the order of the referenced index, so that keys translate place by place.
std::vector<IndexColumn> ChildColumns(const RealIndex& parentIndex, const std::vector<std::uint16_t>& parentIds,
                                      const std::vector<std::uint16_t>& childIds) {
  std::vector<IndexColumn> columns;
  for (const IndexColumn& part : parentIndex.columns) {
    const auto place = std::find(parentIds.begin(), parentIds.end(), part.columnId) - parentIds.begin();
    columns.push_back({childIds[static_cast<std::size_t>(place)], true});
  }
  return columns;
}

std::optional<std::uint32_t> FindIndexOver(const TableDefinition& d, const std::vector<IndexColumn>& columns) {
  for (std::uint32_t i = 0; i < d.realIndexes.size(); ++i) {
    const std::vector<IndexColumn>& have = d.realIndexes[i].columns;
    const bool same = std::equal(have.begin(), have.end(), columns.begin(), columns.end(),
                                 [](const IndexColumn& a, const IndexColumn& b) { return a.columnId == b.columnId; });
    if (same) return i;
  }
  return std::nullopt;
}

// ".rB" for number 1 and so on; the next free letter when the name is taken.
std::u16string HiddenName(const TableDefinition& d, std::uint32_t number) {
  constexpr std::u16string_view letters = u"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
  for (std::size_t i = 0; i < letters.size(); ++i) {
    const std::u16string name = u".r" + std::u16string(1, letters[(number + i) % letters.size()]);
    const bool taken = std::any_of(d.logicalIndexes.begin(), d.logicalIndexes.end(),
                                   [&](const LogicalIndex& entry) { return entry.name == name; });
    if (!taken) return name;
  }
  Raise(platform::kErrTooManyIndexes);
}

void CheckTypes(Table& table, Table& foreign, const Relationship& relationship) {
  const auto ids = ColumnIds(table, relationship, false);
  const auto foreignIds = ColumnIds(foreign, relationship, true);
  for (std::size_t i = 0; i < ids.size(); ++i) {
    if (table.Page() == foreign.Page() && ids[i] == foreignIds[i]) {
      Raise(platform::kErrFieldRelatedToItself, relationship.fields[i].name);
    }
    const Column& a = table.Definition().columns[*table.Definition().FindColumnById(ids[i])];
    const Column& b = foreign.Definition().columns[*foreign.Definition().FindColumnById(foreignIds[i])];
    if (a.type != b.type) Raise(platform::kErrRelationFieldsDiffer, relationship.name);
  }
}

// Two entries that name each other; the trees that they lead to are the caller's business.
std::pair<LogicalIndex, LogicalIndex> MakeEnds(const Relationship& r, PageNumber page, PageNumber foreignPage,
                                               const TableDesign& parent, const TableDesign& child) {
  LogicalIndex one;
  one.number = parent.FreeIndexNumber();
  one.name = HiddenName(parent.definition, one.number);
  one.end = kEndReferenced;
  one.kind = kIndexRelation;
  one.otherTable = foreignPage;
  one.cascadeUpdate = (r.attributes & kRelationUpdateCascade) != 0 ? 1 : 0;
  one.cascadeDelete = (r.attributes & kRelationDeleteCascade) != 0 ? 1 : 0;
  LogicalIndex many = one;
  many.name = r.name;
  many.end = kEndReferring;
  many.otherTable = page;
  many.otherNumber = one.number;
  // In a table that refers to itself the numbers follow one another.
  many.number = page == foreignPage ? one.number + 1 : child.FreeIndexNumber();
  while (child.definition.FindIndexByNumber(many.number)) ++many.number;
  one.otherNumber = many.number;
  return {std::move(one), std::move(many)};
}

}  // namespace

std::vector<Relationship> Relationships::List() {
  const std::shared_ptr<Table> table = catalog_.Open(kRelationshipsPage);
  const auto find = [&](std::u16string_view name) { return ColumnOf(*table, name); };
  const std::size_t nameAt = find(u"szRelationship"), tableAt = find(u"szReferencedObject"),
                    foreignTableAt = find(u"szObject"), attributesAt = find(u"grbit"), positionAt = find(u"icolumn"),
                    columnAt = find(u"szReferencedColumn"), foreignColumnAt = find(u"szColumn");
  std::vector<Relationship> list;
  std::map<std::u16string, std::size_t> places;
  for (RowScan scan(*table); scan.Next();) {
    const std::u16string name = TextAt(*table, scan.Fields(), nameAt);
    const auto [place, isNew] = places.emplace(name, list.size());
    if (isNew) {
      list.push_back({name, TextAt(*table, scan.Fields(), tableAt),
                      TextAt(*table, scan.Fields(), foreignTableAt),
                      static_cast<std::uint32_t>(LongAt(*table, scan.Fields(), attributesAt)), {}});
    }
    std::vector<RelationField>& fields = list[place->second].fields;
    const auto position = static_cast<std::size_t>(LongAt(*table, scan.Fields(), positionAt));
    if (position >= kMaxColumns) continue;
    if (fields.size() <= position) fields.resize(position + 1);
    fields[position] = {TextAt(*table, scan.Fields(), columnAt),
                        TextAt(*table, scan.Fields(), foreignColumnAt)};
  }
  return list;
}

void Relationships::Add(Relationship r) {
  if (r.fields.empty()) Raise(platform::kErrRelationNoFields, r.name);
  CheckName(r.name);
  if (catalog_.FindRelationship(r.name)) Raise(platform::kErrObjectExists, r.name);
  const CatalogObject object = RequireLocalTable(catalog_, r.table);
  const CatalogObject foreignObject = RequireLocalTable(catalog_, r.foreignTable);
  const std::shared_ptr<Table> table = catalog_.Open(static_cast<PageNumber>(object.id));
  const std::shared_ptr<Table> foreign = catalog_.Open(static_cast<PageNumber>(foreignObject.id));
  CheckTypes(*table, *foreign, r);
  r.table = object.name;
  r.foreignTable = foreignObject.name;
  if (r.IsEnforced()) {
    // One-to-one is what the indexes say, whatever the caller says.
    const auto unique = FindUniqueIndex(foreign->Definition(), ColumnIds(*foreign, r, true));
    r.attributes = unique ? r.attributes | kRelationUnique : r.attributes & ~kRelationUnique;
    AddEntries(r);
  }
  AddRows(r);
  catalog_.AddRelationship(r.name);
}

void Relationships::AddRows(const Relationship& r) {
  const std::shared_ptr<Table> table = catalog_.Open(kRelationshipsPage);
  for (std::size_t i = 0; i < r.fields.size(); ++i) {
    table->Insert(table->Prepare(MakeRow(
        *table, {{u"szRelationship", r.name},
                 {u"szReferencedObject", r.table},
                 {u"szReferencedColumn", r.fields[i].name},
                 {u"szObject", r.foreignTable},
                 {u"szColumn", r.fields[i].foreignName},
                 {u"ccolumn", static_cast<std::int32_t>(r.fields.size())},
                 {u"icolumn", static_cast<std::int32_t>(i)},
                 {u"grbit", static_cast<std::int32_t>(r.attributes)}})));
  }
}

void Relationships::AddEntries(const Relationship& r) {
  const auto page = static_cast<PageNumber>(RequireLocalTable(catalog_, r.table).id);
  const auto foreignPage = static_cast<PageNumber>(RequireLocalTable(catalog_, r.foreignTable).id);
  const std::shared_ptr<Table> table = catalog_.Open(page);
  const std::shared_ptr<Table> foreign = catalog_.Open(foreignPage);
  const std::vector<std::uint16_t> ids = ColumnIds(*table, r, false);
  const auto parentReal = FindUniqueIndex(table->Definition(), ids);
  if (!parentReal) Raise(platform::kErrNoUniqueIndex, r.table, r.name);
  if (foreign->Definition().FindIndex(r.name)) Raise(platform::kErrIndexExists, r.name);

  TableDesign parentDesign(storage_, page);
  TableDesign otherDesign(storage_, foreignPage);
  TableDesign& childDesign = page == foreignPage ? parentDesign : otherDesign;
  auto [parentEntry, childEntry] = MakeEnds(r, page, foreignPage, parentDesign, childDesign);
  parentEntry.realIndex = *parentReal;
  const std::vector<IndexColumn> columns = ChildColumns(parentDesign.definition.realIndexes[*parentReal], ids,
                                                        ColumnIds(*foreign, r, true));
  const auto shared = FindIndexOver(childDesign.definition, columns);
  childEntry.realIndex = shared ? *shared : childDesign.AddRealIndex(columns, kIndexAlways);
  parentDesign.definition.InsertIndexSorted(parentEntry);
  childDesign.definition.InsertIndexSorted(childEntry);
  for (const TableDesign* design : {&parentDesign, &childDesign}) {
    if (design->definition.logicalIndexes.size() > kMaxIndexes) {
      Raise(platform::kErrTooManyIndexes, design == &childDesign ? r.foreignTable : r.table);
    }
  }
  parentDesign.Write();
  if (page != foreignPage) childDesign.Write();
  catalog_.DefinitionChanged(page);
  catalog_.DefinitionChanged(foreignPage);
  if (!shared) foreign->FillIndex(childEntry.realIndex);
  CheckRows(*table, *parentReal, *foreign, childEntry.realIndex);
}

void Relationships::CheckRows(Table& parent, std::uint32_t parentReal, Table& child, std::uint32_t childReal) {
  const RealIndex parentIndex = parent.Definition().realIndexes[parentReal];
  const RealIndex childIndex = child.Definition().realIndexes[childReal];
  for (RowScan scan(child); scan.Next();) {
    const auto key = TranslateKey(child, childIndex, parent, parentIndex, scan.Fields());
    if (key && !parent.Tree(parentReal).ContainsKey(*key)) {
      Raise(platform::kErrRelationDataViolates, child.Name(), parent.Name());
    }
  }
}

void Relationships::Remove(std::u16string_view name) {
  const std::vector<Relationship> list = List();
  const auto found = std::find_if(list.begin(), list.end(),
                                  [&](const Relationship& r) { return EqualText(r.name, name); });
  if (found == list.end()) Raise(platform::kErrItemNotFound, name);
  const std::shared_ptr<Table> table = catalog_.Open(kRelationshipsPage);
  for (RowScan scan(*table); scan.Next();) {
    if (TextAt(*table, scan.Fields(), u"szRelationship") == found->name) {
      table->Delete(scan.Place(), scan.Fields());
    }
  }
  if (found->IsEnforced()) RemoveEntries(*found);
  const CatalogObject* object = catalog_.FindRelationship(found->name);
  if (object) catalog_.Remove(object->id);
}

void Relationships::RemoveEntries(const Relationship& r) {
  const CatalogObject* foreign = catalog_.FindTable(r.foreignTable);
  if (!foreign || !foreign->Is(ObjectType::Table)) return;
  const auto foreignPage = static_cast<PageNumber>(foreign->id);
  TableDesign child(storage_, foreignPage);
  const LogicalIndex* found = child.definition.FindIndex(r.name);
  if (!found || !found->IsRelation()) return;
  const LogicalIndex entry = *found;
  child.RemoveLogicalIndex(entry.number);
  if (entry.otherTable == foreignPage) {
    child.RemoveLogicalIndex(entry.otherNumber);
  } else {
    TableDesign parent(storage_, entry.otherTable);
    parent.RemoveLogicalIndex(entry.otherNumber);
    parent.Write();
    catalog_.DefinitionChanged(entry.otherTable);
  }
  child.Write();
  catalog_.DefinitionChanged(foreignPage);
}

std::optional<std::u16string> Relationships::FindUse(std::u16string_view table) {
  for (const Relationship& r : List()) {
    if (EqualText(r.table, table) || EqualText(r.foreignTable, table)) return r.name;
  }
  return std::nullopt;
}

std::optional<std::u16string> Relationships::FindUse(std::u16string_view table, std::u16string_view column) {
  for (const Relationship& r : List()) {
    for (const RelationField& field : r.fields) {
      const bool referenced = EqualText(r.table, table) && EqualText(field.name, column);
      if (referenced || (EqualText(r.foreignTable, table) && EqualText(field.foreignName, column))) {
        return r.name;
      }
    }
  }
  return std::nullopt;
}

void Relationships::ReplaceName(std::u16string_view column, std::u16string_view from, std::u16string_view to,
                                std::u16string_view condition, std::u16string_view conditionValue) {
  const std::shared_ptr<Table> table = catalog_.Open(kRelationshipsPage);
  const std::size_t position = *table->Definition().FindColumn(column);
  for (RowScan scan(*table); scan.Next();) {
    if (!EqualText(TextAt(*table, scan.Fields(), column), from)) continue;
    if (!condition.empty() && !EqualText(TextAt(*table, scan.Fields(), condition), conditionValue)) continue;
    RowFields fields = scan.Fields();
    fields[position] = table->FieldOf(position, std::u16string(to));
    table->Update(scan.Place(), scan.Fields(), table->Prepare(fields, &scan.Fields()));
  }
}

void Relationships::TableRenamed(std::u16string_view from, std::u16string_view to) {
  ReplaceName(u"szObject", from, to);
  ReplaceName(u"szReferencedObject", from, to);
}

void Relationships::ColumnRenamed(std::u16string_view table, std::u16string_view from, std::u16string_view to) {
  ReplaceName(u"szColumn", from, to, u"szObject", table);
  ReplaceName(u"szReferencedColumn", from, to, u"szReferencedObject", table);
}

}  // namespace zimbrat::jet
