#include "jet/table/definition.h"

#include <algorithm>

#include "jet/file/errors.h"
#include "platform/text.h"

namespace zimbrat::jet {

namespace {

constexpr std::size_t kBodyOfPage = kPageSize - kSizeDefinitionPageHeader;
constexpr std::size_t kMaxDefinitionPages = 64;  // 255 columns and 32 indexes need a dozen
constexpr std::uint16_t kEndOfList = 0xFFFF;

// Takes the definition's parts one after another and notices when one would lie outside.
class Parts {
 public:
  Parts(ConstBytes bytes, std::size_t offset, PageNumber page)
      : bytes_(bytes), offset_(offset), page_(page) {}

  ConstBytes Take(std::size_t size) {
    if (bytes_.size() - offset_ < size) RaiseDamagedPage(page_, u"definicja tabeli jest za krótka");
    const ConstBytes part = bytes_.subspan(offset_, size);
    offset_ += size;
    return part;
  }
  std::u16string TakeName() {
    const std::size_t size = Get16(Take(2), 0);
    const ConstBytes part = Take(size);
    std::u16string name;
    for (std::size_t i = 0; i + 1 < size; i += 2) name += static_cast<char16_t>(Get16(part, i));
    return name;
  }

 private:
  ConstBytes bytes_;
  std::size_t offset_;
  PageNumber page_;
};

class Builder {
 public:
  Bytes Add(std::size_t size) {
    bytes_.resize(bytes_.size() + size);
    return Bytes(bytes_).subspan(bytes_.size() - size);
  }
  void AddName(std::u16string_view name) {
    Put16(Add(2), 0, static_cast<std::uint16_t>(name.size() * 2));
    for (const char16_t unit : name) Put16(Add(2), 0, unit);
  }
  std::vector<std::byte>& Result() { return bytes_; }

 private:
  std::vector<std::byte> bytes_;
};

Column DecodeColumn(ConstBytes b) {
  Column column;
  column.type = Get8(b, 0);
  column.id = Get16(b, 5);
  column.variableIndex = Get16(b, 7);
  column.displayOrder = Get16(b, 9);
  column.extra = Get32(b, 11);
  column.flags = Get8(b, 15);
  column.flags2 = Get8(b, 16);
  column.fixedOffset = Get16(b, 21);
  column.length = Get16(b, 23);
  return column;
}

void EncodeColumn(const Column& column, Bytes b) {
  Put8(b, 0, column.type);
  Put32(b, 1, kDefinitionMark);
  Put16(b, 5, column.id);
  Put16(b, 7, column.variableIndex);
  Put16(b, 9, column.displayOrder);
  Put32(b, 11, column.extra);
  Put8(b, 15, column.flags);
  Put8(b, 16, column.flags2);
  Put16(b, 21, column.fixedOffset);
  Put16(b, 23, column.length);
}

void DecodeRealIndex(ConstBytes b, RealIndex& index) {
  for (std::size_t i = 0; i < kMaxIndexColumns; ++i) {
    const std::uint16_t id = Get16(b, 4 + 3 * i);
    if (id != kEndOfList) index.columns.push_back({id, (Get8(b, 6 + 3 * i) & 1) != 0});
  }
  index.map = RowPointer::FromPacked(Get32(b, 34));
  index.root = Get32(b, 38);
  index.flags = Get8(b, 46);
}

void EncodeRealIndex(const RealIndex& index, Bytes b) {
  Put32(b, 0, kRealIndexMark);
  for (std::size_t i = 0; i < kMaxIndexColumns; ++i) {
    const bool used = i < index.columns.size();
    Put16(b, 4 + 3 * i, used ? index.columns[i].columnId : kEndOfList);
    Put8(b, 6 + 3 * i, used && index.columns[i].ascending ? 1 : 0);
  }
  Put32(b, 34, index.map.Packed());
  Put32(b, 38, index.root);
  Put8(b, 46, index.flags);
}

LogicalIndex DecodeLogicalIndex(ConstBytes b) {
  LogicalIndex index;
  index.number = Get32(b, 4);
  index.realIndex = Get32(b, 8);
  index.end = Get8(b, 12);
  index.otherNumber = Get32(b, 13);
  index.otherTable = Get32(b, 17);
  index.cascadeUpdate = Get8(b, 21);
  index.cascadeDelete = Get8(b, 22);
  index.kind = Get8(b, 23);
  return index;
}

void EncodeLogicalIndex(const LogicalIndex& index, Bytes b) {
  Put32(b, 0, kDefinitionMark);
  Put32(b, 4, index.number);
  Put32(b, 8, index.realIndex);
  Put8(b, 12, index.end);
  Put32(b, 13, index.otherNumber);
  Put32(b, 17, index.otherTable);
  Put8(b, 21, index.cascadeUpdate);
  Put8(b, 22, index.cascadeDelete);
  Put8(b, 23, index.kind);
}

void DecodeHead(ConstBytes head, TableDefinition& d) {
  std::copy(head.begin(), head.end(), d.head.begin());
  d.rows = Get32(head, kOffsetTableRows);
  d.counter = Get32(head, kOffsetCounter);
  d.tableType = Get8(head, kOffsetTableType);
  d.maxColumns = Get16(head, kOffsetMaxColumns);
  d.variableColumns = Get16(head, kOffsetVariableColumns);
  d.ownedMap = RowPointer::FromPacked(Get32(head, kOffsetOwnedMap));
  d.freeMap = RowPointer::FromPacked(Get32(head, kOffsetFreeMap));
}

void EncodeHead(const TableDefinition& d, Bytes head) {
  std::copy(d.head.begin(), d.head.end(), head.begin());
  Put32(head, kOffsetDefinitionMark, kDefinitionMark);
  Put32(head, kOffsetTableRows, d.rows);
  Put32(head, kOffsetCounter, d.counter);
  Put8(head, kOffsetCounterStep, 1);
  Put8(head, kOffsetTableType, d.tableType);
  Put16(head, kOffsetMaxColumns, d.maxColumns);
  Put16(head, kOffsetVariableColumns, d.variableColumns);
  Put16(head, kOffsetColumns, static_cast<std::uint16_t>(d.columns.size()));
  Put32(head, kOffsetLogicalIndexes, static_cast<std::uint32_t>(d.logicalIndexes.size()));
  Put32(head, kOffsetRealIndexes, static_cast<std::uint32_t>(d.realIndexes.size()));
  Put32(head, kOffsetOwnedMap, d.ownedMap.Packed());
  Put32(head, kOffsetFreeMap, d.freeMap.Packed());
}

// What later code relies on without asking again.
void CheckConsistency(const TableDefinition& d, PageNumber page) {
  for (const Column& column : d.columns) {
    const bool idFits = column.id < d.maxColumns && d.maxColumns <= kMaxColumns + 1;
    const bool placeFits = column.IsFixed() ? column.fixedOffset + column.length <= kPageSize
                                            : column.variableIndex < d.variableColumns;
    if (!idFits || !placeFits || d.variableColumns > kMaxColumns + 1) {
      RaiseDamagedPage(page, u"opis kolumny „" + column.name + u"” jest niemożliwy");
    }
  }
  for (const RealIndex& index : d.realIndexes) {
    for (const IndexColumn& column : index.columns) {
      if (!d.FindColumnById(column.columnId)) RaiseDamagedPage(page, u"indeks na kolumnie, której nie ma");
    }
  }
  for (const LogicalIndex& index : d.logicalIndexes) {
    if (index.realIndex >= d.realIndexes.size()) RaiseDamagedPage(page, u"wpis indeksu bez drzewa");
  }
}

void DecodeLongValueMaps(Parts& parts, TableDefinition& d) {
  for (std::size_t i = 0; i <= kMaxColumns; ++i) {
    const std::uint16_t id = Get16(parts.Take(2), 0);
    if (id == kEndOfList) return;
    const ConstBytes b = parts.Take(8);
    d.longValueMaps.push_back(
        {id, RowPointer::FromPacked(Get32(b, 0)), RowPointer::FromPacked(Get32(b, 4))});
  }
}

}  // namespace

TableDefinition DecodeDefinition(ConstBytes bytes, PageNumber page) {
  Parts parts(bytes, 0, page);
  TableDefinition d;
  const ConstBytes head = parts.Take(kSizeDefinitionHead);
  DecodeHead(head, d);
  const std::size_t columns = Get16(head, kOffsetColumns);
  const std::size_t logical = Get32(head, kOffsetLogicalIndexes);
  const std::size_t real = Get32(head, kOffsetRealIndexes);
  // Access itself stays at 32 indexes; the bound only keeps damaged counts from being believed.
  if (columns > kMaxColumns || logical > 1000 || real > 1000) {
    RaiseDamagedPage(page, u"liczby w definicji tabeli są niemożliwe");
  }
  d.realIndexes.resize(real);
  for (RealIndex& index : d.realIndexes) {
    const ConstBytes b = parts.Take(kSizeIndexCounts);
    index.entriesAtBuild = Get32(b, 0);
    index.differentKeys = Get32(b, 4);
  }
  for (std::size_t i = 0; i < columns; ++i) d.columns.push_back(DecodeColumn(parts.Take(kSizeColumn)));
  for (Column& column : d.columns) column.name = parts.TakeName();
  for (RealIndex& index : d.realIndexes) DecodeRealIndex(parts.Take(kSizeRealIndex), index);
  for (std::size_t i = 0; i < logical; ++i) {
    d.logicalIndexes.push_back(DecodeLogicalIndex(parts.Take(kSizeLogicalIndex)));
  }
  for (LogicalIndex& index : d.logicalIndexes) index.name = parts.TakeName();
  DecodeLongValueMaps(parts, d);
  CheckConsistency(d, page);
  return d;
}

std::vector<std::byte> EncodeDefinition(const TableDefinition& d) {
  Builder builder;
  EncodeHead(d, builder.Add(kSizeDefinitionHead));
  for (const RealIndex& index : d.realIndexes) {
    const Bytes b = builder.Add(kSizeIndexCounts);
    Put32(b, 0, index.entriesAtBuild);
    Put32(b, 4, index.differentKeys);
  }
  for (const Column& column : d.columns) EncodeColumn(column, builder.Add(kSizeColumn));
  for (const Column& column : d.columns) builder.AddName(column.name);
  for (const RealIndex& index : d.realIndexes) EncodeRealIndex(index, builder.Add(kSizeRealIndex));
  for (const LogicalIndex& index : d.logicalIndexes) {
    EncodeLogicalIndex(index, builder.Add(kSizeLogicalIndex));
  }
  for (const LogicalIndex& index : d.logicalIndexes) builder.AddName(index.name);
  for (const LongValueMaps& maps : d.longValueMaps) {
    const Bytes b = builder.Add(kSizeLongValueMaps);
    Put16(b, 0, maps.columnId);
    Put32(b, 2, maps.owned.Packed());
    Put32(b, 6, maps.free.Packed());
  }
  Put16(builder.Add(2), 0, kEndOfList);
  std::vector<std::byte>& bytes = builder.Result();
  Put32(bytes, kOffsetDefinitionLength, static_cast<std::uint32_t>(bytes.size()));
  return std::move(bytes);
}

std::vector<PageNumber> DefinitionPages(Pager& pager, PageNumber first) {
  std::vector<PageNumber> pages;
  PageNumber number = first;
  do {  // the first is looked at even when it is page 0, where no definition is
    const PageRef page = pager.Get(number);
    if (Get8(page.Read(), 0) != kPageDefinition || pages.size() >= kMaxDefinitionPages) {
      RaiseDamagedPage(number, u"nie jest definicją tabeli");
    }
    pages.push_back(number);
    number = Get32(page.Read(), kOffsetNextDefinitionPage);
  } while (number != 0);
  return pages;
}

TableDefinition ReadDefinition(Pager& pager, PageNumber first) {
  std::vector<std::byte> bytes;
  for (const PageNumber number : DefinitionPages(pager, first)) {
    const PageRef page = pager.Get(number);
    const ConstBytes body = page.Read().subspan(bytes.empty() ? 0 : kSizeDefinitionPageHeader);
    bytes.insert(bytes.end(), body.begin(), body.end());
  }
  const std::size_t length = Get32(bytes, kOffsetDefinitionLength);
  if (length < kSizeDefinitionHead || length > bytes.size()) {
    RaiseDamagedPage(first, u"długość definicji tabeli jest niemożliwa");
  }
  return DecodeDefinition(ConstBytes(bytes).first(length), first);
}

void WriteDefinition(Pager& pager, PageAllocator& allocator, PageNumber first,
                     const TableDefinition& definition) {
  const std::vector<std::byte> bytes = EncodeDefinition(definition);
  const std::size_t body = bytes.size() - kSizeDefinitionPageHeader;
  const std::size_t needed = std::max<std::size_t>(1, (body + kBodyOfPage - 1) / kBodyOfPage);
  std::vector<PageNumber> pages = {first};
  const bool exists = Get8(pager.Get(first).Read(), 0) == kPageDefinition;
  if (exists) pages = DefinitionPages(pager, first);
  while (pages.size() > needed) {
    allocator.Free(pages.back());
    pages.pop_back();
  }
  while (pages.size() < needed) pages.push_back(allocator.Take());
  for (std::size_t i = 0; i < needed; ++i) {
    PageRef ref = pager.GetZeroed(pages[i]);
    const Bytes page = ref.Change();
    const std::size_t from = kSizeDefinitionPageHeader + i * kBodyOfPage;
    const std::size_t size = std::min(kBodyOfPage, bytes.size() - from);
    std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(from), size,
                page.begin() + kSizeDefinitionPageHeader);
    Put8(page, 0, kPageDefinition);
    Put8(page, 1, 1);
    const std::size_t end = kSizeDefinitionPageHeader + size;
    Put16(page, kOffsetFreeBytes, static_cast<std::uint16_t>(end < kBodyOfPage ? kBodyOfPage - end : 0));
    Put32(page, kOffsetNextDefinitionPage, i + 1 < needed ? pages[i + 1] : 0);
  }
}

std::optional<std::size_t> TableDefinition::FindColumn(std::u16string_view name) const {
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (platform::EqualIgnoringCase(columns[i].name, name)) return i;
  }
  return std::nullopt;
}

std::optional<std::size_t> TableDefinition::FindColumnById(std::uint16_t id) const {
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (columns[i].id == id) return i;
  }
  return std::nullopt;
}

const LogicalIndex* TableDefinition::FindIndex(std::u16string_view name) const {
  for (const LogicalIndex& index : logicalIndexes) {
    if (platform::EqualIgnoringCase(index.name, name)) return &index;
  }
  return nullptr;
}

const LogicalIndex* TableDefinition::FindIndexByNumber(std::uint32_t number) const {
  for (const LogicalIndex& index : logicalIndexes) {
    if (index.number == number) return &index;
  }
  return nullptr;
}

const LongValueMaps* TableDefinition::FindLongValueMaps(std::uint16_t columnId) const {
  for (const LongValueMaps& maps : longValueMaps) {
    if (maps.columnId == columnId) return &maps;
  }
  return nullptr;
}

std::size_t TableDefinition::EndOfFixedArea() const {
  std::size_t end = 0;
  for (const Column& column : columns) {
    if (column.IsFixed() && column.type != kTypeBoolean) {
      end = std::max(end, std::size_t{column.fixedOffset} + column.length);
    }
  }
  return end;
}

void TableDefinition::InsertIndexSorted(LogicalIndex index) {
  const std::u16string key = platform::UpperCase(index.name);
  const auto place = std::find_if(logicalIndexes.begin(), logicalIndexes.end(), [&](const LogicalIndex& other) {
    return platform::UpperCase(other.name) > key;
  });
  logicalIndexes.insert(place, std::move(index));
}

}  // namespace zimbrat::jet
