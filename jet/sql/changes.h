// Statements that change rows: INSERT, UPDATE, DELETE, SELECT INTO. The caller's savepoint makes each of them
// whole or not at all.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>

#include "jet/catalog/database_file.h"
#include "jet/catalog/row_store.h"
#include "jet/sql/place_list.h"
#include "jet/sql/row_plan.h"
#include "jet/sql/statement.h"

namespace zimbrat::jet {

struct ChangeRun {
  DatabaseFile& database;
  RowStore& rows;
  double now = 0;
  bool failOnError = false;
};

// Each returns the rows affected.
std::int32_t RunInsert(InsertStatement& statement, ChangeRun& run);
std::int32_t RunUpdate(UpdateStatement& statement, ChangeRun& run);
std::int32_t RunDelete(DeleteStatement& statement, ChangeRun& run);
// The query has INTO in its first SELECT. Error 3010 for a name that is taken.
std::int32_t RunSelectInto(QueryStatement& query, ChangeRun& run);

// Does what concerns one row. With `failOnError` its errors go on to the caller; without, a row that fails
// leaves nothing behind and is passed over (false).
bool ChangeRow(ChangeRun& run, const std::function<void()>& work);
// Brought to the column's type: what does not convert is error 3464, or Null without `failOnError`.
dao::Value StoredValue(const ChangeRun& run, const Column& column, const dao::Value& value);
// Error 3027 for a system table: the catalogue is the engine's own business.
void RequireChangeable(DatabaseFile& database, Table& table);
std::shared_ptr<Table> OpenForChange(DatabaseFile& database, std::u16string_view name, std::int32_t error);
// All rows of a plan.
PlaceList FindPlaces(RowPlan& plan, Pager& pager);

// Rows on their way into a table: columns that are not given have their default values.
class RowInserter {
 public:
  RowInserter(ChangeRun& run, std::shared_ptr<Table> table, std::vector<std::size_t> columns);
  ~RowInserter();
  // Values by the order of the columns.
  bool Insert(const std::vector<dao::Value>& given);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace zimbrat::jet
