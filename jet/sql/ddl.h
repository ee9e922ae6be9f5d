// Statements that change the structure. The numbers of their errors are SQL's own, where DAO has others.
#pragma once

#include <functional>
#include <memory>
#include <string_view>

#include "jet/catalog/database_file.h"
#include "jet/catalog/schema.h"
#include "jet/sql/statement.h"

namespace zimbrat::jet {

class StructureChange {
 public:
  // `requireUnused` raises 3009 for a table whose rows are shown.
  StructureChange(DatabaseFile& database, const std::function<void(PageNumber)>& requireUnused)
      : database_(database),
        requireUnused_(requireUnused),
        schema_(database.GetStorage(), database.GetCatalog()),
        relationships_(database.GetStorage(), database.GetCatalog()) {}

  // Errors 3010, 3012, 3125, 3191 and the further ones of Schema; those of constraints: 3283, 3284, 3409;
  // 3368, 3373, 3374, 3376, 3378, 3381 of a reference.
  void Run(const CreateTableStatement& statement);
  // Errors 3371 (no such table or constraint), 3380, 3381, 3280, 3281, 3303, 3375, those of constraints, and
  // 3163 or 3421 for a value that does not fit a changed type.
  void Run(const AlterTableStatement& statement);
  // Errors 3376, 3375, 3283, 3409, 3022, 3058.
  void Run(const CreateIndexStatement& statement);
  // Errors 3376, 3281.
  void Run(const DropTableStatement& statement);
  // Errors 3376, 3372, 3281.
  void Run(const DropIndexStatement& statement);

 private:
  std::shared_ptr<Table> OpenUnused(std::u16string_view name, std::int32_t error);
  void Change(Table& table, const AddColumn& change);
  void Change(Table& table, const AlterColumn& change);
  void Change(Table& table, const DropColumn& change);
  void Change(Table& table, const AddConstraint& change);
  void Change(Table& table, const DropConstraint& change);
  void AddIndexOf(Table& table, const NewIndex& index);
  void AddReference(std::u16string_view table, const ConstraintSpec& constraint);
  std::vector<std::u16string> PrimaryKeyOf(Table& table);

  DatabaseFile& database_;
  const std::function<void(PageNumber)>& requireUnused_;
  Schema schema_;
  Relationships relationships_;
};

}  // namespace zimbrat::jet
