#include "jet/file/errors.h"
#include "jet/sql/statement.h"

namespace zimbrat::jet {

namespace {

using namespace zimbrat::platform;

bool IsName(const Token& token) {
  return token.kind == TokenKind::Name || token.kind == TokenKind::BracketedName;
}

class Parser {
 public:
  explicit Parser(std::u16string_view text) : tokens_(text) {}

  Statement Run() {
    if (tokens_.AcceptWord(u"SELECT")) return Finish(ParseSelect());
    if (tokens_.AcceptWord(u"DELETE")) return Finish(ParseDelete());
    if (tokens_.AcceptWord(u"INSERT")) return Finish(ParseInsert());
    if (tokens_.AcceptWord(u"UPDATE")) return Finish(ParseUpdate());
    for (const std::u16string_view word : {u"CREATE", u"ALTER", u"DROP", u"PARAMETERS", u"TRANSFORM"}) {
      if (tokens_.IsWord(word)) Raise(kErrNotSupported);
    }
    Raise(kErrInvalidSql);
  }

 private:
  template <class T>
  Statement Finish(T statement) {
    tokens_.AcceptSign(u";");
    if (!tokens_.AtEnd()) Raise(kErrAfterEndOfSql);
    return statement;
  }

  std::u16string TakeName(std::int32_t error) {
    if (!IsName(tokens_.Peek())) Raise(error);
    return tokens_.Take().text;
  }

  // What the full dialect has and this engine does not carry out.
  void RefuseWords(std::initializer_list<std::u16string_view> words) {
    for (const std::u16string_view word : words) {
      if (tokens_.IsWord(word)) Raise(kErrNotSupported);
    }
  }

  SelectStatement ParseSelect() {
    SelectStatement select;
    RefuseWords({u"DISTINCT", u"DISTINCTROW", u"TOP"});
    tokens_.AcceptWord(u"ALL");
    if (!tokens_.AcceptSign(u"*")) {
      do {
        select.columns.push_back(TakeName(kErrSelectSyntax));
        if (tokens_.AcceptSign(u".")) {
          if (tokens_.AcceptSign(u"*")) {
            select.columns.clear();
          } else {
            select.columns.back() = TakeName(kErrSelectSyntax);
          }
        }
        if (tokens_.IsSign(u"(") || tokens_.IsWord(u"AS")) Raise(kErrNotSupported);
      } while (tokens_.AcceptSign(u","));
    }
    if (!tokens_.AcceptWord(u"FROM")) {
      Raise(tokens_.AtEnd() ? kErrNoInputTable : kErrSelectSyntax);
    }
    select.table = TakeName(kErrFromSyntax);
    select.alias = ParseAlias({u"WHERE", u"ORDER", u"GROUP", u"INNER", u"LEFT", u"RIGHT", u"UNION", u"HAVING"});
    if (tokens_.IsSign(u",")) Raise(kErrNotSupported);
    RefuseWords({u"INNER", u"LEFT", u"RIGHT"});
    select.where = ParseWhere();
    RefuseWords({u"ORDER", u"GROUP", u"HAVING", u"UNION"});
    return select;
  }

  std::u16string ParseAlias(std::initializer_list<std::u16string_view> keywords) {
    if (tokens_.AcceptWord(u"AS")) return TakeName(kErrFromSyntax);
    if (!IsName(tokens_.Peek())) return {};
    for (const std::u16string_view word : keywords) {
      if (tokens_.IsWord(word)) return {};
    }
    return tokens_.Take().text;
  }

  ExpressionPtr ParseWhere() {
    if (!tokens_.AcceptWord(u"WHERE")) return nullptr;
    if (tokens_.AtEnd()) Raise(kErrWhereSyntax);
    return ParseExpression(tokens_);
  }

  DeleteStatement ParseDelete() {
    DeleteStatement statement;
    RefuseWords({u"DISTINCTROW"});
    if (!tokens_.AcceptSign(u"*") && !tokens_.IsWord(u"FROM")) {
      TakeName(kErrDeleteSyntax);
      if (!tokens_.AcceptSign(u".") || !tokens_.AcceptSign(u"*")) Raise(kErrDeleteSyntax);
    }
    if (!tokens_.AcceptWord(u"FROM")) Raise(kErrDeleteSyntax);
    statement.table = TakeName(kErrFromSyntax);
    RefuseWords({u"INNER", u"LEFT", u"RIGHT"});
    statement.where = ParseWhere();
    return statement;
  }

  InsertStatement ParseInsert() {
    InsertStatement statement;
    if (!tokens_.AcceptWord(u"INTO")) Raise(kErrInsertSyntax);
    statement.table = TakeName(kErrInsertSyntax);
    if (tokens_.AcceptSign(u"(")) {
      do {
        statement.columns.push_back(TakeName(kErrInsertSyntax));
      } while (tokens_.AcceptSign(u","));
      if (!tokens_.AcceptSign(u")")) Raise(kErrInsertSyntax);
    }
    RefuseWords({u"SELECT"});
    if (!tokens_.AcceptWord(u"VALUES") || !tokens_.AcceptSign(u"(")) Raise(kErrInsertSyntax);
    do {
      statement.values.push_back(ParseExpression(tokens_));
    } while (tokens_.AcceptSign(u","));
    if (!tokens_.AcceptSign(u")")) Raise(kErrInsertSyntax);
    return statement;
  }

  UpdateStatement ParseUpdate() {
    UpdateStatement statement;
    statement.table = TakeName(kErrUpdateSyntax);
    RefuseWords({u"INNER", u"LEFT", u"RIGHT"});
    statement.alias = ParseAlias({u"SET"});
    if (tokens_.IsSign(u",")) Raise(kErrNotSupported);
    if (!tokens_.AcceptWord(u"SET")) Raise(kErrUpdateSyntax);
    do {
      std::u16string column = TakeName(kErrUpdateSyntax);
      if (tokens_.AcceptSign(u".")) column = TakeName(kErrUpdateSyntax);
      if (!tokens_.AcceptSign(u"=")) Raise(kErrUpdateSyntax);
      statement.assignments.emplace_back(std::move(column), ParseExpression(tokens_));
    } while (tokens_.AcceptSign(u","));
    if (tokens_.IsWord(u"FROM")) Raise(kErrUpdateSyntax);
    statement.where = ParseWhere();
    return statement;
  }

  TokenStream tokens_;
};

}  // namespace

Statement ParseStatement(std::u16string_view text) { return Parser(text).Run(); }

}  // namespace zimbrat::jet
