// What a table's definition says.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "jet/file/format.h"
#include "jet/file/usage_map.h"

namespace zimbrat::jet::check {

// Of a column, as files have it.
bool IsKnownType(std::int16_t type);

struct ColumnLayout {
  std::int16_t type = 0;  // as the file has it
  std::uint16_t id = 0;
  std::uint16_t variableIndex = 0;
  std::uint16_t displayOrder = 0;
  std::uint32_t extra = 0;  // of texts: sort order (16 bits), 0, version of the collation
  std::uint8_t flags = 0;
  std::uint8_t flags2 = 0;
  std::uint16_t fixedOffset = 0;
  std::uint16_t length = 0;
  std::u16string name;

  bool IsFixed() const { return (flags & kColumnFixed) != 0; }
  bool IsBoolean() const;
  bool IsText() const;  // Memo too
  bool IsLongValue() const;
  // Keys of other sort orders cannot be made anew.
  bool HasComparableKeys() const;
  // Of the types whose values all have one size; else 0.
  std::size_t FixedSize() const;
};

struct IndexLayout {
  struct Part {
    std::uint16_t columnId = 0;
    bool ascending = true;
  };
  std::vector<Part> parts;
  RowPointer map;
  PageNumber root = 0;
  std::uint8_t flags = 0;
  bool isPrimary = false;
  std::u16string name;  // of a logical index that uses it

  bool Has(std::uint8_t flag) const { return (flags & flag) != 0; }
};

struct LogicalLayout {
  std::uint32_t number = 0;
  std::uint32_t index = 0;  // position of the real one
  std::uint8_t end = 0;
  std::uint32_t otherNumber = 0;
  PageNumber otherTable = 0;
  std::uint8_t cascadeUpdates = 0;
  std::uint8_t cascadeDeletes = 0;
  std::uint8_t kind = 0;
  std::u16string name;
};

struct LongValueMapsLayout {
  std::uint16_t columnId = 0;
  RowPointer owned;
  RowPointer free;
};

struct TableLayout {
  PageNumber page = 0;
  std::u16string place;  // for faults
  std::uint32_t rows = 0;
  std::uint32_t counter = 0;  // last value given
  std::uint8_t kind = 0;
  std::uint16_t maxColumns = 0;
  std::uint16_t variableColumns = 0;
  RowPointer ownedMap;
  RowPointer freeMap;
  std::vector<ColumnLayout> columns;
  std::vector<IndexLayout> indexes;
  std::vector<LogicalLayout> logicals;
  std::vector<LongValueMapsLayout> longValueMaps;

  // Real files have wrong counts of MSysACEs and MSysQueries.
  bool HasReliableRowCount() const { return page != kAcesPage && page != kQueriesPage; }
  // Tables that are added to a file later have columns whose maps are null.
  bool HasMaplessValues() const;
  const ColumnLayout* FindColumn(std::uint16_t id) const;
  // Without regard to case, by the names' keys.
  const ColumnLayout* FindColumn(std::u16string_view name) const;
  const LogicalLayout* FindLogical(std::uint32_t number) const;
};

}  // namespace zimbrat::jet::check
