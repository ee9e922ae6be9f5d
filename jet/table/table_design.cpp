#include "jet/table/table_design.h"

#include <algorithm>

#include "jet/file/data_page.h"
#include "jet/file/errors.h"
#include "jet/index/tree.h"

namespace zimbrat::jet {

namespace {

// The usage-map pages that a definition's pointers name, each once.
std::vector<PageNumber> MapPages(const TableDefinition& d) {
  std::vector<PageNumber> pages;
  const auto note = [&](RowPointer map) {
    if (!map.IsNull() && std::find(pages.begin(), pages.end(), map.page) == pages.end()) {
      pages.push_back(map.page);
    }
  };
  note(d.ownedMap);
  note(d.freeMap);
  for (const LongValueMaps& maps : d.longValueMaps) {
    note(maps.owned);
    note(maps.free);
  }
  for (const RealIndex& index : d.realIndexes) note(index.map);
  return pages;
}

std::uint8_t ColumnFlags(const ColumnSpec& spec, std::uint8_t tableType) {
  unsigned flags = kColumnNullable;
  if (spec.fixed) flags |= kColumnFixed;
  if (spec.counter) flags |= spec.type == kTypeGuid ? kColumnAutoGuid : kColumnCounter;
  if (spec.hyperlink) flags |= kColumnHyperlink;
  if (tableType == kTableSystem) flags |= kColumnSystem;
  return static_cast<std::uint8_t>(flags);
}

RowPointer AppendMapRow(const Storage& storage, PageNumber number) {
  PageRef page = storage.pager.Get(number);
  const Bytes bytes = page.Change();
  const std::uint8_t slot = AppendRow(bytes, kSizeMapRow);
  const Bytes row = RowBytes(bytes, slot);
  std::fill(row.begin(), row.end(), std::byte{0});
  return {number, slot};
}

// The pages of bits of a map, and the pages that it lists.
void FreePagesOf(const Storage& storage, RowPointer map, bool listed) {
  if (map.IsNull()) return;
  UsageMap pages(storage.pager, storage.allocator, map);
  std::vector<PageNumber> numbers;
  if (listed) pages.ForEach([&](PageNumber page) { numbers.push_back(page); });
  pages.ForEachBitsPage([&](PageNumber page) { numbers.push_back(page); });
  for (const PageNumber page : numbers) storage.allocator.Free(page);
}

void FreeMapRow(const Storage& storage, RowPointer map) {
  if (map.IsNull()) return;
  PageRef page = storage.pager.Get(map.page);
  RequireDataPage(page.Read(), map.page, 0);
  DeleteRow(page.Change(), map.row);
  if (!IsEmptyOfRows(page.Read())) return;
  page = PageRef();
  storage.allocator.Free(map.page);
}

}  // namespace

TableDesign::TableDesign(const Storage& storage, PageNumber page)
    : definition(ReadDefinition(storage.pager, page)), storage_(storage), page_(page) {}

void TableDesign::Write() { WriteDefinition(storage_.pager, storage_.allocator, page_, definition); }

RowPointer TableDesign::AddMap() {
  for (const PageNumber number : MapPages(definition)) {
    const bool hasRoom = HasRoomForRow(storage_.pager.Get(number).Read(), kSizeMapRow);
    if (hasRoom) return AppendMapRow(storage_, number);
  }
  const PageNumber taken = storage_.allocator.Take();
  InitDataPage(storage_.pager.GetZeroed(taken).Change(), 0);
  return AppendMapRow(storage_, taken);
}

void TableDesign::FreeMap(RowPointer map) {
  FreePagesOf(storage_, map, true);
  FreeMapRow(storage_, map);
}

std::size_t TableDesign::AddColumn(const ColumnSpec& spec) {
  if (definition.maxColumns >= kMaxColumns) Raise(platform::kErrTooManyFields);
  Column column;
  column.name = spec.name;
  column.type = spec.type;
  column.id = definition.maxColumns++;
  column.flags = ColumnFlags(spec, definition.tableType);
  column.flags2 = spec.compressed ? kColumnCompressed : 0;
  column.length = spec.length;
  column.variableIndex = definition.variableColumns;
  for (const Column& other : definition.columns) {
    column.displayOrder = std::max(column.displayOrder, static_cast<std::uint16_t>(other.displayOrder + 1));
  }
  if (spec.fixed) {
    column.fixedOffset = static_cast<std::uint16_t>(spec.type == kTypeBoolean ? 0 : definition.EndOfFixedArea());
    // No row of such a table could ever be stored.
    if (std::size_t{column.fixedOffset} + column.length > kMaxRowSize) Raise(platform::kErrRecordTooLarge);
  } else {
    ++definition.variableColumns;
  }
  definition.columns.push_back(column);
  if (column.IsLongValue()) AddLongValueMaps(column.id);
  return definition.columns.size() - 1;
}

void TableDesign::RemoveColumn(std::size_t position) {
  const Column column = definition.columns[position];
  const auto maps = std::find_if(definition.longValueMaps.begin(), definition.longValueMaps.end(),
                                 [&](const LongValueMaps& m) { return m.columnId == column.id; });
  if (maps != definition.longValueMaps.end()) {
    FreeMap(maps->owned);
    FreePagesOf(storage_, maps->free, false);
    FreeMapRow(storage_, maps->free);
    definition.longValueMaps.erase(maps);
  }
  definition.columns.erase(definition.columns.begin() + static_cast<std::ptrdiff_t>(position));
}

void TableDesign::AddLongValueMaps(std::uint16_t columnId) {
  // Both rows first: AddMap looks for room on the pages that the definition names.
  const RowPointer owned = AddMap();
  definition.longValueMaps.push_back({columnId, owned, owned});
  definition.longValueMaps.back().free = AddMap();
}

std::uint32_t TableDesign::AddRealIndex(const std::vector<IndexColumn>& columns, std::uint8_t flags) {
  RealIndex index;
  index.columns = columns;
  index.flags = flags;
  index.map = AddMap();
  index.root = storage_.allocator.Take();
  IndexTree::WriteEmptyLeaf(storage_.pager, index.root, page_);
  UsageMap(storage_.pager, storage_.allocator, index.map).Add(index.root);
  definition.realIndexes.push_back(index);
  return static_cast<std::uint32_t>(definition.realIndexes.size() - 1);
}

LogicalIndex TableDesign::AddIndex(const IndexSpec& spec) {
  LogicalIndex entry;
  entry.name = spec.name;
  entry.number = FreeIndexNumber();
  entry.realIndex = AddRealIndex(spec.columns, spec.flags);
  entry.kind = spec.primary ? kIndexPrimary : kIndexPlain;
  definition.InsertIndexSorted(entry);
  return entry;
}

std::uint32_t TableDesign::FreeIndexNumber() const {
  std::uint32_t number = static_cast<std::uint32_t>(definition.logicalIndexes.size());
  while (definition.FindIndexByNumber(number)) ++number;
  return number;
}

void TableDesign::RemoveLogicalIndex(std::uint32_t number) {
  auto& list = definition.logicalIndexes;
  const auto entry = std::find_if(list.begin(), list.end(),
                                  [&](const LogicalIndex& index) { return index.number == number; });
  if (entry == list.end()) return;
  const std::uint32_t real = entry->realIndex;
  list.erase(entry);
  const bool used = std::any_of(list.begin(), list.end(),
                                [&](const LogicalIndex& index) { return index.realIndex == real; });
  if (used) return;
  FreeMap(definition.realIndexes[real].map);
  definition.realIndexes.erase(definition.realIndexes.begin() + static_cast<std::ptrdiff_t>(real));
  for (LogicalIndex& index : list) {
    if (index.realIndex > real) --index.realIndex;
  }
}

PageNumber CreateEmptyTable(const Storage& storage, std::uint8_t tableType) {
  const PageNumber page = storage.allocator.Take();
  TableDefinition empty;
  empty.tableType = tableType;
  WriteDefinition(storage.pager, storage.allocator, page, empty);
  TableDesign design(storage, page);
  const PageNumber mapPage = storage.allocator.Take();
  InitDataPage(storage.pager.GetZeroed(mapPage).Change(), 0);
  design.definition.ownedMap = AppendMapRow(storage, mapPage);
  design.definition.freeMap = AppendMapRow(storage, mapPage);
  design.Write();
  return page;
}

PageNumber CreateTable(const Storage& storage, const std::vector<ColumnSpec>& columns,
                       const std::vector<IndexSpec>& indexes, std::uint8_t tableType) {
  const PageNumber page = CreateEmptyTable(storage, tableType);
  TableDesign design(storage, page);
  for (const ColumnSpec& spec : columns) design.AddColumn(spec);
  for (const IndexSpec& spec : indexes) design.AddIndex(spec);
  design.Write();
  return page;
}

void FreeTable(const Storage& storage, PageNumber page) {
  const TableDefinition d = ReadDefinition(storage.pager, page);
  std::vector<RowPointer> owned = {d.ownedMap};
  std::vector<RowPointer> free = {d.freeMap};
  for (const LongValueMaps& maps : d.longValueMaps) {
    owned.push_back(maps.owned);
    free.push_back(maps.free);
  }
  for (const RealIndex& index : d.realIndexes) owned.push_back(index.map);
  for (const RowPointer map : owned) FreePagesOf(storage, map, true);
  for (const RowPointer map : free) FreePagesOf(storage, map, false);
  for (const RowPointer map : owned) FreeMapRow(storage, map);
  for (const RowPointer map : free) FreeMapRow(storage, map);
  for (const PageNumber number : DefinitionPages(storage.pager, page)) storage.allocator.Free(number);
}

}  // namespace zimbrat::jet
