// Changes of structure with everything that refers to it: definitions, catalogue, properties, relationships.
// Each call belongs into a savepoint of the caller. Errors bear DAO's numbers; SQL asks first where its own
// differ.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "jet/catalog/catalog.h"
#include "jet/catalog/field_spec.h"
#include "jet/catalog/relationships.h"

namespace zimbrat::jet {

class Schema {
 public:
  Schema(Storage storage, Catalog& catalog) : storage_(storage), catalog_(catalog) {}

  // Column ids and index numbers are given in the order of the lists. Errors in this order: 3264 no fields,
  // 3010 and 3012 name taken, 3125, 3190, 3191, 3259, 3382, 3090 two counters, 3626, those of MakeIndexSpec,
  // 3283 two primary keys, 3284 two indexes of one name.
  PageNumber CreateTable(std::u16string_view name, const std::vector<FieldSpec>& fields,
                         const std::vector<NewIndex>& indexes);
  // A link loses its catalogue row alone. Errors 3265, 3281 (system tables too).
  void DropTable(std::u16string_view name);
  // Relationships follow. Errors 3125, 3010, 3012.
  void RenameTable(PageNumber table, std::u16string_view name);

  // Rows that are there have Null. Returns the column's id. Errors 3125, 3191, 3190, 3259, 3382, 3047, 3090.
  std::uint16_t AddField(PageNumber table, const FieldSpec& field);
  // Errors 3280 used by an index, 3303 by a relationship, 3264 the only field.
  void DropField(PageNumber table, std::uint16_t columnId);
  // Properties and relationships follow; texts of rules and queries do not. Errors 3125, 3191.
  void RenameField(PageNumber table, std::uint16_t columnId, std::u16string_view name);

  // Built over the rows at once. Returns its number. Errors: those of MakeIndexSpec, 3626, 3283, 3284, 3022,
  // 3058.
  std::uint32_t AddIndex(PageNumber table, const NewIndex& index);
  // Errors 3265, 3281 needed by a relationship.
  void DropIndex(PageNumber table, std::u16string_view name);
  // Errors 3125, 3284, 3219 for the index of a relationship.
  void RenameIndex(PageNumber table, std::uint32_t number, std::u16string_view name);

 private:
  // The definition was written: everybody reads it anew, and the catalogue notes the time.
  void Changed(PageNumber table);

  Storage storage_;
  Catalog& catalog_;
};

}  // namespace zimbrat::jet
