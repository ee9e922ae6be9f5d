#include "jet/sql/query.h"

#include <algorithm>

#include "jet/file/errors.h"
#include "jet/sql/defaults.h"
#include "platform/text.h"

#include "changes.h"
#include "ddl.h"

namespace zimbrat::jet {

namespace {

// Blanks around a text, and a semicolon behind it, do not matter.
std::u16string_view Trimmed(std::u16string_view text) {
  constexpr std::u16string_view blanks = u" \t\r\n";
  text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
  const std::size_t end = text.find_last_not_of(u" \t\r\n;");
  return text.substr(0, end == text.npos ? 0 : end + 1);
}

// A name may hold blanks, so only what begins as a statement counts as one.
bool IsTableName(std::u16string_view source) {
  const std::u16string_view first = source.substr(0, source.find_first_of(u" \t\r\n*('\"[#-+"));
  for (const std::u16string_view verb : {u"SELECT", u"DELETE", u"INSERT", u"UPDATE", u"CREATE", u"ALTER", u"DROP",
                                         u"PARAMETERS", u"TRANSFORM"}) {
    if (first.size() < source.size() && platform::EqualIgnoringCase(first, verb)) return false;
  }
  return true;
}

// A name as it stands in FROM.
std::u16string_view PlainName(std::u16string_view table) {
  const bool bracketed = table.size() > 2 && table.front() == u'[' && table.back() == u']';
  return bracketed ? table.substr(1, table.size() - 2) : table;
}

QueryStatement AllOf(std::u16string_view table) {
  SelectStatement select;
  select.items.emplace_back();
  auto item = std::make_unique<FromItem>();
  item->table = table;
  select.from.push_back(std::move(item));
  QueryStatement query;
  query.selects.push_back(std::move(select));
  return query;
}

struct Carrier {
  ChangeRun& run;
  const std::function<void(PageNumber)>& requireUnused;

  std::int32_t operator()(QueryStatement& query) const {
    if (query.selects.front().into.empty()) Raise(platform::kErrExecuteSelect);
    return RunSelectInto(query, run);
  }
  std::int32_t operator()(InsertStatement& statement) const { return RunInsert(statement, run); }
  std::int32_t operator()(UpdateStatement& statement) const { return RunUpdate(statement, run); }
  std::int32_t operator()(DeleteStatement& statement) const { return RunDelete(statement, run); }
  template <class Ddl>
  std::int32_t operator()(Ddl& statement) const {
    StructureChange(run.database, requireUnused).Run(statement);
    return 0;
  }
};

}  // namespace

QueryRunner::QueryRunner(DatabaseFile& database) : database_(database), rows_(database.GetCatalog()) {
  rows_.checkRules = [this](Table& table, const std::vector<dao::Value>& values) {
    CheckValidationRules(database_.GetCatalog(), table, values, database_.GetClock().Now());
  };
}

QueryResult QueryRunner::OpenTable(std::u16string_view text) {
  const std::u16string_view source = Trimmed(text);
  if (!IsTableName(source)) Raise(platform::kErrInvalidOperation);
  const std::u16string_view name = PlainName(source);
  if (!database_.GetCatalog().FindTableOrQuery(name)) Raise(platform::kErrObjectNotFound, name);
  return Open(text);
}

QueryResult QueryRunner::Open(std::u16string_view text) {
  const std::u16string_view source = Trimmed(text);
  Statement statement = IsTableName(source) ? Statement(AllOf(PlainName(source))) : ParseStatement(text);
  auto* query = std::get_if<QueryStatement>(&statement);
  if (!query) Raise(platform::kErrInvalidOperation);
  Compilation compilation{database_, database_.GetClock().Now()};
  QueryResult result;
  result.plan = CompileQuery(std::make_shared<QueryStatement>(std::move(*query)), nullptr, compilation);
  compilation.RequireAllKnown();
  result.places = std::make_shared<PlaceList>(FindPlaces(*result.plan, database_.Pages()));
  result.tables = std::move(compilation.reads);
  return result;
}

std::int32_t QueryRunner::Execute(std::u16string_view text, bool failOnError) {
  const std::u16string_view source = platform::TrimBlanks(text);
  const bool oneWord = source.find_first_of(u" \t\r\n(;") == source.npos;
  if (oneWord && !source.empty() && !platform::EqualIgnoringCase(source, u"SELECT")) {
    Raise(platform::kErrTableNotFound, source);
  }
  Statement statement = ParseStatement(source);
  ChangeRun run{database_, rows_, database_.GetClock().Now(), failOnError};
  return std::visit(Carrier{run, requireUnused}, statement);
}

}  // namespace zimbrat::jet
