// FROM and WHERE.
#include <algorithm>

#include "jet/file/errors.h"
#include "platform/text.h"

#include "select_parser.h"

namespace zimbrat::jet {

namespace {

using namespace zimbrat::platform;

// Words that end a table's name when it has no alias.
constexpr std::u16string_view kAfterTable[] = {u"WHERE", u"ORDER", u"GROUP", u"HAVING", u"UNION", u"INNER",
                                               u"LEFT",  u"RIGHT", u"JOIN",  u"ON",     u"SET",   u"IN"};

// Of a query in FROM without an alias: no name can spell it, so two of them stand in each other's way.
constexpr std::u16string_view kNoAlias = u"[]";

class FromParser {
 public:
  FromParser(TokenStream& tokens, std::int32_t error, int& depth)
      : tokens_(tokens), error_(error), depth_(depth) {}

  FromList Run() {
    FromList list;
    do {
      list.push_back(ParseItem());
    } while (tokens_.AcceptSign(u","));
    return list;
  }

 private:
  // One join at most: what precedes a further one stands in parentheses.
  std::unique_ptr<FromItem> ParseItem() {
    std::unique_ptr<FromItem> left = ParsePrimary();
    const std::optional<JoinKind> kind = AcceptJoin();
    if (!kind) return left;
    auto join = std::make_unique<FromItem>();
    join->join = *kind;
    join->left = std::move(left);
    join->right = ParsePrimary();
    tokens_.RequireWord(u"ON", kErrJoinSyntax);
    join->on = ParseExpression(tokens_);
    depth_ = std::max(depth_, join->on->depth);
    if (IsJoinWord()) tokens_.Fail(u"Błąd składni (brak operatora)");
    return join;
  }

  bool IsJoinWord() const {
    return tokens_.IsWord(u"INNER") || tokens_.IsWord(u"LEFT") || tokens_.IsWord(u"RIGHT");
  }

  std::optional<JoinKind> AcceptJoin() {
    std::optional<JoinKind> kind;
    if (tokens_.AcceptWord(u"INNER")) {
      kind = JoinKind::Inner;
    } else if (tokens_.AcceptWord(u"LEFT")) {
      kind = JoinKind::Left;
    } else if (tokens_.AcceptWord(u"RIGHT")) {
      kind = JoinKind::Right;
    } else if (tokens_.IsWord(u"JOIN")) {
      Raise(error_);
    }
    if (!kind) return kind;
    if (*kind != JoinKind::Inner) tokens_.AcceptWord(u"OUTER");
    tokens_.RequireWord(u"JOIN", kErrJoinSyntax);
    return kind;
  }

  std::unique_ptr<FromItem> ParsePrimary() {
    auto item = std::make_unique<FromItem>();
    if (!tokens_.AcceptSign(u"(")) {
      if (EndsTable()) Raise(error_);
      item->table = tokens_.TakeName(error_);
      if (tokens_.IsSign(u".") || tokens_.IsWord(u"IN")) RaiseUnsupported(u"tabela innej bazy danych");
      item->alias = ParseAlias();
      return item;
    }
    const Nesting nesting(tokens_);
    if (tokens_.IsWord(u"SELECT")) {
      item->query = ParseQuery(tokens_);
      depth_ = std::max(depth_, item->query->depth + 1);
      tokens_.RequireSign(u")", error_);
      item->alias = ParseAlias();
      if (item->alias.empty()) item->alias = kNoAlias;
      return item;
    }
    item = ParseItem();
    tokens_.RequireSign(u")", error_);
    return item;
  }

  std::u16string ParseAlias() {
    if (tokens_.AcceptWord(u"AS")) return tokens_.TakeName(error_);
    if (!tokens_.IsName() || EndsTable()) return {};
    return tokens_.Take().text;
  }

  bool EndsTable() const {
    return std::any_of(std::begin(kAfterTable), std::end(kAfterTable),
                       [this](std::u16string_view word) { return tokens_.IsWord(word); });
  }

  TokenStream& tokens_;
  std::int32_t error_;
  int& depth_;
};

}  // namespace

FromList ParseFrom(TokenStream& tokens, std::int32_t error, int& depth) {
  return FromParser(tokens, error, depth).Run();
}

ExpressionPtr ParseWhere(TokenStream& tokens, int& depth) {
  if (!tokens.AcceptWord(u"WHERE")) return nullptr;
  if (tokens.AtEnd()) Raise(kErrWhereSyntax);
  ExpressionPtr where = ParseExpression(tokens);
  depth = std::max(depth, where->depth);
  return where;
}

}  // namespace zimbrat::jet
