// Table definitions (pages of type 2): what they say, read and written.
//
//   offset  size  meaning (from the start of the first page; 8 header bytes on each page)
//   8       4     length of the whole definition
//   16      4     rows; 20: last counter value
//   40      1     'N' user, 'S' system; 41: highest column id + 1; 43: highest variable index + 1
//   45      2     columns; 47: logical indexes; 51: real indexes; 55, 59: maps of owned and free pages
//   63            12 bytes a real index, 25 a column, column names, 52 a real index, 28 a logical index,
//                 index names, 10 bytes a long-value column, FF FF
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "jet/file/format.h"
#include "jet/file/pager.h"
#include "jet/file/usage_map.h"

namespace zimbrat::jet {

inline constexpr std::uint8_t kTypeBoolean = 1;
inline constexpr std::uint8_t kTypeByte = 2;
inline constexpr std::uint8_t kTypeInteger = 3;
inline constexpr std::uint8_t kTypeLong = 4;
inline constexpr std::uint8_t kTypeCurrency = 5;
inline constexpr std::uint8_t kTypeSingle = 6;
inline constexpr std::uint8_t kTypeDouble = 7;
inline constexpr std::uint8_t kTypeDate = 8;
inline constexpr std::uint8_t kTypeBinary = 9;
inline constexpr std::uint8_t kTypeText = 10;
inline constexpr std::uint8_t kTypeLongBinary = 11;
inline constexpr std::uint8_t kTypeMemo = 12;
inline constexpr std::uint8_t kTypeGuid = 15;
inline constexpr std::uint8_t kTypeDecimal = 16;  // DAO says 20

struct Column {
  std::u16string name;
  std::uint8_t type = 0;
  std::uint16_t id = 0;             // never reused; the bit in the null mask
  std::uint16_t variableIndex = 0;
  std::uint16_t displayOrder = 0;
  std::uint32_t extra = 0x0409;     // sort order and its version; precision and scale of a Decimal
  std::uint8_t flags = 0;
  std::uint8_t flags2 = 0;
  std::uint16_t fixedOffset = 0;    // after the row's column count
  std::uint16_t length = 0;         // bytes

  bool IsFixed() const { return (flags & kColumnFixed) != 0; }
  bool IsCounter() const { return (flags & kColumnCounter) != 0; }
  bool IsLongValue() const { return type == kTypeMemo || type == kTypeLongBinary; }
  bool IsText() const { return type == kTypeText || type == kTypeMemo; }
  bool HasGeneralOrder() const { return !IsText() || extra == 0x0409; }
  std::uint8_t DecimalPrecision() const { return static_cast<std::uint8_t>(extra); }
  std::uint8_t DecimalScale() const { return static_cast<std::uint8_t>(extra >> 8); }
};

struct IndexColumn {
  std::uint16_t columnId = 0;
  bool ascending = true;
  bool operator==(const IndexColumn&) const = default;
};

struct RealIndex {
  std::vector<IndexColumn> columns;
  RowPointer map;
  PageNumber root = 0;
  std::uint8_t flags = kIndexAlways;
  std::uint32_t entriesAtBuild = 0;
  std::uint32_t differentKeys = 0;

  bool IsUnique() const { return (flags & kIndexUnique) != 0; }
  bool IsRequired() const { return (flags & kIndexRequired) != 0; }
  bool IgnoresNulls() const { return (flags & kIndexIgnoreNulls) != 0; }
};

struct LogicalIndex {
  std::u16string name;
  std::uint32_t number = 0;       // as other tables refer to it
  std::uint32_t realIndex = 0;
  std::uint8_t end = 0;           // kEndReferenced, kEndReferring or 0
  std::uint32_t otherNumber = 0xFFFFFFFF;
  PageNumber otherTable = 0;
  std::uint8_t cascadeUpdate = kCascadeNone;
  std::uint8_t cascadeDelete = kCascadeNone;
  std::uint8_t kind = kIndexPlain;

  bool IsRelation() const { return kind == kIndexRelation; }
};

struct LongValueMaps {
  std::uint16_t columnId = 0;
  RowPointer owned;
  RowPointer free;
};

struct TableDefinition {
  std::array<std::byte, kSizeDefinitionHead> head{};  // kept for the fields that have no meaning for us
  std::uint32_t rows = 0;
  std::uint32_t counter = 0;
  std::uint8_t tableType = kTableUser;
  std::uint16_t maxColumns = 0;
  std::uint16_t variableColumns = 0;
  RowPointer ownedMap;
  RowPointer freeMap;
  std::vector<Column> columns;
  std::vector<RealIndex> realIndexes;
  std::vector<LogicalIndex> logicalIndexes;  // sorted by name
  std::vector<LongValueMaps> longValueMaps;

  std::optional<std::size_t> FindColumn(std::u16string_view name) const;  // ignoring case
  std::optional<std::size_t> FindColumnById(std::uint16_t id) const;
  const LogicalIndex* FindIndex(std::u16string_view name) const;          // ignoring case
  const LogicalIndex* FindIndexByNumber(std::uint32_t number) const;
  const LongValueMaps* FindLongValueMaps(std::uint16_t columnId) const;
  // Bytes from the row's column count to the end of the last fixed column.
  std::size_t EndOfFixedArea() const;
  // Keeps the list sorted by name without regard to case, as readers expect.
  void InsertIndexSorted(LogicalIndex index);
};

std::vector<std::byte> EncodeDefinition(const TableDefinition& definition);
// Error 3049, with the page in its text, for a definition that contradicts itself.
TableDefinition DecodeDefinition(ConstBytes bytes, PageNumber page);

TableDefinition ReadDefinition(Pager& pager, PageNumber page);
// Rewrites the definition in its pages; further pages are taken or given back as its length asks.
void WriteDefinition(Pager& pager, PageAllocator& allocator, PageNumber page,
                     const TableDefinition& definition);
// The definition's pages, the first one included.
std::vector<PageNumber> DefinitionPages(Pager& pager, PageNumber page);

}  // namespace zimbrat::jet
