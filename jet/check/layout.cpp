#include "layout.h"

#include <algorithm>

#include "definition_bytes.h"
#include "jet/index/collation.h"
#include "layout_faults.h"
#include "platform/dao.h"

namespace zimbrat::jet::check {

bool ColumnLayout::IsBoolean() const {
  return type == dao::dbBoolean;
}
bool ColumnLayout::IsText() const {
  return type == dao::dbText || type == dao::dbMemo;
}
bool ColumnLayout::IsLongValue() const {
  return type == dao::dbMemo || type == dao::dbLongBinary;
}

bool ColumnLayout::HasComparableKeys() const {
  return !IsText() || (static_cast<std::uint16_t>(extra) == kGeneralLanguage && extra >> 24 == 0);
}

std::size_t ColumnLayout::FixedSize() const {
  switch (type) {
    case dao::dbBoolean:
    case dao::dbByte:
      return 1;
    case dao::dbInteger:
      return 2;
    case dao::dbLong:
    case dao::dbSingle:
      return 4;
    case dao::dbCurrency:
    case dao::dbDouble:
    case dao::dbDate:
      return 8;
    case dao::dbGUID:
      return 16;
    case kColumnTypeDecimal:
      return 17;
    default:
      return 0;
  }
}

bool IsKnownType(std::int16_t type) {
  return (type >= dao::dbBoolean && type <= dao::dbMemo) || type == dao::dbGUID ||
         type == kColumnTypeDecimal || type == kColumnTypeBlock;
}

bool TableLayout::HasMaplessValues() const {
  return std::any_of(longValueMaps.begin(), longValueMaps.end(),
                     [](const LongValueMapsLayout& maps) { return maps.owned.IsNull(); });
}

const ColumnLayout* TableLayout::FindColumn(std::uint16_t id) const {
  const auto found = std::find_if(columns.begin(), columns.end(),
                                  [&](const ColumnLayout& column) { return column.id == id; });
  return found == columns.end() ? nullptr : &*found;
}

const ColumnLayout* TableLayout::FindColumn(std::u16string_view name) const {
  // Mostly it stands there letter by letter, and no keys need to be made.
  auto found = std::ranges::find(columns, name, &ColumnLayout::name);
  if (found == columns.end()) {
    found = std::ranges::find_if(columns, [&](const auto& column) { return EqualText(column.name, name); });
  }
  return found == columns.end() ? nullptr : &*found;
}

const LogicalLayout* TableLayout::FindLogical(std::uint32_t number) const {
  const auto found =
      std::find_if(logicals.begin(), logicals.end(),
                   [&](const LogicalLayout& logical) { return logical.number == number; });
  return found == logicals.end() ? nullptr : &*found;
}

namespace {

constexpr std::uint16_t kNoColumn = 0xFFFF;
// The engine allows 32 indexes; ends of relationships come on top.
constexpr std::size_t kMaxTrees = 255;
constexpr std::size_t kMaxLogicals = 1024;

class LayoutReader {
 public:
  LayoutReader(Checking& check, const std::u16string& place, ConstBytes bytes, PageNumber page,
               bool report)
      : bytes_(bytes), reader_(bytes, kSizeDefinitionHead), faults_(check, place, page, report) {
    table_.page = page;
    table_.place = place;
  }

  std::optional<TableLayout> Read();
  std::optional<TableLayout> ReadColumnsAlone();

 private:
  void ReadHead();
  bool ArePlausible(std::uint64_t size);
  void ReadColumns();
  ColumnLayout ReadColumn();
  void ReadIndexes();
  void ReadLogicals();
  void ReadLongValueMaps();
  void NameTrees();

  ConstBytes bytes_;
  DefinitionReader reader_;
  LayoutFaults faults_;
  std::size_t columns_ = 0, indexes_ = 0, logicals_ = 0;
  TableLayout table_;
};

void LayoutReader::ReadHead() {
  table_.rows = Get32(bytes_, kOffsetTableRows);
  table_.counter = Get32(bytes_, kOffsetCounter);
  table_.kind = Get8(bytes_, kOffsetTableType);
  table_.maxColumns = Get16(bytes_, kOffsetMaxColumns);
  table_.variableColumns = Get16(bytes_, kOffsetVariableColumns);
  table_.ownedMap = RowPointer::FromPacked(Get32(bytes_, kOffsetOwnedMap));
  table_.freeMap = RowPointer::FromPacked(Get32(bytes_, kOffsetFreeMap));
  columns_ = Get16(bytes_, kOffsetColumns);
  logicals_ = Get32(bytes_, kOffsetLogicalIndexes);
  indexes_ = Get32(bytes_, kOffsetRealIndexes);
  // No engine opens a table that has had more; repair finds out how many there are.
  if (std::max(table_.maxColumns, table_.variableColumns) > kMaxColumns + 1) {
    faults_.Loss(TextOf(u"definicja podaje ", table_.maxColumns, u" kolumn, z nich ", table_.variableColumns, u" zmiennych"));
  }
  if (Get32(bytes_, kOffsetDefinitionMark) != kDefinitionMark) faults_.Error(u"brak znacznika definicji");
  if (table_.kind != kTableUser && table_.kind != kTableSystem) faults_.Error(u"nieznany rodzaj tabeli");
}

// `size`: of the parts that follow, at least.
bool LayoutReader::ArePlausible(std::uint64_t size) {
  if (columns_ <= kMaxColumns && table_.maxColumns >= columns_ && indexes_ <= logicals_ &&
      indexes_ <= kMaxTrees && logicals_ <= kMaxLogicals && reader_.HasLeft(size)) {
    return true;
  }
  faults_.Loss(TextOf(u"definicja o długości ", bytes_.size(), u" nie może mieć ", columns_, u" kolumn, ",
              indexes_, u" i ", logicals_, u" indeksów"));
  return false;
}

ColumnLayout LayoutReader::ReadColumn() {
  ColumnLayout column;
  column.type = reader_.Next<std::uint8_t>();
  const auto mark = reader_.Next<std::uint32_t>();
  column.id = reader_.Next<std::uint16_t>();
  column.variableIndex = reader_.Next<std::uint16_t>();
  column.displayOrder = reader_.Next<std::uint16_t>();
  column.extra = reader_.Next<std::uint32_t>();
  column.flags = reader_.Next<std::uint8_t>();
  column.flags2 = reader_.Next<std::uint8_t>();
  const auto unused = reader_.Next<std::uint32_t>();
  column.fixedOffset = reader_.Next<std::uint16_t>();
  column.length = reader_.Next<std::uint16_t>();
  if (mark != kDefinitionMark) faults_.Error(TextOf(u"brak znacznika kolumny ", column.id));
  if (unused != 0 || column.flags2 > kColumnCompressed) {
    faults_.Error(TextOf(u"kolumna ", column.id, u" ma nieznane flagi"));
  }
  return column;
}

void LayoutReader::ReadColumns() {
  reader_.Skip(indexes_ * kSizeIndexCounts);
  for (std::size_t i = 0; i < columns_; ++i) table_.columns.push_back(ReadColumn());
  for (ColumnLayout& column : table_.columns) column.name = reader_.NextName();
}

void LayoutReader::ReadIndexes() {
  for (std::size_t i = 0; i < indexes_ && !reader_.HasFailed(); ++i) {
    IndexLayout index;
    if (reader_.Next<std::uint32_t>() != kRealIndexMark)
      faults_.Error(TextOf(u"brak znacznika indeksu ", i));
    for (std::size_t k = 0; k < kMaxIndexColumns; ++k) {
      const auto id = reader_.Next<std::uint16_t>();
      const auto direction = reader_.Next<std::uint8_t>();
      if (id != kNoColumn) index.parts.push_back({id, (direction & 1) != 0});
    }
    index.map = reader_.NextPointer();
    index.root = reader_.Next<std::uint32_t>();
    reader_.Skip(sizeof(std::uint32_t));
    index.flags = reader_.Next<std::uint8_t>();
    const auto unused = reader_.Next<std::uint32_t>() | reader_.Next<std::uint8_t>();
    if (unused != 0) faults_.Error(TextOf(u"indeks ", i, u" ma nieznane flagi"));
    table_.indexes.push_back(std::move(index));
  }
}

void LayoutReader::ReadLogicals() {
  for (std::size_t i = 0; i < logicals_ && !reader_.HasFailed(); ++i) {
    LogicalLayout logical;
    if (reader_.Next<std::uint32_t>() != kDefinitionMark)
      faults_.Error(TextOf(u"brak znacznika nazwy indeksu ", i));
    logical.number = reader_.Next<std::uint32_t>();
    logical.index = reader_.Next<std::uint32_t>();
    logical.end = reader_.Next<std::uint8_t>();
    logical.otherNumber = reader_.Next<std::uint32_t>();
    logical.otherTable = reader_.Next<std::uint32_t>();
    logical.cascadeUpdates = reader_.Next<std::uint8_t>();
    logical.cascadeDeletes = reader_.Next<std::uint8_t>();
    logical.kind = reader_.Next<std::uint8_t>();
    if (reader_.Next<std::uint32_t>() != 0)
      faults_.Error(TextOf(u"nazwa indeksu ", i, u" ma nieznane flagi"));
    table_.logicals.push_back(std::move(logical));
  }
  for (LogicalLayout& logical : table_.logicals) logical.name = reader_.NextName();
}

void LayoutReader::ReadLongValueMaps() {
  while (!reader_.HasFailed()) {
    const auto id = reader_.Next<std::uint16_t>();
    if (id == kNoColumn || reader_.HasFailed()) return;
    const RowPointer owned = reader_.NextPointer();
    table_.longValueMaps.push_back({id, owned, reader_.NextPointer()});
  }
}

// A tree has the name of its index; one that serves relations alone, that of the first of them.
void LayoutReader::NameTrees() {
  for (const LogicalLayout& logical : table_.logicals) {
    if (logical.index >= table_.indexes.size()) continue;
    IndexLayout& index = table_.indexes[logical.index];
    index.isPrimary = index.isPrimary || logical.kind == kIndexPrimary;
    if (index.name.empty() || logical.kind != kIndexRelation) index.name = logical.name;
  }
}

std::optional<TableLayout> LayoutReader::Read() {
  ReadHead();
  const std::uint64_t least = columns_ * std::uint64_t{kSizeColumn + 2} +
                              indexes_ * std::uint64_t{kSizeIndexCounts + kSizeRealIndex} +
                              logicals_ * std::uint64_t{kSizeLogicalIndex + 2} + 2;
  if (!ArePlausible(least)) return std::nullopt;
  ReadColumns();
  ReadIndexes();
  ReadLogicals();
  ReadLongValueMaps();
  if (reader_.HasFailed()) {
    faults_.Loss(u"definicja urywa się");
    return std::nullopt;
  }
  if (reader_.Place() != bytes_.size()) {
    faults_.Error(TextOf(u"definicja ma długość ", bytes_.size(), u" zamiast ", reader_.Place()));
  }
  NameTrees();
  CheckLayout(table_, faults_);
  return std::move(table_);
}

std::optional<TableLayout> LayoutReader::ReadColumnsAlone() {
  ReadHead();
  if (!ArePlausible(0)) return std::nullopt;
  reader_.Skip(indexes_ * kSizeIndexCounts);
  for (std::size_t i = 0; i < columns_ && reader_.HasLeft(kSizeColumn); ++i)
    table_.columns.push_back(ReadColumn());
  for (ColumnLayout& column : table_.columns) column.name = reader_.NextName();
  return std::move(table_);
}

}  // namespace

std::optional<TableLayout> ReadLayout(Checking& check, const std::u16string& place,
                                      PageNumber page) {
  const auto bytes = ReadDefinitionBytes(check, place, page, true);
  if (!bytes) return std::nullopt;
  return LayoutReader(check, place, *bytes, page, true).Read();
}

std::optional<TableLayout> PeekLayout(Checking& check, PageNumber page) {
  const auto bytes = ReadDefinitionBytes(check, {}, page, false);
  return bytes ? ParseLayout(check, *bytes, page) : std::nullopt;
}

std::optional<TableLayout> PeekColumns(Checking& check, PageNumber page) {
  const auto bytes = PeekDefinitionStart(check, page);
  if (!bytes) return std::nullopt;
  return LayoutReader(check, {}, *bytes, page, false).ReadColumnsAlone();
}

std::optional<TableLayout> ParseLayout(Checking& check, ConstBytes bytes, PageNumber page) {
  return LayoutReader(check, {}, bytes, page, false).Read();
}

}  // namespace zimbrat::jet::check
