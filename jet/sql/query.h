// Statements carried out on a database.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>
#include <vector>

#include "jet/catalog/database_file.h"
#include "jet/catalog/row_store.h"
#include "jet/sql/place_list.h"
#include "jet/sql/row_plan.h"
#include "jet/sql/statement.h"

namespace zimbrat::jet {

// The rows that a SELECT found: where they are, and the plan that reads them there.
struct QueryResult {
  RowPlanPtr plan;
  std::shared_ptr<PlaceList> places;
  std::vector<PageNumber> tables;  // whose rows are read
};

class QueryRunner {
 public:
  explicit QueryRunner(DatabaseFile& database);

  // A table's name or a query. Errors of syntax and binding; 3219 for a statement that is no query.
  QueryResult Open(std::u16string_view source);
  // A table's name alone. Errors 3219 for a statement, 3011 for a name that there is not.
  QueryResult OpenTable(std::u16string_view name);
  // Rows affected. With `failOnError` the first failing row raises its error; otherwise it is passed over.
  // The caller's savepoint makes it all or nothing.
  std::int32_t Execute(std::u16string_view statement, bool failOnError);

  RowStore& Rows() { return rows_; }
  // Error 3009 while rows of the table are shown: asked before its structure is changed.
  std::function<void(PageNumber)> requireUnused = [](PageNumber) {};

 private:
  DatabaseFile& database_;
  RowStore rows_;
};

}  // namespace zimbrat::jet
