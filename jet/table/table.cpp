#include "jet/table/table.h"

#include <algorithm>
#include <utility>

#include "jet/file/data_page.h"
#include "jet/file/errors.h"
#include "jet/index/key.h"
#include "jet/table/long_values.h"

namespace zimbrat::jet {

namespace {
// A data page with less room than this leaves the map of pages with room.
constexpr std::size_t kWorthwhileRoom = 64;
constexpr int kPagesTried = 8;
constexpr std::size_t kSizePointer = 4;
constexpr std::array<std::byte, 1> kMarked{};
constexpr ConstBytes kMayRepeat = kMarked;  // payload of an entry being sorted; empty for the others
}  // namespace

Table::Table(Storage storage, PageNumber page, std::u16string name)
    : storage_(storage), page_(page), name_(std::move(name)) {
  Reload();
}

void Table::Reload() {
  definition_ = ReadDefinition(storage_.pager, page_);
  generation_ = storage_.pager.Generation();
  lastUsed_ = 0;
}

const TableDefinition& Table::Definition() {
  if (generation_ != storage_.pager.Generation()) Reload();
  return definition_;
}

UsageMap Table::OwnedPages() { return {storage_.pager, storage_.allocator, Definition().ownedMap}; }
UsageMap Table::FreePages() { return {storage_.pager, storage_.allocator, Definition().freeMap}; }

PageRef Table::GetDataPage(PageNumber number) {
  PageRef page = storage_.pager.Get(number);
  RequireDataPage(page.Read(), number, page_);
  return page;
}

std::optional<RowFields> Table::FindRow(RowPointer home) {
  const TableDefinition& definition = Definition();
  const PageRef page = storage_.pager.Get(home.page);
  const ConstBytes bytes = page.Read();
  if (Get8(bytes, 0) != kPageData || Get32(bytes, kOffsetOwner) != page_) return std::nullopt;
  if (home.row >= RowSlots(bytes)) return std::nullopt;
  const std::uint16_t flags = RowFlags(bytes, home.row);
  if ((flags & kRowHidden) != 0) return std::nullopt;
  if (flags == 0) return DecodeRow(definition, RowBytes(bytes, home.row));
  const ConstBytes pointer = RowBytes(bytes, home.row);
  if (pointer.size() < kSizePointer) RaiseDamagedPage(home.page, u"wskaźnik przeniesionego wiersza");
  const RowPointer far = RowPointer::FromPacked(Get32(pointer, 0));
  const PageRef farPage = GetDataPage(far.page);
  return DecodeRow(definition, RowBytes(farPage.Read(), far.row));
}

RowFields Table::Read(RowPointer home) {
  std::optional<RowFields> fields = FindRow(home);
  if (!fields) RaiseDamagedPage(home.page, u"wskazany wiersz nie istnieje");
  return *std::move(fields);
}

dao::Value Table::ValueOf(std::size_t column, const FieldBytes& field) {
  const Column& c = Definition().columns[column];
  if (!c.IsLongValue() || !field.present) return DecodeValue(c, field);
  std::vector<std::byte> value = LoadLongValue(storage_, field.bytes);
  if (c.type == kTypeMemo) return DecodeText(value);
  return value;
}

FieldBytes Table::FieldOf(std::size_t column, const dao::Value& value) {
  const Column& c = Definition().columns[column];
  if (!c.IsLongValue() || dao::IsNull(value)) return EncodeValue(c, value);
  const LongValueMaps* maps = Definition().FindLongValueMaps(c.id);
  if (!maps) RaiseDamagedPage(page_, u"kolumna „" + c.name + u"” nie ma map długich wartości");
  if (const auto* text = std::get_if<std::u16string>(&value)) {
    return {true, StoreLongValue(storage_, *maps, EncodeText(*text, (c.flags2 & kColumnCompressed) != 0))};
  }
  return {true, StoreLongValue(storage_, *maps, std::get<dao::Binary>(value))};
}

std::optional<std::vector<std::byte>> Table::KeyOf(std::size_t realIndex, const RowFields& fields) {
  const RealIndex& index = Definition().realIndexes[realIndex];
  std::vector<KeyColumn> columns;
  std::vector<dao::Value> values;
  bool allNull = true;
  for (const IndexColumn& part : index.columns) {
    const std::size_t position = *definition_.FindColumnById(part.columnId);
    if (!definition_.columns[position].HasGeneralOrder()) RaiseForeignOrder();
    columns.push_back({definition_.columns[position].type, part.ascending});
    values.push_back(ValueOf(position, fields[position]));
    allNull = allNull && dao::IsNull(values.back());
  }
  if (allNull && index.IgnoresNulls()) return std::nullopt;
  return EncodeKey(columns, values);
}

IndexTree Table::Tree(std::size_t realIndex) {
  const RealIndex& index = Definition().realIndexes[realIndex];
  return IndexTree(storage_.pager, storage_.allocator,
                   UsageMap(storage_.pager, storage_.allocator, index.map), page_, index.root);
}

const std::u16string& Table::IndexName(std::size_t realIndex) {
  const auto found = std::find_if(
      definition_.logicalIndexes.begin(), definition_.logicalIndexes.end(), [&](const LogicalIndex& index) {
        return index.realIndex == realIndex && index.end != kEndReferenced;
      });
  return found == definition_.logicalIndexes.end() ? name_ : found->name;
}

void Table::RaiseDuplicate(std::size_t realIndex) {
  Raise(platform::kErrDuplicateKey, name_, IndexName(realIndex));
}

// Boolean columns are never null.
std::size_t Table::CountNulls(const RealIndex& index, const RowFields& fields) {
  std::size_t nulls = 0;
  for (const IndexColumn& part : index.columns) {
    const std::size_t position = *definition_.FindColumnById(part.columnId);
    const bool isBoolean = definition_.columns[position].type == kTypeBoolean;
    if (!isBoolean && !fields[position].present) ++nulls;
  }
  return nulls;
}

// Long values by their descriptors: one that was stored anew counts as another.
bool Table::AreEqualIn(const RealIndex& index, const RowFields& a, const RowFields& b) {
  return std::all_of(index.columns.begin(), index.columns.end(), [&](const IndexColumn& part) {
    const std::size_t position = *definition_.FindColumnById(part.columnId);
    return a[position].present == b[position].present && a[position].bytes == b[position].bytes;
  });
}

PreparedRow Table::Prepare(const RowFields& fields, const RowFields* self) {
  const TableDefinition& definition = Definition();
  PreparedRow row;
  row.bytes = EncodeRow(definition, fields);
  for (std::size_t i = 0; i < definition.realIndexes.size(); ++i) {
    const RealIndex& index = definition.realIndexes[i];
    PreparedRow::Key& key = row.keys.emplace_back();
    key.isKept = self && AreEqualIn(index, *self, fields);
    if (key.isKept) continue;
    const std::size_t nulls = CountNulls(index, fields);
    if (nulls != 0 && index.IsRequired()) Raise(platform::kErrNullInIndex, name_, IndexName(i));
    key.bytes = KeyOf(i, fields);
    const bool free = nulls == index.columns.size() || !index.IsUnique() || !key.bytes;
    if (free || (self && KeyOf(i, *self) == key.bytes)) continue;
    if (Tree(i).ContainsKey(*key.bytes)) RaiseDuplicate(i);
  }
  return row;
}

// A page with room for a row: the one used last, one of the next few in the map, or a new one.
PageRef Table::PageForRow(std::size_t size) {
  UsageMap free = FreePages();
  std::optional<PageNumber> number = lastUsed_ != 0 ? free.Next(lastUsed_) : free.Next(0);
  for (int tried = 0; number && tried < kPagesTried; ++tried, number = free.Next(*number + 1)) {
    PageRef page = GetDataPage(*number);
    if (HasRoomForRow(page.Read(), size)) return page;
    const bool full = RowSlots(page.Read()) >= kMaxRowSlots;
    if (full || FreeBytesOnPage(page.Read()) < std::max(size / 2, kWorthwhileRoom)) free.Remove(*number);
  }
  const PageNumber taken = storage_.allocator.Take();
  PageRef page = storage_.pager.GetZeroed(taken);
  InitDataPage(page.Change(), page_);
  OwnedPages().Add(taken);
  free.Add(taken);
  return page;
}

RowPointer Table::FindFarPlace(RowPointer home) {
  const PageRef page = GetDataPage(home.page);
  if (RowFlags(page.Read(), home.row) != kRowMoved) return {};
  const ConstBytes pointer = RowBytes(page.Read(), home.row);
  if (pointer.size() < kSizePointer) RaiseDamagedPage(home.page, u"wskaźnik przeniesionego wiersza");
  return RowPointer::FromPacked(Get32(pointer, 0));
}

RowPointer Table::StoreBytes(ConstBytes bytes, std::uint16_t flags) {
  PageRef page = PageForRow(bytes.size());
  lastUsed_ = page.Number();
  const Bytes target = page.Change();
  const std::uint8_t slot = AppendRow(target, bytes.size());
  const Bytes row = RowBytes(target, slot);
  std::copy(bytes.begin(), bytes.end(), row.begin());
  if (flags != 0) SetRowFlags(target, slot, flags);
  if (FreeBytesOnPage(target) < kWorthwhileRoom) FreePages().Remove(page.Number());
  return {page.Number(), slot};
}

// Gives the row's space back, and the page when nothing lives on it any more.
void Table::EraseBytes(RowPointer place) {
  PageRef page = GetDataPage(place.page);
  DeleteRow(page.Change(), place.row);
  if (!IsEmptyOfRows(page.Read())) {
    if (FreeBytesOnPage(page.Read()) >= kWorthwhileRoom && RowSlots(page.Read()) < kMaxRowSlots) {
      FreePages().Add(place.page);
    }
    return;
  }
  page = PageRef();
  FreePages().Remove(place.page);
  OwnedPages().Remove(place.page);
  storage_.allocator.Free(place.page);
  if (lastUsed_ == place.page) lastUsed_ = 0;
}

bool Table::TryRewriteInPlace(RowPointer place, ConstBytes bytes) {
  PageRef page = GetDataPage(place.page);
  const std::size_t have = ExtentOfRow(page.Read(), place.row).size;
  if (bytes.size() > have + FreeBytesOnPage(page.Read())) return false;
  const Bytes target = page.Change();
  ResizeRow(target, place.row, bytes.size());
  const Bytes row = RowBytes(target, place.row);
  std::copy(bytes.begin(), bytes.end(), row.begin());
  if (bytes.size() < have && FreeBytesOnPage(target) >= kWorthwhileRoom &&
      RowSlots(target) < kMaxRowSlots) {
    FreePages().Add(place.page);
  }
  return true;
}

// A row that outgrows its page lives elsewhere, and its home slot points there; never a chain of pointers.
void Table::RewriteBytes(RowPointer home, ConstBytes bytes) {
  const RowPointer far = FindFarPlace(home);
  if (!far.IsNull()) {
    if (TryRewriteInPlace(far, bytes)) return;
    EraseBytes(far);
  }
  if (TryRewriteInPlace(home, bytes)) {
    PageRef page = GetDataPage(home.page);
    SetRowFlags(page.Change(), home.row, 0);
    return;
  }
  const RowPointer moved = StoreBytes(bytes, kRowHidden);
  std::array<std::byte, kSizePointer> pointer{};
  Put32(pointer, 0, moved.Packed());
  if (!TryRewriteInPlace(home, pointer)) RaiseDamagedPage(home.page, u"brak miejsca na wskaźnik wiersza");
  PageRef page = GetDataPage(home.page);
  SetRowFlags(page.Change(), home.row, kRowMoved);
}

void Table::PutHeadNumber(std::size_t offset, std::uint32_t value) {
  PageRef page = storage_.pager.Get(page_);
  Put32(page.Change(), offset, value);
}

void Table::ChangeRowCount(std::int32_t by) {
  definition_.rows += static_cast<std::uint32_t>(by);
  PutHeadNumber(kOffsetTableRows, definition_.rows);
}

void Table::PutDifferentKeys(std::size_t realIndex) {
  PutHeadNumber(kSizeDefinitionHead + kSizeIndexCounts * realIndex + 4,
                definition_.realIndexes[realIndex].differentKeys);
}

void Table::AddKey(std::size_t realIndex, ConstBytes key, RowPointer home) {
  if (!Tree(realIndex).Insert(key, home)) return;
  ++definition_.realIndexes[realIndex].differentKeys;
  PutDifferentKeys(realIndex);
}

RowPointer Table::Insert(const PreparedRow& row) {
  const RowPointer home = StoreBytes(row.bytes, 0);
  ChangeRowCount(+1);
  for (std::size_t i = 0; i < row.keys.size(); ++i) {
    if (row.keys[i].bytes) AddKey(i, *row.keys[i].bytes, home);
  }
  return home;
}

void Table::Update(RowPointer home, const RowFields& former, const PreparedRow& row) {
  RewriteBytes(home, row.bytes);
  for (std::size_t i = 0; i < row.keys.size(); ++i) {
    if (row.keys[i].isKept) continue;
    const std::optional<std::vector<std::byte>>& key = row.keys[i].bytes;
    const std::optional<std::vector<std::byte>> old = KeyOf(i, former);
    if (old == key) continue;
    if (old && !Tree(i).Erase(*old, home)) RaiseDamaged(u"indeks „" + IndexName(i) + u"” nie zawiera wiersza");
    if (key) AddKey(i, *key, home);
  }
}

void Table::Delete(RowPointer home, const RowFields& former) {
  const TableDefinition& definition = Definition();
  for (std::size_t i = 0; i < definition.realIndexes.size(); ++i) {
    const std::optional<std::vector<std::byte>> key = KeyOf(i, former);
    if (key && !Tree(i).Erase(*key, home)) RaiseDamaged(u"indeks „" + IndexName(i) + u"” nie zawiera wiersza");
  }
  for (std::size_t i = 0; i < definition.columns.size(); ++i) {
    const Column& column = definition.columns[i];
    const LongValueMaps* maps = definition.FindLongValueMaps(column.id);
    if (column.IsLongValue() && former[i].present && maps) FreeLongValue(storage_, *maps, former[i].bytes);
  }
  const RowPointer far = FindFarPlace(home);
  if (!far.IsNull()) EraseBytes(far);
  EraseBytes(home);
  ChangeRowCount(-1);
}

std::int32_t Table::NextCounter() {
  if (Definition().counter == 0x7FFFFFFF) Raise(platform::kErrOverflow);
  return static_cast<std::int32_t>(definition_.counter + 1);
}

void Table::NoteCounter(std::int32_t value) {
  if (value <= static_cast<std::int32_t>(Definition().counter)) return;
  definition_.counter = static_cast<std::uint32_t>(value);
  PutHeadNumber(kOffsetCounter, definition_.counter);
}

void Table::FillIndex(std::size_t realIndex) {
  const IndexConflicts conflicts = FillIndexAsItIs(realIndex);
  const RealIndex& index = definition_.realIndexes[realIndex];
  if (conflicts.nulls && index.IsRequired()) Raise(platform::kErrNullInIndex, name_, IndexName(realIndex));
  if (conflicts.duplicates && index.IsUnique()) RaiseDuplicate(realIndex);
}

IndexConflicts Table::FillIndexAsItIs(std::size_t realIndex) {
  const RealIndex index = Definition().realIndexes[realIndex];
  IndexConflicts conflicts;
  Sorter sorter(storage_.pager);
  std::vector<std::byte> entry;
  for (RowScan scan(*this); scan.Next();) {
    const std::size_t nulls = CountNulls(index, scan.Fields());
    conflicts.nulls = conflicts.nulls || nulls != 0;
    const std::optional<std::vector<std::byte>> key = KeyOf(realIndex, scan.Fields());
    if (!key) continue;
    entry.assign(key->begin(), key->end());
    entry.resize(key->size() + kSizePointer);
    PutBig32(entry, key->size(), scan.Place().Packed());
    // A row of nulls may repeat even in a unique index.
    sorter.Add(entry, kMayRepeat.first(nulls == index.columns.size() ? 1 : 0));
  }
  conflicts.duplicates = BuildFrom(sorter, realIndex);
  return conflicts;
}

// Whether keys repeat that must not in a unique index.
bool Table::BuildFrom(Sorter& sorter, std::size_t realIndex) {
  RealIndex& index = definition_.realIndexes[realIndex];
  std::vector<std::byte> previous;
  bool hasDuplicates = false;
  index.differentKeys = 0;
  Tree(realIndex).Build([&]() -> std::optional<IndexEntry> {
    if (!sorter.Next()) return std::nullopt;
    const ConstBytes key = sorter.Key().first(sorter.Key().size() - kSizePointer);
    const bool isFirst = index.differentKeys == 0;
    const bool repeats = !isFirst && std::equal(key.begin(), key.end(), previous.begin(), previous.end());
    hasDuplicates = hasDuplicates || (repeats && sorter.Payload().empty());
    if (!repeats) ++index.differentKeys;
    previous.assign(key.begin(), key.end());
    return IndexEntry{key, RowPointer::FromPacked(GetBig32(sorter.Key(), key.size()))};
  });
  index.entriesAtBuild = static_cast<std::uint32_t>(sorter.Count());
  PutHeadNumber(kSizeDefinitionHead + kSizeIndexCounts * realIndex, index.entriesAtBuild);
  PutDifferentKeys(realIndex);
  return hasDuplicates;
}

bool RowScan::NextPage() {
  const std::optional<PageNumber> number = table_.OwnedPages().Next(nextPage_);
  if (!number) return false;
  nextPage_ = *number + 1;
  batch_.clear();
  position_ = 0;
  const PageRef page = table_.GetDataPage(*number);
  for (std::size_t slot = 0; slot < RowSlots(page.Read()); ++slot) {
    if ((RowFlags(page.Read(), slot) & kRowHidden) != 0) continue;
    batch_.push_back({*number, static_cast<std::uint8_t>(slot)});
  }
  return true;
}

bool RowScan::Next() {
  while (true) {
    while (position_ < batch_.size()) {
      place_ = batch_[position_++];
      std::optional<RowFields> fields = table_.FindRow(place_);
      if (!fields) continue;
      fields_ = *std::move(fields);
      return true;
    }
    if (!NextPage()) return false;
  }
}

}  // namespace zimbrat::jet
