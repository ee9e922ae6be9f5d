// Changing a table's structure: creating, adding columns and indexes, taking indexes away, dropping.
// Names and rules are asked on the floors above; here is what it means in pages and maps.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "jet/file/storage.h"
#include "jet/table/definition.h"

namespace zimbrat::jet {

struct ColumnSpec {
  std::u16string name;
  std::uint8_t type = 0;
  std::uint16_t length = 0;   // bytes
  bool fixed = false;
  bool counter = false;
  bool compressed = false;
  bool hyperlink = false;
};

struct IndexSpec {
  std::u16string name;
  std::vector<IndexColumn> columns;
  std::uint8_t flags = kIndexAlways;
  bool primary = false;
};

// An empty table; ids are given in the order of the list, so that `indexes` can name them. Returns the page of
// its definition.
PageNumber CreateTable(const Storage& storage, const std::vector<ColumnSpec>& columns,
                       const std::vector<IndexSpec>& indexes, std::uint8_t tableType = kTableUser);

// A table without columns, to be designed further.
PageNumber CreateEmptyTable(const Storage& storage, std::uint8_t tableType);

// One change of a definition: load, change, write.
class TableDesign {
 public:
  TableDesign(const Storage& storage, PageNumber page);

  TableDefinition definition;

  // The position of the new column. Rows stay as they are: null there. Errors: 3190 above 255 columns
  // ever, 3047 when the fixed columns alone fill more than a page.
  std::size_t AddColumn(const ColumnSpec& spec);
  // Rows keep its bytes, which nobody reads any more; its long values are given back.
  void RemoveColumn(std::size_t position);
  // What a new long-value column needs.
  void AddLongValueMaps(std::uint16_t columnId);
  // A new, empty tree. Returns its position.
  std::uint32_t AddRealIndex(const std::vector<IndexColumn>& columns, std::uint8_t flags);
  // A new, empty index under its name. Returns its entry.
  LogicalIndex AddIndex(const IndexSpec& spec);
  // A number that no logical index of the table has.
  std::uint32_t FreeIndexNumber() const;
  // Also the tree, when no other entry uses it.
  void RemoveLogicalIndex(std::uint32_t number);

  void Write();

 private:
  RowPointer AddMap();
  void FreeMap(RowPointer map);

  Storage storage_;
  PageNumber page_;
};

// Frees every page of a table: rows, long values, indexes, maps, definition.
void FreeTable(const Storage& storage, PageNumber page);

}  // namespace zimbrat::jet
