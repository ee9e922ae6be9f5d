#include <algorithm>
#include <optional>
#include <utility>

#include "jet/file/errors.h"
#include "jet/sql/expression.h"
#include "jet/sql/statement.h"
#include "platform/text.h"

#include "select_parser.h"

namespace zimbrat::jet {

namespace {

constexpr int kMaxChain = 200;
constexpr int kMaxTreeDepth = 300;

constexpr std::u16string_view kReserved[] = {
    u"AND", u"OR", u"NOT", u"XOR", u"EQV", u"IMP", u"LIKE", u"ALIKE", u"IS", u"IN", u"BETWEEN", u"MOD",
    u"WHERE", u"FROM", u"SELECT", u"SET", u"VALUES", u"INTO", u"ORDER", u"GROUP", u"HAVING", u"BY", u"AS",
    u"INNER", u"JOIN", u"UNION", u"EXISTS", u"ALL", u"ANY", u"SOME", u"DISTINCT",
    u"DISTINCTROW"};

struct BinaryLevel {
  std::u16string_view word;
  Operator op;
};

ExpressionPtr MakeLiteral(dao::Value value) {
  auto e = std::make_unique<Expression>();
  e->value = std::move(value);
  return e;
}

// One method a level, weakest first.
class Parser {
 public:
  explicit Parser(TokenStream& tokens) : tokens_(tokens) {}

  ExpressionPtr ParseAll() { return ParseLogical(0); }

 private:
  static constexpr BinaryLevel kLogical[] = {{u"IMP", Operator::Implies},
                                             {u"EQV", Operator::Equivalent},
                                             {u"XOR", Operator::Xor},
                                             {u"OR", Operator::Or},
                                             {u"AND", Operator::And}};

  ExpressionPtr MakeOperation(Operator op, ExpressionPtr a, ExpressionPtr b = nullptr) {
    auto e = std::make_unique<Expression>();
    e->kind = Expression::Kind::Operation;
    e->op = op;
    AddOperand(*e, std::move(a));
    if (b) AddOperand(*e, std::move(b));
    return e;
  }

  // Chains within nested parentheses make a tree that is deeper than either.
  void AddOperand(Expression& e, ExpressionPtr operand) {
    e.depth = std::max(e.depth, operand->depth + 1);
    if (e.depth > kMaxTreeDepth) tokens_.FailAsTooComplex();
    e.operands.push_back(std::move(operand));
  }

  ExpressionPtr MakeSubquery(SubqueryUse use, Operator op = Operator::Equal, ExpressionPtr left = nullptr) {
    auto e = std::make_unique<Expression>();
    e->kind = Expression::Kind::Subquery;
    e->use = use;
    e->op = op;
    if (left) AddOperand(*e, std::move(left));
    e->query = ParseQuery(tokens_);
    e->depth = std::max(e->depth, e->query->depth + 1);
    if (e->depth > kMaxTreeDepth) tokens_.FailAsTooComplex();
    Close();
    return e;
  }

  ExpressionPtr ParseLogical(std::size_t level) {
    if (level == std::size(kLogical)) return ParseNot();
    ExpressionPtr left = ParseLogical(level + 1);
    int chained = 0;
    while (tokens_.AcceptWord(kLogical[level].word)) {
      CountChain(chained);
      left = MakeOperation(kLogical[level].op, std::move(left), ParseLogical(level + 1));
    }
    return left;
  }

  // A long chain of one level makes a deep tree without nesting.
  void CountChain(int& chained) {
    if (++chained > kMaxChain) tokens_.FailAsTooComplex();
  }

  ExpressionPtr ParseNot() {
    if (!tokens_.AcceptWord(u"NOT")) return ParseComparison();
    const Nesting nesting(tokens_);
    return MakeOperation(Operator::Not, ParseNot());
  }

  ExpressionPtr ParseComparison() {
    ExpressionPtr left = ParseJoin();
    int chained = 0;
    while (true) {
      CountChain(chained);
      if (const auto op = AcceptComparisonSign()) {
        left = ParseCompared(*op, std::move(left));
      } else if (tokens_.AcceptWord(u"IS")) {
        const bool negated = tokens_.AcceptWord(u"NOT");
        if (!tokens_.AcceptWord(u"NULL")) tokens_.Fail(u"Błąd składni");
        left = MakeOperation(negated ? Operator::IsNotNull : Operator::IsNull, std::move(left));
      } else if (tokens_.IsWord(u"NOT") && IsPredicate(1)) {
        tokens_.Take();
        left = MakeOperation(Operator::Not, ParsePredicate(std::move(left)));
      } else if (IsPredicate(0)) {
        left = ParsePredicate(std::move(left));
      } else {
        return left;
      }
    }
  }

  // The right side of a comparison: a value, or the values of a subquery.
  ExpressionPtr ParseCompared(Operator op, ExpressionPtr left) {
    const bool any = tokens_.IsWord(u"ANY") || tokens_.IsWord(u"SOME");
    if (!any && !tokens_.IsWord(u"ALL")) return MakeOperation(op, std::move(left), ParseJoin());
    tokens_.Take();
    if (!tokens_.AcceptSign(u"(") || !tokens_.IsWord(u"SELECT")) tokens_.Fail(u"Błąd składni");
    return MakeSubquery(any ? SubqueryUse::Any : SubqueryUse::All, op, std::move(left));
  }

  bool IsPredicate(std::size_t ahead) const {
    return tokens_.IsWord(u"LIKE", ahead) || tokens_.IsWord(u"ALIKE", ahead) ||
           tokens_.IsWord(u"BETWEEN", ahead) || tokens_.IsWord(u"IN", ahead);
  }

  ExpressionPtr ParsePredicate(ExpressionPtr left) {
    if (tokens_.AcceptWord(u"LIKE")) return MakeOperation(Operator::Like, std::move(left), ParseJoin());
    if (tokens_.AcceptWord(u"ALIKE")) return MakeOperation(Operator::ALike, std::move(left), ParseJoin());
    if (tokens_.AcceptWord(u"BETWEEN")) {
      ExpressionPtr e = MakeOperation(Operator::Between, std::move(left), ParseJoin());
      if (!tokens_.AcceptWord(u"AND")) tokens_.Fail(u"Błąd składni (brak operatora)");
      AddOperand(*e, ParseJoin());
      return e;
    }
    tokens_.Take();
    if (!tokens_.AcceptSign(u"(")) tokens_.Fail(u"Błąd składni");
    if (tokens_.IsWord(u"SELECT")) return MakeSubquery(SubqueryUse::In, Operator::Equal, std::move(left));
    ExpressionPtr e = MakeOperation(Operator::In, std::move(left));
    do {
      AddOperand(*e, ParseNested());
    } while (tokens_.AcceptSign(u","));
    Close();
    return e;
  }

  std::optional<Operator> AcceptComparisonSign() {
    constexpr BinaryLevel signs[] = {{u"=", Operator::Equal},      {u"<>", Operator::NotEqual},
                                     {u"<=", Operator::LessEqual}, {u">=", Operator::GreaterEqual},
                                     {u"<", Operator::Less},       {u">", Operator::Greater}};
    for (const BinaryLevel& sign : signs) {
      if (tokens_.AcceptSign(sign.word)) return sign.op;
    }
    return std::nullopt;
  }

  ExpressionPtr ParseJoin() {
    return ParseChain({{u"&", Operator::Join}}, [this] { return ParseSum(); });
  }
  ExpressionPtr ParseSum() {
    return ParseChain({{u"+", Operator::Add}, {u"-", Operator::Subtract}}, [this] { return ParseModulo(); });
  }
  ExpressionPtr ParseModulo() {
    return ParseChain({{u"MOD", Operator::Modulo}}, [this] { return ParseIntegerDivision(); });
  }
  ExpressionPtr ParseIntegerDivision() {
    return ParseChain({{u"\\", Operator::IntegerDivide}}, [this] { return ParseProduct(); });
  }
  ExpressionPtr ParseProduct() {
    return ParseChain({{u"*", Operator::Multiply}, {u"/", Operator::Divide}}, [this] { return ParseUnary(); });
  }

  template <class Next>
  ExpressionPtr ParseChain(std::initializer_list<BinaryLevel> operators, Next next) {
    ExpressionPtr left = next();
    for (int chained = 0;;) {
      const auto found = std::find_if(operators.begin(), operators.end(), [&](const BinaryLevel& level) {
        return tokens_.AcceptSign(level.word) || tokens_.AcceptWord(level.word);
      });
      if (found == operators.end()) return left;
      CountChain(chained);
      left = MakeOperation(found->op, std::move(left), next());
    }
  }

  ExpressionPtr ParseUnary() {
    const Nesting nesting(tokens_);
    if (tokens_.AcceptSign(u"-")) return MakeOperation(Operator::Negate, ParseUnary());
    if (tokens_.AcceptSign(u"+")) return ParseUnary();
    return ParsePower();
  }

  ExpressionPtr ParsePower() {
    ExpressionPtr left = ParsePrimary();
    int chained = 0;
    while (tokens_.AcceptSign(u"^")) {
      CountChain(chained);
      const bool negative = tokens_.AcceptSign(u"-");
      ExpressionPtr right = ParsePrimary();
      if (negative) right = MakeOperation(Operator::Negate, std::move(right));
      left = MakeOperation(Operator::Power, std::move(left), std::move(right));
    }
    return left;
  }

  ExpressionPtr ParseNested() {
    const Nesting nesting(tokens_);
    return ParseLogical(0);
  }

  void Close() {
    if (!tokens_.AcceptSign(u")")) tokens_.Fail(u"Brak znaku ), ] lub elementu");
  }

  ExpressionPtr ParsePrimary() {
    if (tokens_.AcceptSign(u"(")) {
      if (tokens_.IsWord(u"SELECT")) return MakeSubquery(SubqueryUse::Value);
      ExpressionPtr e = ParseNested();
      Close();
      return e;
    }
    const Token token = tokens_.Peek();
    if (token.kind == TokenKind::Literal) {
      tokens_.Take();
      return MakeLiteral(token.value);
    }
    if (token.kind == TokenKind::BracketedName) return ParseName();
    if (tokens_.AcceptWord(u"EXISTS")) {
      if (!tokens_.AcceptSign(u"(") || !tokens_.IsWord(u"SELECT")) tokens_.Fail(u"Błąd składni");
      return MakeSubquery(SubqueryUse::Exists);
    }
    if (token.kind == TokenKind::Name && !IsReserved(token.text)) {
      if (ExpressionPtr constant = AcceptConstant(token.text)) return constant;
      return ParseName();
    }
    tokens_.Fail(tokens_.AtEnd() ? u"Błąd składni (brak argumentu)" : u"Błąd składni");
  }

  static bool IsReserved(std::u16string_view text) {
    const std::u16string upper = platform::UpperCase(text);
    return std::find(std::begin(kReserved), std::end(kReserved), upper) != std::end(kReserved);
  }

  ExpressionPtr AcceptConstant(std::u16string_view text) {
    const std::u16string upper = platform::UpperCase(text);
    std::optional<dao::Value> value;
    if (upper == u"TRUE" || upper == u"YES" || upper == u"ON") value = true;
    if (upper == u"FALSE" || upper == u"NO" || upper == u"OFF") value = false;
    if (upper == u"NULL") value = dao::Null{};
    if (!value) return nullptr;
    tokens_.Take();
    return MakeLiteral(*value);
  }

  ExpressionPtr ParseName() {
    auto e = std::make_unique<Expression>();
    e->kind = Expression::Kind::Name;
    e->name = tokens_.Take().text;
    if (tokens_.AcceptSign(u".") || tokens_.AcceptSign(u"!")) {
      const Token member = tokens_.Take();
      if (member.kind != TokenKind::Name && member.kind != TokenKind::BracketedName) {
        tokens_.Fail(u"Nieprawidłowe użycie znaku '.', '!' lub '()'");
      }
      e->qualifier = std::exchange(e->name, member.text);
      return e;
    }
    if (!tokens_.AcceptSign(u"(")) return e;
    e->kind = Expression::Kind::Call;
    if (tokens_.AcceptSign(u")")) return e;
    if (platform::EqualIgnoringCase(e->name, u"Count") && tokens_.AcceptSign(u"*")) {
      AddOperand(*e, MakeLiteral(true));  // counts every row
    } else {
      do {
        AddOperand(*e, ParseNested());
      } while (tokens_.AcceptSign(u","));
    }
    Close();
    return e;
  }

  TokenStream& tokens_;
};

}  // namespace

ExpressionPtr ParseExpression(TokenStream& tokens) { return Parser(tokens).ParseAll(); }

ExpressionPtr ParseExpressionText(std::u16string_view text) {
  TokenStream tokens(text);
  tokens.AcceptSign(u"=");
  ExpressionPtr expression = ParseExpression(tokens);
  if (!tokens.AtEnd()) tokens.Fail(u"Błąd składni (brak operatora)");
  return expression;
}

bool TurnIntoClockCall(Expression& name) {
  const std::u16string upper = platform::UpperCase(name.name);
  if (!name.qualifier.empty() || (upper != u"NOW" && upper != u"DATE" && upper != u"TIME")) return false;
  name.kind = Expression::Kind::Call;
  return true;
}

void BindNames(Expression& e, const NameLookup& lookup, std::vector<std::u16string>& unknown) {
  if (e.kind == Expression::Kind::Subquery) Raise(platform::kErrExpressionNotAllowed);
  if (e.kind == Expression::Kind::Name) {
    const std::optional<std::size_t> column = lookup(e.qualifier, e.name);
    if (column) {
      e.column = *column;
    } else if (!TurnIntoClockCall(e) && std::find(unknown.begin(), unknown.end(), e.name) == unknown.end()) {
      unknown.push_back(e.name);
    }
  }
  for (const ExpressionPtr& operand : e.operands) BindNames(*operand, lookup, unknown);
}

}  // namespace zimbrat::jet
