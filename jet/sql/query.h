// Statements carried out on a database.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "jet/catalog/database_file.h"
#include "jet/catalog/row_store.h"
#include "jet/sql/statement.h"

namespace zimbrat::jet {

// The rows that a SELECT found: their places and the columns shown.
struct QueryResult {
  std::shared_ptr<Table> table;
  std::vector<std::size_t> columns;  // positions in the table's definition
  std::vector<RowPointer> rows;
};

class QueryRunner {
 public:
  explicit QueryRunner(DatabaseFile& database);

  // A table's name or a SELECT. Errors 3078 (table), 3061 (unknown names), 3219 (no SELECT).
  QueryResult Open(std::u16string_view source);
  // Rows affected. With `failOnError` the first failing row raises its error; otherwise it is passed over.
  // The caller's savepoint makes it all or nothing.
  std::int32_t Execute(std::u16string_view statement, bool failOnError);

  RowStore& Rows() { return rows_; }

 private:
  std::shared_ptr<Table> OpenTable(std::u16string_view name, std::int32_t error);
  // Error 3027 for a system table: the catalogue is the engine's own business.
  std::shared_ptr<Table> OpenForChange(std::u16string_view name, std::int32_t error);
  std::vector<RowPointer> Find(Table& table, std::u16string_view alias, Expression* where, double now);
  void Bind(Expression& expression, Table& table, std::u16string_view alias);
  template <class Work>
  std::int32_t ForRows(const std::vector<RowPointer>& rows, bool failOnError, Work work);

  std::int32_t Run(SelectStatement& statement, bool failOnError);
  std::int32_t Run(DeleteStatement& statement, bool failOnError);
  std::int32_t Run(InsertStatement& statement, bool failOnError);
  std::int32_t Run(UpdateStatement& statement, bool failOnError);

  DatabaseFile& database_;
  RowStore rows_;
};

}  // namespace zimbrat::jet
