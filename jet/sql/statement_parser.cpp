#include <algorithm>

#include "jet/file/errors.h"
#include "jet/sql/statement.h"

#include "ddl_parser.h"
#include "select_parser.h"

namespace zimbrat::jet {

namespace {

using namespace zimbrat::platform;

class Parser {
 public:
  explicit Parser(std::u16string_view text) : tokens_(text) {}

  Statement Run() {
    Statement statement = ParseOne();
    tokens_.AcceptSign(u";");
    if (!tokens_.AtEnd()) Raise(kErrAfterEndOfSql);
    return statement;
  }

 private:
  Statement ParseOne() {
    if (tokens_.IsWord(u"SELECT")) return std::move(*ParseQuery(tokens_));
    if (tokens_.AcceptWord(u"DELETE")) return ParseDelete();
    if (tokens_.AcceptWord(u"INSERT")) return ParseInsert();
    if (tokens_.AcceptWord(u"UPDATE")) return ParseUpdate();
    if (tokens_.AcceptWord(u"CREATE")) return ParseCreate(tokens_);
    if (tokens_.AcceptWord(u"ALTER")) return ParseAlter(tokens_);
    if (tokens_.AcceptWord(u"DROP")) return ParseDrop(tokens_);
    for (const std::u16string_view word : {u"PARAMETERS", u"TRANSFORM"}) {
      if (tokens_.IsWord(word)) RaiseUnsupported(word);
    }
    Raise(kErrInvalidSql);
  }

  DeleteStatement ParseDelete() {
    DeleteStatement statement;
    tokens_.AcceptWord(u"DISTINCTROW");  // a row goes once in any case
    if (!tokens_.AcceptSign(u"*") && !tokens_.IsWord(u"FROM")) {
      statement.target = tokens_.TakeName(kErrDeleteSyntax);
      tokens_.RequireSign(u".", kErrDeleteSyntax);
      tokens_.RequireSign(u"*", kErrDeleteSyntax);
    }
    tokens_.RequireWord(u"FROM", kErrDeleteSyntax);
    statement.from = ParseFrom(tokens_, kErrFromSyntax, depth_);
    statement.where = ParseWhere(tokens_, depth_);
    return statement;
  }

  InsertStatement ParseInsert() {
    InsertStatement statement;
    tokens_.RequireWord(u"INTO", kErrInsertSyntax);
    statement.table = tokens_.TakeName(kErrInsertSyntax);
    if (tokens_.IsWord(u"IN")) RaiseUnsupported(u"tabela innej bazy danych");
    if (tokens_.AcceptSign(u"(")) {
      do {
        statement.columns.push_back(tokens_.TakeName(kErrInsertSyntax));
      } while (tokens_.AcceptSign(u","));
      tokens_.RequireSign(u")", kErrInsertSyntax);
    }
    if (tokens_.IsWord(u"SELECT")) {
      statement.query = ParseQuery(tokens_);
      return statement;
    }
    tokens_.RequireWord(u"VALUES", kErrInsertSyntax);
    tokens_.RequireSign(u"(", kErrInsertSyntax);
    do {
      statement.values.push_back(ParseExpression(tokens_));
    } while (tokens_.AcceptSign(u","));
    tokens_.RequireSign(u")", kErrInsertSyntax);
    return statement;
  }

  UpdateStatement ParseUpdate() {
    UpdateStatement statement;
    statement.from = ParseFrom(tokens_, kErrUpdateSyntax, depth_);
    tokens_.RequireWord(u"SET", kErrUpdateSyntax);
    do {
      Assignment assignment;
      assignment.column = tokens_.TakeName(kErrUpdateSyntax);
      if (tokens_.AcceptSign(u".") || tokens_.AcceptSign(u"!")) {
        assignment.qualifier = std::exchange(assignment.column, tokens_.TakeName(kErrUpdateSyntax));
      }
      tokens_.RequireSign(u"=", kErrUpdateSyntax);
      assignment.value = ParseExpression(tokens_);
      statement.assignments.push_back(std::move(assignment));
    } while (tokens_.AcceptSign(u","));
    if (tokens_.IsWord(u"FROM")) Raise(kErrUpdateSyntax);
    statement.where = ParseWhere(tokens_, depth_);
    return statement;
  }

  TokenStream tokens_;
  int depth_ = 0;
};

}  // namespace

Statement ParseStatement(std::u16string_view text) { return Parser(text).Run(); }

void RaiseUnsupported(std::u16string_view what) {
  throw RunTimeError(kErrNotSupported, {}, dao::ErrorText(kErrNotSupported) + u" (" + std::u16string(what) + u")");
}

}  // namespace zimbrat::jet
