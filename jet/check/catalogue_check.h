// The catalogue: which objects there are, their permissions, and relationships against definitions.
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "checking.h"
#include "layout.h"
#include "rows.h"

namespace zimbrat::jet::check {

struct CatalogueObject {
  std::uint32_t id = 0;
  std::uint32_t parent = 0;
  std::int16_t type = 0;
  std::u16string name;
  bool hasPermissions = false;

  bool IsTable() const;
  bool IsRelationship() const;
};

class CatalogueCheck {
 public:
  explicit CatalogueCheck(Checking& check) : check_(check) {}

  // Of a system table: without a column that the engine asks for by its name no catalogue can be read.
  void RequireColumns(const TableLayout& table);
  // Rows of the system tables, as their tables are checked: objects first.
  void AddObject(const TableLayout& table, const RowParts& row);
  void FinishObjects();
  void AddPermission(const TableLayout& table, const RowParts& row);
  void AddRelationshipRow(const TableLayout& table, const RowParts& row);

  const std::vector<CatalogueObject>& Objects() const { return objects_; }
  // After all tables.
  void CheckPermissions();
  // Entries of relationships in a definition: both ends must name each other, and the catalogue
  // both.
  void CheckRelations(const TableLayout& table);

 private:
  struct RelationshipRow {
    std::u16string name, table, column, otherTable, otherColumn;  // referring side, referenced side
    std::int32_t flags = 0, columns = 0, position = 0;
  };

  std::int32_t LongOf(const TableLayout& table, const RowParts& row, std::u16string_view column);
  void CheckProperties(const TableLayout& table, const RowParts& row, const CatalogueObject& object);
  std::u16string TextOfField(const TableLayout& table, const RowParts& row,
                             std::u16string_view column);
  CatalogueObject* FindObject(std::uint32_t id);
  const CatalogueObject* FindTable(std::u16string_view name);
  bool HasRelationship(std::u16string_view name) const;
  const TableLayout* Peek(PageNumber page);
  void CheckRelation(const TableLayout& table, const LogicalLayout& logical);
  void CheckRelationshipColumns(const RelationshipRow& row, const TableLayout& referring,
                                const LogicalLayout& logical);
  void CheckRelationshipColumn(const RelationshipRow& row, const TableLayout& table,
                               std::uint32_t index, std::u16string_view column);

  Checking& check_;
  std::vector<CatalogueObject> objects_;                                    // by id, once finished
  std::vector<std::pair<std::vector<std::byte>, std::size_t>> tableNames_;  // keys and positions
  std::vector<std::vector<std::byte>> relationshipNames_;
  std::set<std::tuple<PageNumber, std::uint32_t, std::int32_t>> relationshipPlaces_;  // table, its index, position
  // The definitions looked at last: rows of one relationship name the same two.
  std::vector<TableLayout> peeked_;
};

}  // namespace zimbrat::jet::check
