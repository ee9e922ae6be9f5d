// Statements of Jet SQL, parsed: SELECT, DELETE, INSERT, UPDATE on one table.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "jet/sql/expression.h"

namespace zimbrat::jet {

struct SelectStatement {
  std::vector<std::u16string> columns;  // empty: all
  std::u16string table;
  std::u16string alias;
  ExpressionPtr where;
};

struct DeleteStatement {
  std::u16string table;
  ExpressionPtr where;
};

struct InsertStatement {
  std::u16string table;
  std::vector<std::u16string> columns;  // empty: all, in their order
  std::vector<ExpressionPtr> values;
};

struct UpdateStatement {
  std::u16string table;
  std::u16string alias;
  std::vector<std::pair<std::u16string, ExpressionPtr>> assignments;
  ExpressionPtr where;
};

using Statement = std::variant<SelectStatement, DeleteStatement, InsertStatement, UpdateStatement>;

// The errors of syntax (3075, 3129 to 3145); 3251 for what this engine does not carry out.
Statement ParseStatement(std::u16string_view text);

}  // namespace zimbrat::jet
