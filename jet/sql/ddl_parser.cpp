#include "ddl_parser.h"

#include <algorithm>

#include "jet/file/errors.h"
#include "platform/dao.h"
#include "platform/text.h"

namespace zimbrat::jet {

namespace {

using namespace zimbrat::platform;

struct TypeName {
  std::u16string_view name;
  std::int16_t type;
  std::int32_t attributes = 0;
};

constexpr std::int32_t kCounter = dao::dbFixedField | dao::dbAutoIncrField;

constexpr TypeName kTypes[] = {
    {u"BIT", dao::dbBoolean},          {u"YESNO", dao::dbBoolean},
    {u"BOOLEAN", dao::dbBoolean},      {u"LOGICAL", dao::dbBoolean},
    {u"LOGICAL1", dao::dbBoolean},     {u"BYTE", dao::dbByte},
    {u"TINYINT", dao::dbByte},         {u"INTEGER1", dao::dbByte},
    {u"SHORT", dao::dbInteger},        {u"SMALLINT", dao::dbInteger},
    {u"INTEGER2", dao::dbInteger},     {u"LONG", dao::dbLong},
    {u"INTEGER", dao::dbLong},         {u"INT", dao::dbLong},
    {u"INTEGER4", dao::dbLong},        {u"COUNTER", dao::dbLong, kCounter},
    {u"AUTOINCREMENT", dao::dbLong, kCounter},
    {u"CURRENCY", dao::dbCurrency},    {u"MONEY", dao::dbCurrency},
    {u"SINGLE", dao::dbSingle},        {u"REAL", dao::dbSingle},
    {u"FLOAT4", dao::dbSingle},        {u"IEEESINGLE", dao::dbSingle},
    {u"DOUBLE", dao::dbDouble},        {u"FLOAT", dao::dbDouble},
    {u"FLOAT8", dao::dbDouble},        {u"IEEEDOUBLE", dao::dbDouble},
    {u"NUMBER", dao::dbDouble},        {u"NUMERIC", dao::dbDouble},
    {u"DATETIME", dao::dbDate},        {u"DATE", dao::dbDate},
    {u"TIME", dao::dbDate},            {u"TIMESTAMP", dao::dbDate},
    {u"BINARY", dao::dbBinary},        {u"VARBINARY", dao::dbBinary},
    {u"TEXT", dao::dbText},            {u"VARCHAR", dao::dbText},
    {u"STRING", dao::dbText},          {u"ALPHANUMERIC", dao::dbText},
    {u"CHAR", dao::dbText, dao::dbFixedField},
    {u"CHARACTER", dao::dbText, dao::dbFixedField},
    {u"LONGBINARY", dao::dbLongBinary}, {u"IMAGE", dao::dbLongBinary},
    {u"OLEOBJECT", dao::dbLongBinary}, {u"GENERAL", dao::dbLongBinary},
    {u"MEMO", dao::dbMemo},            {u"LONGTEXT", dao::dbMemo},
    {u"LONGCHAR", dao::dbMemo},        {u"NOTE", dao::dbMemo},
    {u"GUID", dao::dbGUID},            {u"UNIQUEIDENTIFIER", dao::dbGUID},
};

constexpr std::int32_t kDefaultTextSize = 255;
constexpr std::int32_t kDefaultBinarySize = 510;

const TypeName* FindType(std::u16string_view word) {
  const auto* found = std::find_if(std::begin(kTypes), std::end(kTypes),
                                   [&](const TypeName& type) { return EqualIgnoringCase(type.name, word); });
  return found == std::end(kTypes) ? nullptr : found;
}

class DdlParser {
 public:
  explicit DdlParser(TokenStream& tokens) : tokens_(tokens) {}

  Statement ParseCreate() {
    if (tokens_.AcceptWord(u"TABLE")) return ParseCreateTable();
    const bool unique = tokens_.AcceptWord(u"UNIQUE");
    if (tokens_.AcceptWord(u"INDEX")) return ParseCreateIndex(unique);
    for (const std::u16string_view word : {u"VIEW", u"PROCEDURE", u"USER", u"GROUP"}) {
      if (tokens_.IsWord(word)) RaiseUnsupported(word);
    }
    Raise(unique ? kErrCreateIndexSyntax : kErrCreateTableSyntax);
  }

  Statement ParseAlter() {
    tokens_.RequireWord(u"TABLE", kErrAlterTableSyntax);
    AlterTableStatement statement;
    statement.table = tokens_.TakeName(kErrAlterTableSyntax);
    if (tokens_.AcceptWord(u"ADD")) {
      ParseAdd(statement);
    } else if (tokens_.AcceptWord(u"ALTER")) {
      tokens_.AcceptWord(u"COLUMN");
      std::vector<ConstraintSpec> constraints;
      AlterColumn change{ParseField(constraints)};
      if (!constraints.empty()) Raise(kErrAlterTableSyntax);
      statement.change = std::move(change);
    } else if (tokens_.AcceptWord(u"DROP")) {
      if (tokens_.AcceptWord(u"CONSTRAINT")) {
        statement.change = DropConstraint{tokens_.TakeName(kErrAlterTableSyntax)};
      } else {
        tokens_.AcceptWord(u"COLUMN");
        statement.change = DropColumn{tokens_.TakeName(kErrAlterTableSyntax)};
      }
    } else {
      Raise(kErrAlterTableSyntax);
    }
    return statement;
  }

  Statement ParseDrop() {
    if (tokens_.AcceptWord(u"TABLE")) return DropTableStatement{tokens_.TakeName(kErrDropSyntax)};
    for (const std::u16string_view word : {u"VIEW", u"PROCEDURE", u"USER", u"GROUP"}) {
      if (tokens_.IsWord(word)) RaiseUnsupported(word);
    }
    tokens_.RequireWord(u"INDEX", kErrDropSyntax);
    DropIndexStatement statement;
    statement.index = tokens_.TakeName(kErrDropIndexSyntax);
    tokens_.RequireWord(u"ON", kErrDropIndexSyntax);
    statement.table = tokens_.TakeName(kErrDropIndexSyntax);
    return statement;
  }

 private:
  Statement ParseCreateTable() {
    CreateTableStatement statement;
    statement.table = tokens_.TakeName(kErrCreateTableSyntax);
    tokens_.RequireSign(u"(", kErrCreateTableSyntax);
    do {
      if (IsTableConstraint()) {
        statement.constraints.push_back(ParseConstraint({}));
      } else {
        statement.fields.push_back(ParseField(statement.constraints));
      }
    } while (tokens_.AcceptSign(u","));
    tokens_.RequireSign(u")", kErrCreateTableSyntax);
    return statement;
  }

  void ParseAdd(AlterTableStatement& statement) {
    if (!tokens_.IsWord(u"COLUMN") && IsTableConstraint()) {
      statement.change = AddConstraint{ParseConstraint({})};
      return;
    }
    tokens_.AcceptWord(u"COLUMN");
    AddColumn change;
    change.field = ParseField(change.constraints);
    statement.change = std::move(change);
  }

  // A column may bear such a name in brackets only.
  bool IsTableConstraint() const {
    for (const std::u16string_view word : {u"CONSTRAINT", u"PRIMARY", u"FOREIGN", u"UNIQUE", u"CHECK"}) {
      if (tokens_.IsWord(word)) return true;
    }
    return false;
  }

  FieldSpec ParseField(std::vector<ConstraintSpec>& constraints) {
    FieldSpec field;
    field.name = tokens_.TakeName(kErrFieldDefinitionSyntax);
    const TypeName* type = tokens_.IsName() ? FindType(tokens_.Peek().text) : nullptr;
    if (!type) Raise(kErrFieldDefinitionSyntax);
    tokens_.Take();
    field.type = type->type;
    field.attributes = type->attributes;
    field.allowZeroLength = field.type == dao::dbText || field.type == dao::dbMemo;
    ParseSize(field);
    while (ParseFieldOption(field, constraints)) {
    }
    return field;
  }

  void ParseSize(FieldSpec& field) {
    if (field.type == dao::dbText) field.size = kDefaultTextSize;
    if (field.type == dao::dbBinary) field.size = kDefaultBinarySize;
    if (!tokens_.AcceptSign(u"(")) return;
    const dao::Value value = tokens_.Take().value;
    const auto* size = std::get_if<std::int32_t>(&value);
    if (!size || *size < 1) Raise(kErrFieldDefinitionSyntax);
    if (field.type == dao::dbText || field.type == dao::dbBinary) {
      field.size = *size;
    } else if (field.type != dao::dbMemo && field.type != dao::dbLongBinary) {
      RaiseUnsupported(u"długość, dokładność lub początek licznika w definicji pola");
    }
    tokens_.RequireSign(u")", kErrFieldDefinitionSyntax);
  }

  bool ParseFieldOption(FieldSpec& field, std::vector<ConstraintSpec>& constraints) {
    if (tokens_.AcceptWord(u"NOT")) {
      tokens_.RequireWord(u"NULL", kErrFieldDefinitionSyntax);
      field.required = true;
      return true;
    }
    if (tokens_.AcceptWord(u"NULL")) return true;
    if (tokens_.AcceptWord(u"WITH")) {
      for (const std::u16string_view word : {u"COMPRESSION", u"COMP"}) {
        if (tokens_.AcceptWord(word)) return true;
      }
      Raise(kErrFieldDefinitionSyntax);
    }
    if (tokens_.IsWord(u"DEFAULT") || tokens_.IsWord(u"CHECK")) RaiseUnsupported(tokens_.Peek().text);
    const bool named = tokens_.IsWord(u"CONSTRAINT");
    if (!named && !tokens_.IsWord(u"PRIMARY") && !tokens_.IsWord(u"UNIQUE") && !tokens_.IsWord(u"REFERENCES")) {
      return false;
    }
    constraints.push_back(ParseConstraint(field.name));
    return true;
  }

  // Of one column when `column` is given, else of the table.
  ConstraintSpec ParseConstraint(std::u16string_view column) {
    ConstraintSpec constraint;
    if (tokens_.AcceptWord(u"CONSTRAINT")) constraint.name = tokens_.TakeName(kErrConstraintSyntax);
    if (!column.empty()) constraint.columns.emplace_back(column);
    if (tokens_.AcceptWord(u"PRIMARY")) {
      tokens_.RequireWord(u"KEY", kErrConstraintSyntax);
    } else if (tokens_.AcceptWord(u"UNIQUE")) {
      constraint.kind = ConstraintSpec::Kind::Unique;
    } else if (tokens_.IsWord(u"CHECK") || tokens_.IsWord(u"NOT")) {
      RaiseUnsupported(u"CONSTRAINT … " + tokens_.Peek().text);
    } else {
      constraint.kind = ConstraintSpec::Kind::Foreign;
      if (column.empty()) {
        tokens_.RequireWord(u"FOREIGN", kErrConstraintSyntax);
        tokens_.RequireWord(u"KEY", kErrConstraintSyntax);
      }
    }
    if (column.empty()) constraint.columns = ParseNames();
    if (constraint.kind == ConstraintSpec::Kind::Foreign) ParseReference(constraint);
    return constraint;
  }

  void ParseReference(ConstraintSpec& constraint) {
    tokens_.RequireWord(u"REFERENCES", kErrConstraintSyntax);
    constraint.otherTable = tokens_.TakeName(kErrConstraintSyntax);
    if (tokens_.IsSign(u"(")) constraint.otherColumns = ParseNames();
    // Cascades are not of this dialect; a relationship with them is made through DAO.
    if (tokens_.IsWord(u"ON")) RaiseUnsupported(u"REFERENCES … ON UPDATE, ON DELETE");
  }

  std::vector<std::u16string> ParseNames() {
    std::vector<std::u16string> names;
    tokens_.RequireSign(u"(", kErrConstraintSyntax);
    do {
      names.push_back(tokens_.TakeName(kErrConstraintSyntax));
    } while (tokens_.AcceptSign(u","));
    tokens_.RequireSign(u")", kErrConstraintSyntax);
    return names;
  }

  Statement ParseCreateIndex(bool unique) {
    CreateIndexStatement statement;
    statement.index.unique = unique;
    statement.index.name = tokens_.TakeName(kErrCreateIndexSyntax);
    tokens_.RequireWord(u"ON", kErrCreateIndexSyntax);
    statement.table = tokens_.TakeName(kErrCreateIndexSyntax);
    tokens_.RequireSign(u"(", kErrCreateIndexSyntax);
    do {
      IndexFieldSpec field{tokens_.TakeName(kErrCreateIndexSyntax), tokens_.AcceptWord(u"DESC")};
      if (!field.descending) tokens_.AcceptWord(u"ASC");
      statement.index.fields.push_back(std::move(field));
    } while (tokens_.AcceptSign(u","));
    tokens_.RequireSign(u")", kErrCreateIndexSyntax);
    if (tokens_.AcceptWord(u"WITH")) ParseIndexOption(statement.index);
    return statement;
  }

  void ParseIndexOption(NewIndex& index) {
    if (tokens_.AcceptWord(u"PRIMARY")) {
      index.primary = true;
    } else if (tokens_.AcceptWord(u"DISALLOW")) {
      tokens_.RequireWord(u"NULL", kErrCreateIndexSyntax);
      index.required = true;
    } else if (tokens_.AcceptWord(u"IGNORE")) {
      tokens_.RequireWord(u"NULL", kErrCreateIndexSyntax);
      index.ignoreNulls = true;
    } else {
      Raise(kErrCreateIndexSyntax);
    }
  }

  TokenStream& tokens_;
};

}  // namespace

Statement ParseCreate(TokenStream& tokens) { return DdlParser(tokens).ParseCreate(); }
Statement ParseAlter(TokenStream& tokens) { return DdlParser(tokens).ParseAlter(); }
Statement ParseDrop(TokenStream& tokens) { return DdlParser(tokens).ParseDrop(); }

}  // namespace zimbrat::jet
