#include "rebuild_catalogue.h"

#include <algorithm>

#include "rebuild_table.h"
#include "jet/catalog/new_database.h"
#include "jet/check/property_blob.h"
#include "jet/file/header.h"
#include "jet/index/key.h"
#include "platform/text.h"

namespace zimbrat::jet {

using check::BytesIn;
using check::NumberIn;
using check::RescuedRow;
using check::TableLayout;
using check::TextIn;

namespace {

constexpr std::int16_t kTable = static_cast<std::int16_t>(ObjectType::Table);
constexpr std::int32_t kTablesContainer = 0x0F000001;
constexpr std::size_t kIndexOfName = 0, kIndexOfId = 1;  // of MSysObjects
constexpr std::uint32_t kSystemFlags = 0x80000002;
// Longer names can only be damage, and their keys might be too long.
constexpr std::size_t kMaxObjectName = 160;

std::array<std::uint8_t, 2> MaskOf(ConstBytes sid, std::uint8_t first, std::uint8_t second) {
  return {static_cast<std::uint8_t>(Get8(sid, 0) ^ first),
          static_cast<std::uint8_t>(Get8(sid, 1) ^ second)};
}

bool HasName(Table& objects, std::int32_t parent, const std::u16string& name) {
  return objects.Tree(kIndexOfName)
      .ContainsKey(EncodeKey({{kTypeLong, true}, {kTypeText, true}}, {parent, name}));
}

// Unique in the container; the id tells apart what damage made equal.
std::u16string FreeName(Table& objects, std::int32_t parent, std::u16string_view wanted,
                        std::int32_t id) {
  const std::u16string base(wanted.substr(0, kMaxObjectName));
  std::u16string name = base.empty() ? std::u16string(u"Odzyskany obiekt") : base;
  while (HasName(objects, parent, name)) {
    name = base + u" (" + platform::DecimalText(static_cast<std::uint32_t>(id++)) + u")";
  }
  return name;
}

// Ids of tables are pages; all others lie far above.
bool IsPage(std::int32_t id) {
  return id > 0 && id < static_cast<std::int32_t>(kMaxPages);
}

}  // namespace

// The engine owns the system objects, Admin the database.
void CatalogueRebuild::NoteOwner(const TableLayout& layout, const RescuedRow& row) {
  const ConstBytes owner = BytesIn(layout, row, u"Owner");
  const StandardObject* object = FindStandardObject(NumberIn(layout, row, u"Id").value_or(0));
  if (sidMask_ || owner.size() != 2 || !object) return;
  sidMask_ = object->isOwnedByAdmin ? MaskOf(owner, 0x03, 0x01) : MaskOf(owner, 0x02, 0x03);
}

// For a file without these: what Admin may do with a system table.
void CatalogueRebuild::NoteEntryOfAdmin(const TableLayout& layout, const RescuedRow& row) {
  const ConstBytes sid = BytesIn(layout, row, u"SID");
  const auto id = static_cast<std::uint32_t>(NumberIn(layout, row, u"ObjectId").value_or(0));
  const bool isTheirs = IsSystemTablePage(id) && NumberIn(layout, row, u"ACM") == 0x00060000;
  if (!sidMask_ && isTheirs && sid.size() == 2) sidMask_ = MaskOf(sid, 0x03, 0x01);
}

void CatalogueRebuild::ReadTables() {
  const TableLayout layout = source_.ReadTable(kObjectsPage)->layout;
  const check::RowCounts counts = source_.ReadRows(layout, [&](const RescuedRow& row) {
    hasRows_ = true;
    NoteOwner(layout, row);
    const std::int32_t id = NumberIn(layout, row, u"Id").value_or(0);
    const auto page = static_cast<PageNumber>(id);
    if (NumberIn(layout, row, u"Type") != kTable || !IsPage(id) || page <= kRelationshipsPage)
      return;
    const auto flags = static_cast<std::uint32_t>(NumberIn(layout, row, u"Flags").value_or(0));
    RebuiltTable& table = tables_[page];
    if (table.isCatalogued) return;
    table.isCatalogued = true;
    table.report.name = TextIn(layout, row, u"Name");
    table.report.isSystem = (flags & kSystemFlags) != 0;
  });
  hasLostRows_ = counts.lost != 0;
}

void CatalogueRebuild::StoreObject(const TableLayout& layout, const RescuedRow& row, Table& objects,
                                   std::int32_t id, std::u16string_view name) {
  const std::optional<std::int32_t> parent = NumberIn(layout, row, u"ParentId");
  RowFields fields = FieldsFrom(objects, row);
  if (!parent) PutValue(objects, fields, u"ParentId", kTablesContainer);
  if (id != NumberIn(layout, row, u"Id")) PutValue(objects, fields, u"Id", id);
  if (name != TextIn(layout, row, u"Name"))
    PutValue(objects, fields, u"Name", std::u16string(name));
  const bool isTable = NumberIn(layout, row, u"Type") == kTable;
  if (isTable && !check::IsReadablePropertyBlob(BytesIn(layout, row, u"LvProp"))) {
    PutValue(objects, fields, u"LvProp", dao::Null());
    const auto found = tables_.find(static_cast<PageNumber>(NumberIn(layout, row, u"Id").value_or(0)));
    if (found != tables_.end())
      found->second.report.notes.push_back(u"utracono właściwości pól: wartości domyślne, reguły, opisy");
  }
  objects.Insert(objects.Prepare(fields));
}

// First, so that nothing takes their names.
void CatalogueRebuild::CopyStandardObjects() {
  const TableLayout layout = source_.ReadTable(kObjectsPage)->layout;
  Table objects(target_.GetStorage(), kObjectsPage, u"MSysObjects");
  source_.ReadRows(layout, [&](const RescuedRow& row) {
    const std::int32_t id = NumberIn(layout, row, u"Id").value_or(0);
    const StandardObject* object = FindStandardObject(id);
    if (!object || TextIn(layout, row, u"Name") != object->name ||
        NumberIn(layout, row, u"ParentId") != object->parent ||
        NumberIn(layout, row, u"Type") != static_cast<std::int16_t>(object->type)) {
      return;
    }
    if (standardObjects_.insert(id).second) StoreObject(layout, row, objects, id, object->name);
  });
}

RowFate CatalogueRebuild::CopyObject(const TableLayout& layout, const RescuedRow& row,
                                     Table& objects) {
  const std::int32_t id = NumberIn(layout, row, u"Id").value_or(0);
  const bool isTable = NumberIn(layout, row, u"Type") == kTable;
  if (FindStandardObject(id)) {
    return standardObjects_.contains(id) ? RowFate::Stored : RowFate::Lost;
  }
  if (id == 0 || !NumberIn(layout, row, u"Type") || isTable != IsPage(id)) return RowFate::Lost;
  const auto found = tables_.find(static_cast<PageNumber>(id));
  // Of a table that is lost its own report tells.
  if (isTable && (found == tables_.end() || found->second.page == 0)) return RowFate::NotNeeded;
  const std::int32_t newId = isTable ? static_cast<std::int32_t>(found->second.page) : id;
  if (objects.Tree(kIndexOfId).ContainsKey(EncodeKey({{kTypeLong, true}}, {newId})))
    return RowFate::Lost;
  const std::int32_t parent = NumberIn(layout, row, u"ParentId").value_or(kTablesContainer);
  const std::u16string name = FreeName(objects, parent, TextIn(layout, row, u"Name"), id);
  if (isTable) found->second.report.name = name;
  StoreObject(layout, row, objects, newId, name);
  return RowFate::Stored;
}

// Entries of tables that are gone must go: their numbers are other tables' now.
RowFate CatalogueRebuild::CopyAccessEntry(const TableLayout& layout, const RescuedRow& row,
                                          Table& aces) {
  const std::optional<std::int32_t> id = NumberIn(layout, row, u"ObjectId");
  if (!id) return RowFate::Lost;
  NoteEntryOfAdmin(layout, row);
  const auto page = static_cast<PageNumber>(*id);
  std::int32_t newId = *id;
  if (IsPage(*id) && !IsSystemTablePage(page)) {
    const auto found = tables_.find(page);
    if (found == tables_.end() || found->second.page == 0) return RowFate::NotNeeded;
    newId = static_cast<std::int32_t>(found->second.page);
  }
  RowFields fields = FieldsFrom(aces, row);
  PutValue(aces, fields, u"ObjectId", newId);
  return StoreSystemRow(aces, fields);
}

std::vector<RepairedTable> CatalogueRebuild::CopyRows() {
  const Storage storage = target_.GetStorage();
  CopyStandardObjects();
  std::vector<RepairedTable> reports;
  {
    Table aces(storage, kAcesPage, u"MSysACEs");
    reports.push_back(CopySystemRows(source_, aces, [&](const auto& layout, const RescuedRow& row) {
      return CopyAccessEntry(layout, row, aces);
    }));
  }
  AddMissingSystemRows(storage, target_.GetClock().Now(),
                       sidMask_.value_or(kGeneralOrigin.sidMask));
  Table objects(storage, kObjectsPage, u"MSysObjects");
  reports.push_back(CopySystemRows(
      source_, objects,
      [&](const auto& layout, const RescuedRow& row) { return CopyObject(layout, row, objects); }));
  Table queries(storage, kQueriesPage, u"MSysQueries");
  reports.push_back(CopySystemRows(source_, queries, [&](const auto&, const RescuedRow& row) {
    return StoreSystemRow(queries, FieldsFrom(queries, row));
  }));
  return reports;
}

void CatalogueRebuild::AddFoundTables() {
  Catalog& catalog = target_.GetCatalog();
  for (auto& [former, table] : tables_) {
    if (table.isCatalogued || table.page == 0) continue;
    std::u16string name = table.report.name;
    for (int n = 2; catalog.FindTableOrQuery(name); ++n) {
      name = table.report.name + u"_" + platform::DecimalText(n);
    }
    table.report.name = name;
    catalog.AddTable(name, table.page, {});
  }
}

void CatalogueRebuild::AddMissingAccessEntries() {
  Catalog& catalog = target_.GetCatalog();
  for (const CatalogObject& object : catalog.Objects()) {
    const bool needsThem = object.Is(ObjectType::Table) || object.Is(ObjectType::Relationship);
    if (needsThem) catalog.AddMissingAccessEntries(object);
  }
}

}  // namespace zimbrat::jet
