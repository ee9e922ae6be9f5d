// Expressions: parsed once, bound to the columns of a row, evaluated for each row.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "jet/sql/token_stream.h"
#include "platform/dao.h"

namespace zimbrat::jet {

enum class Operator {
  Power, Negate, Plus, Multiply, Divide, IntegerDivide, Modulo, Add, Subtract, Join,
  Equal, NotEqual, Less, Greater, LessEqual, GreaterEqual, Like, ALike, IsNull, IsNotNull, Between, In,
  Not, And, Or, Xor, Equivalent, Implies,
};

struct Expression;
struct EvaluationContext;
struct QueryStatement;

// A subquery that was bound to the query around it.
class BoundSubquery {
 public:
  virtual ~BoundSubquery() = default;
  virtual dao::Value Evaluate(const Expression& expression, const EvaluationContext& context) = 0;
};

enum class SubqueryUse { Value, In, Exists, Any, All };

struct Expression {
  enum class Kind { Literal, Name, Operation, Call, Subquery };
  Kind kind = Kind::Literal;
  dao::Value value;                    // Literal
  std::u16string qualifier;            // Name: table or alias in front
  std::u16string name;                 // Name, Call
  std::size_t column = 0;              // Name, once bound
  std::size_t level = 0;               // Name, once bound: queries outwards
  std::int16_t type = 0;               // Name, once bound: DAO's number, where it is known
  std::int32_t size = 0;
  Operator op = Operator::Equal;       // Operation; Subquery in a comparison
  SubqueryUse use = SubqueryUse::Value;
  std::shared_ptr<QueryStatement> query;    // Subquery
  std::shared_ptr<BoundSubquery> subquery;  // Subquery, once bound
  int depth = 1;                       // of the tree; what walks it does so by recursion
  std::vector<std::unique_ptr<Expression>> operands;
};
using ExpressionPtr = std::unique_ptr<Expression>;

// Error 3075 for what is no expression, or one that is nested too deep.
ExpressionPtr ParseExpression(TokenStream& tokens);
// A whole text as one expression; a leading "=" is allowed.
ExpressionPtr ParseExpressionText(std::u16string_view text);

// Now, Date and Time need no parentheses: a name without a column becomes the call.
bool TurnIntoClockCall(Expression& name);

// Looks a name up; the column's number, or nothing.
using NameLookup =
    std::function<std::optional<std::size_t>(std::u16string_view qualifier, std::u16string_view name)>;
// Every name finds its column; the names that do not are added to `unknown`, each once. Error 3313 for a
// subquery: this is for what stands outside of queries.
void BindNames(Expression& expression, const NameLookup& lookup, std::vector<std::u16string>& unknown);

struct EvaluationContext {
  double now = 0;                                            // Now() and its like, one for a statement
  std::function<dao::Value(std::size_t column)> valueOf;     // of a bound name
  const EvaluationContext* outer = nullptr;                  // of the query around this one
};
// Errors 3464 (types), 3085 (function), 6, 11, 13, 94.
dao::Value Evaluate(const Expression& expression, const EvaluationContext& context);
// Whether a condition holds: Null and 0 do not. Error 3464 for a text that is no number, and for bytes.
bool IsTrue(const dao::Value& value);

}  // namespace zimbrat::jet
