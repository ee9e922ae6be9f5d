// Statements of Jet SQL, parsed.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "jet/catalog/field_spec.h"
#include "jet/sql/expression.h"

namespace zimbrat::jet {

// A column of the list; no expression: all columns, of `qualifier` if it is given.
struct SelectItem {
  ExpressionPtr expression;
  std::u16string qualifier;
  std::u16string alias;
};

enum class JoinKind { Inner, Left, Right };

// What stands in FROM: a table, a query in parentheses, or two of them joined.
struct FromItem {
  std::u16string table;
  std::u16string alias;
  std::shared_ptr<QueryStatement> query;
  JoinKind join = JoinKind::Inner;
  std::unique_ptr<FromItem> left;
  std::unique_ptr<FromItem> right;
  ExpressionPtr on;

  bool IsJoin() const { return left != nullptr; }
  const std::u16string& Name() const { return alias.empty() ? table : alias; }
};
using FromList = std::vector<std::unique_ptr<FromItem>>;

struct OrderItem {
  ExpressionPtr expression;
  bool descending = false;
};

enum class Repeats { Keep, DropEqualValues, DropEqualRows };  // ALL, DISTINCT, DISTINCTROW

struct TopClause {
  double count = 0;
  bool percent = false;
};

struct SelectStatement {
  Repeats repeats = Repeats::Keep;
  std::optional<TopClause> top;
  std::vector<SelectItem> items;
  std::u16string into;  // empty: none
  FromList from;
  ExpressionPtr where;
  std::vector<ExpressionPtr> groupBy;
  ExpressionPtr having;
  std::vector<OrderItem> orderBy;
};

// One SELECT, or several united.
struct QueryStatement {
  std::vector<SelectStatement> selects;
  std::vector<bool> keepsRepeats;  // UNION ALL, for each but the first
  std::vector<OrderItem> orderBy;  // of a union
  int depth = 1;                   // of its deepest expression
};

struct DeleteStatement {
  std::u16string target;  // named in front of `.*`; empty: none
  FromList from;
  ExpressionPtr where;
};

struct InsertStatement {
  std::u16string table;
  std::vector<std::u16string> columns;  // empty: all
  std::vector<ExpressionPtr> values;
  std::shared_ptr<QueryStatement> query;  // instead of values
};

struct Assignment {
  std::u16string qualifier;
  std::u16string column;
  ExpressionPtr value;
};

struct UpdateStatement {
  FromList from;
  std::vector<Assignment> assignments;
  ExpressionPtr where;
};

struct ConstraintSpec {
  enum class Kind { Primary, Unique, Foreign };
  Kind kind = Kind::Primary;
  std::u16string name;  // empty: the engine's choice
  std::vector<std::u16string> columns;
  std::u16string otherTable;
  std::vector<std::u16string> otherColumns;  // empty: those of its primary key
};

struct CreateTableStatement {
  std::u16string table;
  std::vector<FieldSpec> fields;
  std::vector<ConstraintSpec> constraints;
};

struct AddColumn {
  FieldSpec field;
  std::vector<ConstraintSpec> constraints;
};
struct AlterColumn {
  FieldSpec field;
};
struct DropColumn {
  std::u16string name;
};
struct AddConstraint {
  ConstraintSpec constraint;
};
struct DropConstraint {
  std::u16string name;
};

struct AlterTableStatement {
  std::u16string table;
  std::variant<AddColumn, AlterColumn, DropColumn, AddConstraint, DropConstraint> change;
};

struct CreateIndexStatement {
  std::u16string table;
  NewIndex index;
};

struct DropTableStatement {
  std::u16string table;
};

struct DropIndexStatement {
  std::u16string index;
  std::u16string table;
};

using Statement =
    std::variant<QueryStatement, DeleteStatement, InsertStatement, UpdateStatement, CreateTableStatement,
                 AlterTableStatement, CreateIndexStatement, DropTableStatement, DropIndexStatement>;

// The errors of syntax (3075, 3129 to 3145, 3289 to 3295, 3308); 3251 for what this engine does not carry out.
Statement ParseStatement(std::u16string_view text);

// Error 3251 that says what is not carried out.
[[noreturn]] void RaiseUnsupported(std::u16string_view what);

}  // namespace zimbrat::jet
