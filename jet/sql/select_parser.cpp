#include "select_parser.h"

#include <algorithm>

#include "jet/file/errors.h"
#include "platform/text.h"

namespace zimbrat::jet {

namespace {

using namespace zimbrat::platform;

constexpr std::size_t kMaxUnited = 50;

class SelectParser {
 public:
  explicit SelectParser(TokenStream& tokens) : tokens_(tokens) {}

  std::shared_ptr<QueryStatement> Run() {
    const Nesting nesting(tokens_, kQueryNesting);
    query_->selects.push_back(ParseSelect());
    while (tokens_.AcceptWord(u"UNION")) {
      if (query_->selects.size() == kMaxUnited) Raise(kErrQueryTooComplex);
      if (!query_->selects.back().orderBy.empty()) Raise(kErrUnionSyntax);
      query_->keepsRepeats.push_back(tokens_.AcceptWord(u"ALL"));
      if (!tokens_.IsWord(u"SELECT")) Raise(kErrUnionSyntax);
      query_->selects.push_back(ParseSelect());
    }
    // What orders the last SELECT orders the whole.
    if (query_->selects.size() > 1) query_->orderBy = std::move(query_->selects.back().orderBy);
    return query_;
  }

 private:
  ExpressionPtr Take() {
    ExpressionPtr e = ParseExpression(tokens_);
    query_->depth = std::max(query_->depth, e->depth);
    return e;
  }

  SelectStatement ParseSelect() {
    tokens_.RequireWord(u"SELECT", kErrSelectSyntax);
    SelectStatement select;
    select.repeats = ParseRepeats();
    select.top = ParseTop();
    do {
      select.items.push_back(ParseItem());
    } while (tokens_.AcceptSign(u","));
    if (tokens_.AcceptWord(u"INTO")) {
      select.into = tokens_.TakeName(kErrSelectSyntax);
      if (tokens_.IsWord(u"IN")) RaiseUnsupported(u"tabela innej bazy danych");
    }
    if (tokens_.AcceptWord(u"FROM")) {
      select.from = ParseFrom(tokens_, kErrFromSyntax, query_->depth);
      if (tokens_.AcceptWord(u"WITH")) RaiseUnsupported(u"WITH OWNERACCESS OPTION");
    } else if (HasAll(select)) {
      Raise(tokens_.AtEnd() ? kErrNoInputTable : kErrSelectSyntax);
    } else if (!MayEnd()) {
      Raise(kErrSelectSyntax);
    }
    select.where = ParseWhere(tokens_, query_->depth);
    ParseGrouping(select);
    ParseOrder(select);
    return select;
  }

  static bool HasAll(const SelectStatement& select) {
    return std::any_of(select.items.begin(), select.items.end(),
                       [](const SelectItem& item) { return !item.expression; });
  }

  bool MayEnd() const {
    for (const std::u16string_view word : {u"WHERE", u"GROUP", u"HAVING", u"ORDER", u"UNION"}) {
      if (tokens_.IsWord(word)) return true;
    }
    return tokens_.AtEnd() || tokens_.IsSign(u")") || tokens_.IsSign(u";");
  }

  Repeats ParseRepeats() {
    if (tokens_.AcceptWord(u"DISTINCT")) return Repeats::DropEqualValues;
    if (tokens_.AcceptWord(u"DISTINCTROW")) return Repeats::DropEqualRows;
    tokens_.AcceptWord(u"ALL");
    return Repeats::Keep;
  }

  // A column may be called Top: only a number behind the word makes the clause.
  std::optional<TopClause> ParseTop() {
    if (!tokens_.IsWord(u"TOP")) return std::nullopt;
    const Token& next = tokens_.Peek(1);
    if (next.kind != TokenKind::Literal) {
      const bool isColumn = next.kind == TokenKind::End || tokens_.IsSign(u",", 1) || tokens_.IsSign(u".", 1) ||
                            tokens_.IsWord(u"FROM", 1) || tokens_.IsWord(u"AS", 1);
      if (!isColumn) Raise(kErrTopSyntax);
      return std::nullopt;
    }
    tokens_.Take();
    const dao::Value value = tokens_.Take().value;
    const auto* count = std::get_if<std::int32_t>(&value);
    if (!count || *count < 0) Raise(kErrTopSyntax);
    TopClause top{static_cast<double>(*count), tokens_.AcceptWord(u"PERCENT")};
    if (top.percent && top.count > 100) Raise(kErrTopSyntax);
    return top;
  }

  SelectItem ParseItem() {
    SelectItem item;
    if (tokens_.AcceptSign(u"*")) return item;
    if (tokens_.IsName() && tokens_.IsSign(u".", 1) && tokens_.IsSign(u"*", 2)) {
      item.qualifier = tokens_.Take().text;
      tokens_.Take();
      tokens_.Take();
      return item;
    }
    for (const std::u16string_view word : {u"FROM", u"INTO", u"WHERE"}) {
      if (tokens_.IsWord(word)) Raise(kErrSelectSyntax);
    }
    if (tokens_.AtEnd()) Raise(kErrSelectSyntax);
    item.expression = Take();
    if (tokens_.AcceptWord(u"AS")) item.alias = tokens_.TakeName(kErrSelectSyntax);
    return item;
  }

  void ParseGrouping(SelectStatement& select) {
    if (tokens_.AcceptWord(u"GROUP")) {
      if (!tokens_.AcceptWord(u"BY") || tokens_.AtEnd()) Raise(kErrGroupBySyntax);
      do {
        select.groupBy.push_back(Take());
      } while (tokens_.AcceptSign(u","));
    }
    if (!tokens_.AcceptWord(u"HAVING")) return;
    if (tokens_.AtEnd()) Raise(kErrHavingSyntax);
    select.having = Take();
  }

  void ParseOrder(SelectStatement& select) {
    if (!tokens_.AcceptWord(u"ORDER")) return;
    if (!tokens_.AcceptWord(u"BY") || tokens_.AtEnd()) Raise(kErrOrderBySyntax);
    do {
      OrderItem item;
      item.expression = Take();
      item.descending = tokens_.AcceptWord(u"DESC");
      if (!item.descending) tokens_.AcceptWord(u"ASC");
      select.orderBy.push_back(std::move(item));
    } while (tokens_.AcceptSign(u","));
  }

  TokenStream& tokens_;
  std::shared_ptr<QueryStatement> query_ = std::make_shared<QueryStatement>();
};

}  // namespace

std::shared_ptr<QueryStatement> ParseQuery(TokenStream& tokens) { return SelectParser(tokens).Run(); }

}  // namespace zimbrat::jet
