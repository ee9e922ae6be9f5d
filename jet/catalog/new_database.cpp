#include "jet/catalog/new_database.h"

#include <algorithm>
#include <span>
#include <string_view>
#include <vector>

#include "jet/file/data_page.h"
#include "jet/file/header.h"
#include "jet/index/key.h"
#include "jet/index/tree.h"
#include "jet/table/table.h"

namespace zimbrat::jet {

namespace {

constexpr PageNumber kSystemMapsPage = 6;
constexpr PageNumber kFirstRootPage = 7;
constexpr PageNumber kFirstDataPage = 14;
constexpr std::size_t kMapRowsOfSystemTables = 31;

struct SystemColumn {
  std::u16string_view name;
  std::uint16_t id;
  std::uint8_t type;
  std::uint8_t flags;
  std::uint16_t variableIndex;
  std::uint16_t fixedOffset;
  std::uint16_t length;
};
constexpr std::uint8_t kFixed = kColumnSystem | kColumnNullable | kColumnFixed;
constexpr std::uint8_t kVariable = kColumnSystem | kColumnNullable;
constexpr std::uint8_t kSid = kColumnSid | kColumnSystem | kColumnNullable;

// Sorted by name, as system tables keep their columns.
constexpr SystemColumn kObjectsColumns[] = {
    {u"Connect", 9, kTypeMemo, kVariable, 3, 0, 0},
    {u"Database", 8, kTypeMemo, kVariable, 2, 0, 0},
    {u"DateCreate", 4, kTypeDate, kFixed, 1, 10, 8},
    {u"DateUpdate", 5, kTypeDate, kFixed, 1, 18, 8},
    {u"Flags", 7, kTypeLong, kFixed, 2, 26, 4},
    {u"ForeignName", 10, kTypeText, kVariable, 4, 0, 510},
    {u"Id", 0, kTypeLong, kFixed, 0, 0, 4},
    {u"Lv", 13, kTypeLongBinary, kVariable, 7, 0, 0},
    {u"LvExtra", 16, kTypeLongBinary, kVariable, 10, 0, 0},
    {u"LvModule", 15, kTypeLongBinary, kVariable, 9, 0, 0},
    {u"LvProp", 14, kTypeLongBinary, kVariable, 8, 0, 0},
    {u"Name", 2, kTypeText, kVariable, 0, 0, 510},
    {u"Owner", 6, kTypeBinary, kSid, 1, 0, 510},
    {u"ParentId", 1, kTypeLong, kFixed, 0, 4, 4},
    {u"RmtInfoLong", 12, kTypeLongBinary, kVariable, 6, 0, 0},
    {u"RmtInfoShort", 11, kTypeBinary, kVariable, 5, 0, 510},
    {u"Type", 3, kTypeInteger, kFixed, 1, 8, 2},
};
constexpr SystemColumn kAcesColumns[] = {
    {u"ACM", 2, kTypeLong, kFixed, 1, 4, 4},
    {u"FInheritable", 3, kTypeBoolean, kFixed, 1, 0, 1},
    {u"ObjectId", 0, kTypeLong, kFixed, 0, 0, 4},
    {u"SID", 1, kTypeBinary, kSid, 0, 0, 510},
};
constexpr SystemColumn kQueriesColumns[] = {
    {u"Attribute", 1, kTypeByte, kFixed, 0, 4, 1},
    {u"Expression", 5, kTypeMemo, kVariable, 3, 0, 0},
    {u"Flag", 6, kTypeInteger, kFixed, 4, 5, 2},
    {u"LvExtra", 7, kTypeLong, kFixed, 4, 7, 4},
    {u"Name1", 3, kTypeText, kVariable, 1, 0, 510},
    {u"Name2", 4, kTypeText, kVariable, 2, 0, 510},
    {u"ObjectId", 0, kTypeLong, kFixed, 0, 0, 4},
    {u"Order", 2, kTypeBinary, kVariable, 0, 0, 510},
};
constexpr SystemColumn kRelationshipsColumns[] = {
    {u"ccolumn", 2, kTypeLong, kFixed, 1, 4, 4},
    {u"grbit", 1, kTypeLong, kFixed, 1, 0, 4},
    {u"icolumn", 3, kTypeLong, kFixed, 1, 8, 4},
    {u"szColumn", 5, kTypeText, kVariable, 2, 0, 510},
    {u"szObject", 4, kTypeText, kVariable, 1, 0, 510},
    {u"szReferencedColumn", 7, kTypeText, kVariable, 4, 0, 510},
    {u"szReferencedObject", 6, kTypeText, kVariable, 3, 0, 510},
    {u"szRelationship", 0, kTypeText, kVariable, 0, 0, 510},
};

struct SystemIndex {
  std::vector<std::uint16_t> columnIds;
  std::uint8_t flags;
};
struct SystemEntry {
  std::u16string_view name;
  std::uint32_t number;  // also of the real index
  bool primary;
};
struct SystemTable {
  PageNumber page;
  std::span<const SystemColumn> columns;
  std::uint16_t columnCount;
  std::uint16_t variableCount;
  std::vector<std::uint16_t> longValueIds;  // in the order of the definition's list
  std::vector<SystemIndex> indexes;
  std::vector<SystemEntry> entries;  // sorted by name
};

std::vector<SystemTable> SystemTables() {
  constexpr std::uint8_t unique = kIndexAlways | kIndexUnique;
  constexpr std::uint8_t ignoreNulls = kIndexAlways | kIndexIgnoreNulls;
  return {
      {kObjectsPage, kObjectsColumns, 17, 11, {9, 8, 13, 16, 15, 14, 12},
       {{{1, 2}, unique}, {{0}, unique}},
       {{u"Id", 1, true}, {u"ParentIdName", 0, false}}},
      {kAcesPage, kAcesColumns, 4, 1, {}, {{{0}, kIndexAlways | kIndexRequired}},
       {{u"ObjectId", 0, false}}},
      {kQueriesPage, kQueriesColumns, 8, 4, {5}, {{{0, 1, 2}, unique}},
       {{u"ObjectIdAttribute", 0, true}}},
      {kRelationshipsPage, kRelationshipsColumns, 8, 5, {},
       {{{0}, ignoreNulls}, {{4}, ignoreNulls}, {{6}, ignoreNulls}},
       {{u"szObject", 1, false}, {u"szReferencedObject", 2, false}, {u"szRelationship", 0, false}}},
  };
}

void BuildGlobalMap(const Storage& storage) {
  PageRef page = storage.pager.GetZeroed(kGlobalMapPage);
  const Bytes bytes = page.Change();
  InitDataPage(bytes, kGlobalMapPage);
  AppendRow(bytes, kSizeMapRow);
  AppendRow(bytes, kSizeMapRow);
  const Bytes bits = RowBytes(bytes, 0).subspan(kOffsetMapBits);
  std::fill(bits.begin(), bits.end(), std::byte{0xFF});
  for (PageNumber used = 0; used < kFirstDataPage; ++used) {
    bits[used / 8] &= ~std::byte{static_cast<std::uint8_t>(1u << (used % 8))};
  }
}

// Hands out the rows of page 6 and the root pages, in the order of the tables.
class Places {
 public:
  RowPointer NextMap() { return {kSystemMapsPage, nextRow_++}; }
  PageNumber NextRoot() { return nextRoot_++; }

 private:
  std::uint8_t nextRow_ = 0;
  PageNumber nextRoot_ = kFirstRootPage;
};

Column MakeColumn(const SystemColumn& spec) {
  Column column;
  column.name = spec.name;
  column.id = spec.id;
  column.type = spec.type;
  column.flags = spec.flags;
  column.variableIndex = spec.variableIndex;
  column.fixedOffset = spec.fixedOffset;
  column.length = spec.length;
  return column;
}

TableDefinition MakeDefinition(const SystemTable& table, Places& places) {
  TableDefinition d;
  d.tableType = kTableSystem;
  d.maxColumns = table.columnCount;
  d.variableColumns = table.variableCount;
  d.ownedMap = places.NextMap();
  d.freeMap = places.NextMap();
  for (const SystemColumn& spec : table.columns) d.columns.push_back(MakeColumn(spec));
  // The maps lie in the order of the column ids, the list that names them does not.
  std::vector<std::uint16_t> ids = table.longValueIds;
  std::sort(ids.begin(), ids.end());
  std::vector<LongValueMaps> maps;
  for (const std::uint16_t id : ids) {
    const RowPointer owned = places.NextMap();
    maps.push_back({id, owned, places.NextMap()});
  }
  for (const std::uint16_t id : table.longValueIds) {
    d.longValueMaps.push_back(*std::find_if(
        maps.begin(), maps.end(), [&](const LongValueMaps& m) { return m.columnId == id; }));
  }
  for (const SystemIndex& spec : table.indexes) {
    RealIndex index;
    for (const std::uint16_t id : spec.columnIds) index.columns.push_back({id, true});
    index.flags = spec.flags;
    index.map = places.NextMap();
    index.root = places.NextRoot();
    d.realIndexes.push_back(index);
  }
  for (const SystemEntry& spec : table.entries) {
    LogicalIndex entry;
    entry.name = spec.name;
    entry.number = spec.number;
    entry.realIndex = spec.number;
    entry.kind = spec.primary ? kIndexPrimary : kIndexPlain;
    d.logicalIndexes.push_back(entry);
  }
  return d;
}

void BuildDefinitions(const Storage& storage) {
  const std::vector<SystemTable> tables = SystemTables();
  // Pages in their order, so that the file grows page by page.
  for (PageNumber page = kObjectsPage; page < kFirstDataPage; ++page) storage.pager.GetZeroed(page);
  PageRef mapsPage = storage.pager.GetZeroed(kSystemMapsPage);
  InitDataPage(mapsPage.Change(), 0);
  for (std::size_t i = 0; i < kMapRowsOfSystemTables; ++i) AppendRow(mapsPage.Change(), kSizeMapRow);
  Places places;
  for (const SystemTable& table : tables) {
    const TableDefinition d = MakeDefinition(table, places);
    WriteDefinition(storage.pager, storage.allocator, table.page, d);
    for (const RealIndex& index : d.realIndexes) {
      IndexTree::WriteEmptyLeaf(storage.pager, index.root, table.page);
      UsageMap(storage.pager, storage.allocator, index.map).Add(index.root);
    }
  }
}

enum class Sid : std::uint16_t { Users = 0x0201, Engine = 0x0203, Creator = 0x0204, Admin = 0x0301 };
using SidMask = std::array<std::uint8_t, 2>;

dao::Binary Masked(Sid sid, const SidMask& mask) {
  const auto both = static_cast<std::uint16_t>(sid);
  return MaskedSid(static_cast<std::uint8_t>(both >> 8), static_cast<std::uint8_t>(both), mask);
}

constexpr std::int32_t kTablesContainer = 0x0F000001;
constexpr std::int32_t kDatabasesContainer = 0x0F000002;
constexpr std::int32_t kRelationshipsContainer = 0x0F000003;
constexpr std::int32_t kDatabaseObject = 0x10000000;

// Whether the table has a row with this number in the only column of an index.
bool HasRow(Table& table, std::size_t realIndex, std::int32_t number) {
  return table.Tree(realIndex).ContainsKey(EncodeKey({{kTypeLong, true}}, {number}));
}

constexpr StandardObject kStandardObjects[] = {
    {kTablesContainer, kRootContainer, ObjectType::Container, u"Tables", false},
    {kDatabasesContainer, kRootContainer, ObjectType::Container, u"Databases", false},
    {kRelationshipsContainer, kRootContainer, ObjectType::Container, u"Relationships", false},
    {kDatabaseObject, kDatabasesContainer, ObjectType::Database, u"MSysDb", true},
    {2, kTablesContainer, ObjectType::Table, u"MSysObjects", false},
    {3, kTablesContainer, ObjectType::Table, u"MSysACEs", false},
    {4, kTablesContainer, ObjectType::Table, u"MSysQueries", false},
    {5, kTablesContainer, ObjectType::Table, u"MSysRelationships", false},
};

void AddObjectRows(Table& table, double now, const SidMask& mask) {
  constexpr std::size_t kIndexOfId = 1;
  for (const StandardObject& row : kStandardObjects) {
    if (HasRow(table, kIndexOfId, row.id)) continue;
    const RowFields fields = MakeRow(table, {{u"Id", row.id},
                                             {u"ParentId", row.parent},
                                             {u"Name", std::u16string(row.name)},
                                             {u"Type", static_cast<std::int16_t>(row.type)},
                                             {u"DateCreate", dao::Date{now}},
                                             {u"DateUpdate", dao::Date{now}},
                                             {u"Flags", static_cast<std::int32_t>(kFlagSystemObject)},
                                             {u"Owner", Masked(row.isOwnedByAdmin ? Sid::Admin : Sid::Engine, mask)}});
    table.Insert(table.Prepare(fields));
  }
}

void AddAccessRows(Table& table, const SidMask& mask) {
  struct Row {
    std::int32_t id;
    Sid sid;
    std::int32_t rights;
    bool inheritable = false;
  };
  constexpr Row rows[] = {
      {2, Sid::Admin, 0x00060000},
      {3, Sid::Admin, 0x00060000},
      {4, Sid::Admin, 0x00060000},
      {5, Sid::Admin, 0x000E0000},
      {kTablesContainer, Sid::Creator, 0x000F00FE, true},
      {kTablesContainer, Sid::Admin, 0x00060001},
      {kRelationshipsContainer, Sid::Creator, 0x000F00FE, true},
      {kRelationshipsContainer, Sid::Admin, 0x00060001},
      {kDatabasesContainer, Sid::Admin, 0x00060000},
      {kDatabaseObject, Sid::Admin, 0x0006000E},
      {kDatabaseObject, Sid::Users, 0x0000000E},
      {4, Sid::Users, 0x00000014},
      {5, Sid::Users, 0x00000014},
      {2, Sid::Users, 0x00000014},
      {kTablesContainer, Sid::Users, 0x000FFEFF, true},
      {kRelationshipsContainer, Sid::Users, 0x000FFFFF, true},
  };
  std::vector<std::int32_t> known;
  for (const Row& row : rows) {
    if (HasRow(table, 0, row.id)) known.push_back(row.id);
  }
  for (const Row& row : rows) {
    if (std::find(known.begin(), known.end(), row.id) != known.end()) continue;
    const RowFields fields = MakeRow(table, {{u"ObjectId", row.id},
                                             {u"SID", Masked(row.sid, mask)},
                                             {u"ACM", row.rights},
                                             {u"FInheritable", row.inheritable}});
    table.Insert(table.Prepare(fields));
  }
}

}  // namespace

void BuildEmptySystemTables(const Storage& storage) {
  BuildGlobalMap(storage);
  BuildDefinitions(storage);
}

void AddMissingSystemRows(const Storage& storage, double now, const SidMask& sidMask) {
  Table objects(storage, kObjectsPage, u"MSysObjects");
  AddObjectRows(objects, now, sidMask);
  Table aces(storage, kAcesPage, u"MSysACEs");
  AddAccessRows(aces, sidMask);
}

void BuildSystemTables(const Storage& storage, double now) {
  BuildEmptySystemTables(storage);
  AddMissingSystemRows(storage, now, kGeneralOrigin.sidMask);
}

const StandardObject* FindStandardObject(std::int32_t id) {
  const auto* found = std::find_if(std::begin(kStandardObjects), std::end(kStandardObjects),
                                   [&](const StandardObject& object) { return object.id == id; });
  return found == std::end(kStandardObjects) ? nullptr : found;
}

std::array<std::vector<std::byte>, 4> StandardSystemDefinitions() {
  std::array<std::vector<std::byte>, 4> definitions;
  Places places;
  for (const SystemTable& table : SystemTables()) {
    definitions[table.page - kObjectsPage] = EncodeDefinition(MakeDefinition(table, places));
  }
  return definitions;
}

}  // namespace zimbrat::jet
