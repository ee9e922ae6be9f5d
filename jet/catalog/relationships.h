// Relationships: their rows in MSysRelationships, their objects in the catalogue and, when enforced, an
// entry among the indexes of both tables that points at the other.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "jet/catalog/catalog.h"
#include "jet/table/table_design.h"

namespace zimbrat::jet {

// Attribute bits, as DAO numbers them and the file keeps them.
inline constexpr std::uint32_t kRelationUnique = 1;
inline constexpr std::uint32_t kRelationDontEnforce = 2;
inline constexpr std::uint32_t kRelationUpdateCascade = 0x100;
inline constexpr std::uint32_t kRelationDeleteCascade = 0x1000;
inline constexpr std::uint32_t kRelationLeft = 0x1000000;  // how queries join the tables: nothing to the engine
inline constexpr std::uint32_t kRelationRight = 0x2000000;

struct RelationField {
  std::u16string name;         // column of the referenced table
  std::u16string foreignName;  // column of the referring table
};

struct Relationship {
  std::u16string name;
  std::u16string table;
  std::u16string foreignTable;
  std::uint32_t attributes = 0;
  std::vector<RelationField> fields;

  bool IsEnforced() const { return (attributes & kRelationDontEnforce) == 0; }
};

class Relationships {
 public:
  Relationships(Storage storage, Catalog& catalog) : storage_(storage), catalog_(catalog) {}

  // All of the database, in the order of their rows.
  std::vector<Relationship> List();
  // Errors in this order: 3366 no fields, 3125 name, 3012 name taken, 3011 table, 3409 field, 3206 field with
  // itself, 3368 types, 3609 no unique index, 3284 index of that name, 3626 too many, 3379 rows.
  void Add(Relationship relationship);
  // The rows in MSysRelationships alone, where the definitions hold the ends already.
  void AddRows(const Relationship& relationship);
  // Error 3265 when there is none of that name.
  void Remove(std::u16string_view name);
  // The first relationship that the table takes part in.
  std::optional<std::u16string> FindUse(std::u16string_view table);
  // A relationship that the column takes part in.
  std::optional<std::u16string> FindUse(std::u16string_view table, std::u16string_view column);

  void TableRenamed(std::u16string_view from, std::u16string_view to);
  void ColumnRenamed(std::u16string_view table, std::u16string_view from, std::u16string_view to);

 private:
  void AddEntries(const Relationship& relationship);
  void RemoveEntries(const Relationship& relationship);
  void CheckRows(Table& parent, std::uint32_t parentReal, Table& child, std::uint32_t childReal);
  // For rows whose `condition` column is `conditionValue`: `column` from one name to another.
  void ReplaceName(std::u16string_view column, std::u16string_view from, std::u16string_view to,
                   std::u16string_view condition = {}, std::u16string_view conditionValue = {});

  Storage storage_;
  Catalog& catalog_;
};

}  // namespace zimbrat::jet
