#include "catalogue_check.h"

#include <algorithm>
#include <utility>

#include "long_values.h"
#include "property_blob.h"
#include "jet/index/collation.h"

namespace zimbrat::jet::check {

namespace {

constexpr std::int16_t kTypeTable = 1;
constexpr std::int16_t kTypeRelationship = 8;
constexpr std::int32_t kNotEnforced = 2;
constexpr std::int32_t kCascadeUpdates = 0x100;
constexpr std::int32_t kCascadeDeletes = 0x1000;
// The engine's own limit is 32,768.
constexpr std::size_t kMaxObjects = 65536;
constexpr std::size_t kMaxPeeked = 64;

struct SystemColumn {
  PageNumber page;
  std::u16string_view name;
};
constexpr SystemColumn kSystemColumns[] = {
    {kObjectsPage, u"Id"},
    {kObjectsPage, u"ParentId"},
    {kObjectsPage, u"Name"},
    {kObjectsPage, u"Type"},
    {kObjectsPage, u"DateCreate"},
    {kObjectsPage, u"DateUpdate"},
    {kObjectsPage, u"Flags"},
    {kObjectsPage, u"Owner"},
    {kObjectsPage, u"LvProp"},
    {kAcesPage, u"ObjectId"},
    {kAcesPage, u"ACM"},
    {kAcesPage, u"SID"},
    {kAcesPage, u"FInheritable"},
    {kRelationshipsPage, u"szRelationship"},
    {kRelationshipsPage, u"szObject"},
    {kRelationshipsPage, u"szColumn"},
    {kRelationshipsPage, u"szReferencedObject"},
    {kRelationshipsPage, u"szReferencedColumn"},
    {kRelationshipsPage, u"grbit"},
    {kRelationshipsPage, u"ccolumn"},
    {kRelationshipsPage, u"icolumn"},
};

std::vector<std::byte> KeyOfName(std::u16string_view name) {
  std::vector<std::byte> key;
  AppendTextKey(name, true, key);
  return key;
}

std::u16string PlaceOf(const CatalogueObject& object) {
  return TextOf(u"obiekt „", object.name, u"”");
}

}  // namespace

bool CatalogueObject::IsTable() const {
  return type == kTypeTable;
}
bool CatalogueObject::IsRelationship() const {
  return type == kTypeRelationship;
}

void CatalogueCheck::RequireColumns(const TableLayout& table) {
  for (const SystemColumn& column : kSystemColumns) {
    if (column.page != table.page) continue;
    const bool isThere = std::ranges::find(table.columns, column.name, &ColumnLayout::name) != table.columns.end();
    if (!isThere) check_.Loss(table.place, TextOf(u"tabela systemowa nie ma kolumny „", column.name, u"”"));
  }
}

std::int32_t CatalogueCheck::LongOf(const TableLayout& table, const RowParts& row,
                                    std::u16string_view name) {
  const ColumnLayout* column = table.FindColumn(name);
  if (!column) return 0;
  const dao::Value value = ValueOfField(check_, *column, row.Field(*column));
  if (const auto* number = std::get_if<std::int32_t>(&value)) return *number;
  if (const auto* number = std::get_if<std::int16_t>(&value)) return *number;
  return 0;
}

std::u16string CatalogueCheck::TextOfField(const TableLayout& table, const RowParts& row,
                                           std::u16string_view name) {
  const ColumnLayout* column = table.FindColumn(name);
  if (!column) return {};
  const dao::Value value = ValueOfField(check_, *column, row.Field(*column));
  const auto* text = std::get_if<std::u16string>(&value);
  return text ? *text : std::u16string();
}

void CatalogueCheck::AddObject(const TableLayout& table, const RowParts& row) {
  if (objects_.size() == kMaxObjects) return;
  CatalogueObject object;
  object.id = static_cast<std::uint32_t>(LongOf(table, row, u"Id"));
  object.parent = static_cast<std::uint32_t>(LongOf(table, row, u"ParentId"));
  object.type = static_cast<std::int16_t>(LongOf(table, row, u"Type"));
  object.name = TextOfField(table, row, u"Name");
  if (object.IsTable()) CheckProperties(table, row, object);
  objects_.push_back(std::move(object));
  if (objects_.size() == kMaxObjects) check_.Error(u"katalog", u"zbyt wiele obiektów");
}

// Long values that cannot be read are reported with the row.
void CatalogueCheck::CheckProperties(const TableLayout& table, const RowParts& row,
                                     const CatalogueObject& object) {
  constexpr std::size_t kMostBytes = 1 << 20;
  const ColumnLayout* column = table.FindColumn(u"LvProp");
  const auto field = column && column->IsLongValue() ? row.Field(*column) : std::nullopt;
  if (!field) return;
  const LongValue value = PeekLongValue(check_, *field, kMostBytes);
  if (value.fault.empty() && value.start.size() == value.length && !IsReadablePropertyBlob(value.start))
    check_.Error(PlaceOf(object), u"właściwości tabeli i jej pól są nieczytelne");
}

void CatalogueCheck::FinishObjects() {
  std::sort(objects_.begin(), objects_.end(),
            [](const CatalogueObject& a, const CatalogueObject& b) { return a.id < b.id; });
  for (std::size_t i = 0; i < objects_.size(); ++i) {
    const CatalogueObject& object = objects_[i];
    if (object.name.empty()) check_.Error(TextOf(u"obiekt ", object.id), u"nie ma nazwy");
    if (object.IsTable()) tableNames_.emplace_back(KeyOfName(object.name), i);
    if (object.IsRelationship()) relationshipNames_.push_back(KeyOfName(object.name));
  }
  std::sort(tableNames_.begin(), tableNames_.end());
  std::sort(relationshipNames_.begin(), relationshipNames_.end());
}

CatalogueObject* CatalogueCheck::FindObject(std::uint32_t id) {
  const auto found = std::lower_bound(
      objects_.begin(), objects_.end(), id,
      [](const CatalogueObject& object, std::uint32_t i) { return object.id < i; });
  return found != objects_.end() && found->id == id ? &*found : nullptr;
}

const CatalogueObject* CatalogueCheck::FindTable(std::u16string_view name) {
  const std::vector<std::byte> key = KeyOfName(name);
  const auto found =
      std::lower_bound(tableNames_.begin(), tableNames_.end(), std::pair(key, std::size_t{0}));
  return found != tableNames_.end() && found->first == key ? &objects_[found->second] : nullptr;
}

bool CatalogueCheck::HasRelationship(std::u16string_view name) const {
  return std::binary_search(relationshipNames_.begin(), relationshipNames_.end(), KeyOfName(name));
}

void CatalogueCheck::AddPermission(const TableLayout& table, const RowParts& row) {
  CatalogueObject* object = FindObject(static_cast<std::uint32_t>(LongOf(table, row, u"ObjectId")));
  if (object) object->hasPermissions = true;
}

void CatalogueCheck::CheckPermissions() {
  for (const CatalogueObject& object : objects_) {
    const bool needsThem = object.IsTable() || object.IsRelationship();
    if (needsThem && !object.hasPermissions)
      check_.Error(PlaceOf(object), u"nie ma uprawnień w MSysACEs");
  }
}

const TableLayout* CatalogueCheck::Peek(PageNumber page) {
  const auto found = std::find_if(peeked_.begin(), peeked_.end(),
                                  [&](const TableLayout& table) { return table.page == page; });
  if (found != peeked_.end()) return &*found;
  std::optional<TableLayout> table = PeekLayout(check_, page);
  if (!table) return nullptr;
  if (peeked_.size() == kMaxPeeked) peeked_.erase(peeked_.begin());
  peeked_.reserve(kMaxPeeked);
  peeked_.push_back(std::move(*table));
  return &peeked_.back();
}

void CatalogueCheck::CheckRelations(const TableLayout& table) {
  for (const LogicalLayout& logical : table.logicals) {
    if (logical.kind == kIndexRelation && !check_.report.IsFull()) CheckRelation(table, logical);
  }
}

void CatalogueCheck::CheckRelation(const TableLayout& table, const LogicalLayout& logical) {
  const std::u16string place = TextOf(table.place, u", relacja „", logical.name, u"”");
  const CatalogueObject* object = FindObject(logical.otherTable);
  const TableLayout* other = object && object->IsTable() ? Peek(logical.otherTable) : nullptr;
  const LogicalLayout* partner = other ? other->FindLogical(logical.otherNumber) : nullptr;
  if (!partner)
    return check_.Error(
        place, TextOf(u"drugiego końca (tabela ze strony ", logical.otherTable, u") nie ma"));
  const bool areMutual = partner->kind == kIndexRelation && partner->otherTable == table.page &&
                         partner->otherNumber == logical.number && partner->end + logical.end == 3;
  if (!areMutual) return check_.Error(place, u"końce relacji nie wskazują na siebie nawzajem");
  if (partner->cascadeUpdates != logical.cascadeUpdates ||
      partner->cascadeDeletes != logical.cascadeDeletes) {
    check_.Error(place, u"końce relacji mają różne reguły kaskadowe");
  }
  if (logical.end == kEndReferring) {
    if (!HasRelationship(logical.name)) check_.Error(place, u"relacji nie ma w katalogu");
    return;
  }
  const bool hasTree = logical.index < table.indexes.size();  // else it was reported
  if (hasTree && !table.indexes[logical.index].Has(kIndexUnique)) {
    check_.Error(place, u"indeks strony głównej dopuszcza powtórzenia");
  }
}

void CatalogueCheck::AddRelationshipRow(const TableLayout& table, const RowParts& parts) {
  RelationshipRow row;
  row.name = TextOfField(table, parts, u"szRelationship");
  row.table = TextOfField(table, parts, u"szObject");
  row.column = TextOfField(table, parts, u"szColumn");
  row.otherTable = TextOfField(table, parts, u"szReferencedObject");
  row.otherColumn = TextOfField(table, parts, u"szReferencedColumn");
  row.flags = LongOf(table, parts, u"grbit");
  row.columns = LongOf(table, parts, u"ccolumn");
  row.position = LongOf(table, parts, u"icolumn");
  const std::u16string place = TextOf(u"relacja „", row.name, u"”");
  if (!HasRelationship(row.name)) check_.Error(place, u"nie ma obiektu w MSysObjects");
  // Rows that were left behind by tables long gone are found in sound files.
  const CatalogueObject* referring = FindTable(row.table);
  const CatalogueObject* referenced = FindTable(row.otherTable);
  if (!referring || !referenced || (row.flags & kNotEnforced) != 0) return;
  const TableLayout* layout = Peek(referring->id);
  if (!layout) return;  // reported with its table
  const auto logical =
      std::find_if(layout->logicals.begin(), layout->logicals.end(), [&](const LogicalLayout& l) {
        return l.kind == kIndexRelation && l.end == kEndReferring && EqualText(l.name, row.name);
      });
  if (logical == layout->logicals.end() || logical->otherTable != referenced->id) {
    return check_.Error(place, TextOf(u"definicja tabeli „", row.table, u"” nie ma tej relacji"));
  }
  CheckRelationshipColumns(row, *layout, *logical);
}

void CatalogueCheck::CheckRelationshipColumns(const RelationshipRow& row,
                                              const TableLayout& referring,
                                              const LogicalLayout& logical) {
  const std::u16string place = TextOf(u"relacja „", row.name, u"”");
  const bool updates = (row.flags & kCascadeUpdates) != 0,
             deletes = (row.flags & kCascadeDeletes) != 0;
  if (updates != (logical.cascadeUpdates != 0) || (deletes && logical.cascadeDeletes == 0)) {
    check_.Error(place, u"reguły kaskadowe w katalogu i w definicji są różne");
  }
  if (!relationshipPlaces_.emplace(referring.page, logical.number, row.position).second)
    check_.Error(place, TextOf(u"katalog podaje kolumnę ", row.position, u" dwa razy"));
  CheckRelationshipColumn(row, referring, logical.index, row.column);
  const PageNumber otherPage = logical.otherTable;
  const std::uint32_t otherNumber = logical.otherNumber;
  const TableLayout* other = Peek(otherPage);  // `referring` and `logical` may be gone from here on
  const LogicalLayout* partner = other ? other->FindLogical(otherNumber) : nullptr;
  if (partner) CheckRelationshipColumn(row, *other, partner->index, row.otherColumn);
}

void CatalogueCheck::CheckRelationshipColumn(const RelationshipRow& row, const TableLayout& table,
                                             std::uint32_t index, std::u16string_view column) {
  const std::u16string place = TextOf(u"relacja „", row.name, u"”");
  if (index >= table.indexes.size()) return;  // reported with its table
  const std::vector<IndexLayout::Part>& parts = table.indexes[index].parts;
  if (row.columns != static_cast<std::int32_t>(parts.size()) || row.position < 0 ||
      row.position >= row.columns) {
    return check_.Error(place, TextOf(u"katalog podaje kolumnę ", row.position, u" z ", row.columns,
                                      u", a indeks ma ", parts.size()));
  }
  // The index may have them in another order.
  const ColumnLayout* found = table.FindColumn(column);
  const bool isThere = found && std::any_of(parts.begin(), parts.end(), [&](const auto& part) {
                         return part.columnId == found->id;
                       });
  if (!isThere) check_.Error(place, TextOf(u"kolumny „", column, u"” nie ma w indeksie relacji"));
}

}  // namespace zimbrat::jet::check
