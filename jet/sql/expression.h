// Expressions: parsed once, bound to the columns of a row, evaluated for each row.
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "jet/sql/lexer.h"
#include "platform/dao.h"

namespace zimbrat::jet {

enum class Operator {
  Power, Negate, Plus, Multiply, Divide, IntegerDivide, Modulo, Add, Subtract, Join,
  Equal, NotEqual, Less, Greater, LessEqual, GreaterEqual, Like, ALike, IsNull, IsNotNull, Between, In,
  Not, And, Or, Xor, Equivalent, Implies,
};

struct Expression {
  enum class Kind { Literal, Name, Operation, Call };
  Kind kind = Kind::Literal;
  dao::Value value;                    // Literal
  std::u16string qualifier;            // Name: table or alias in front
  std::u16string name;                 // Name, Call
  std::size_t column = 0;              // Name, once bound
  Operator op = Operator::Equal;       // Operation
  std::vector<std::unique_ptr<Expression>> operands;
};
using ExpressionPtr = std::unique_ptr<Expression>;

// The tokens with a place among them, as the parsers of expressions and statements hand it on.
class TokenStream {
 public:
  explicit TokenStream(std::u16string_view source) : source_(source), tokens_(Tokenize(source)) {}

  const Token& Peek(std::size_t ahead = 0) const {
    return tokens_[std::min(position_ + ahead, tokens_.size() - 1)];
  }
  Token Take();
  bool IsWord(std::u16string_view word, std::size_t ahead = 0) const;
  bool IsSign(std::u16string_view sign) const;
  bool AcceptWord(std::u16string_view word);
  bool AcceptSign(std::u16string_view sign);
  bool AtEnd() const { return Peek().kind == TokenKind::End; }
  const std::u16string& Source() const { return source_; }
  [[noreturn]] void Fail(std::u16string_view message) const;  // 3075

 private:
  std::u16string source_;
  std::vector<Token> tokens_;
  std::size_t position_ = 0;
};

// Error 3075 for what is no expression, or one that is nested too deep.
ExpressionPtr ParseExpression(TokenStream& tokens);
// A whole text as one expression; a leading "=" is allowed.
ExpressionPtr ParseExpressionText(std::u16string_view text);

// Looks a name up; the column's number, or nothing.
using NameLookup =
    std::function<std::optional<std::size_t>(std::u16string_view qualifier, std::u16string_view name)>;
// Every name finds its column; the names that do not are added to `unknown`, each once.
void BindNames(Expression& expression, const NameLookup& lookup, std::vector<std::u16string>& unknown);

struct EvaluationContext {
  double now = 0;                                            // Now() and its like, one for a statement
  std::function<dao::Value(std::size_t column)> valueOf;     // of a bound name
};
// Errors 3464 (types), 3085 (function), 6, 11, 13, 94.
dao::Value Evaluate(const Expression& expression, const EvaluationContext& context);
// Whether a condition holds: Null and 0 do not.
bool IsTrue(const dao::Value& value);

}  // namespace zimbrat::jet
