#include "jet/sql/query.h"

#include <algorithm>

#include "jet/file/errors.h"
#include "jet/index/collation.h"
#include "jet/sql/defaults.h"
#include "jet/table/convert.h"
#include "platform/text.h"

namespace zimbrat::jet {

namespace {

using platform::RunTimeError;

// A name may hold blanks, so only what begins as a statement counts as one.
bool IsTableName(std::u16string_view source) {
  const std::u16string_view first = source.substr(0, source.find_first_of(u" \t\r\n"));
  for (const std::u16string_view verb : {u"SELECT", u"DELETE", u"INSERT", u"UPDATE"}) {
    if (first.size() < source.size() && platform::EqualIgnoringCase(first, verb)) return false;
  }
  return true;
}

// What concerns one row alone; the disk, damage and memory concern the statement.
bool IsRowError(std::int32_t number) {
  constexpr std::int32_t numbers[] = {
      platform::kErrOverflow,       platform::kErrDivisionByZero,   platform::kErrInvalidCall,
      platform::kErrTypeMismatch,   platform::kErrInvalidNull,      platform::kErrDuplicateKey,
      platform::kErrRecordTooLarge, platform::kErrNullInIndex,      platform::kErrFieldTooSmall,
      platform::kErrRelatedRecords, platform::kErrRelatedRecordRequired,
      platform::kErrRequired,       platform::kErrZeroLength,       platform::kErrTableRule,
      platform::kErrFieldRule,      platform::kErrDataConversion,   platform::kErrCriteriaMismatch};
  return std::find(std::begin(numbers), std::end(numbers), number) != std::end(numbers);
}

dao::Value StoredValue(const Column& column, const dao::Value& value) {
  try {
    return ConvertToColumn(column, value);
  } catch (const RunTimeError& error) {
    // A literal of a wrong type in a statement is the criteria's error.
    if (error.Number() == platform::kErrDataConversion) Raise(platform::kErrCriteriaMismatch);
    throw;
  }
}

std::size_t RequireColumn(Table& table, std::u16string_view name, std::int32_t error) {
  const auto column = table.Definition().FindColumn(name);
  if (!column) Raise(error, error == platform::kErrTooFewParameters ? u"1" : name);
  return *column;
}

}  // namespace

QueryRunner::QueryRunner(DatabaseFile& database) : database_(database), rows_(database.GetCatalog()) {
  rows_.checkRules = [this](Table& table, const std::vector<dao::Value>& values) {
    CheckValidationRules(database_.GetCatalog(), table, values, database_.GetClock().Now());
  };
}

std::shared_ptr<Table> QueryRunner::OpenTable(std::u16string_view name, std::int32_t error) {
  const CatalogObject* object = database_.GetCatalog().FindTableOrQuery(name);
  if (!object) Raise(error, name);
  // Links and stored queries lead outside of what this engine reads.
  if (!object->Is(ObjectType::Table)) Raise(platform::kErrNotSupported);
  return database_.GetCatalog().Open(static_cast<PageNumber>(object->id));
}

std::shared_ptr<Table> QueryRunner::OpenForChange(std::u16string_view name, std::int32_t error) {
  std::shared_ptr<Table> table = OpenTable(name, error);
  const CatalogObject* object = database_.GetCatalog().FindTableByPage(table->Page());
  if (!object || object->IsSystem()) Raise(platform::kErrReadOnly);
  return table;
}

void QueryRunner::Bind(Expression& expression, Table& table, std::u16string_view alias) {
  const NameLookup lookup = [&](std::u16string_view qualifier,
                                std::u16string_view name) -> std::optional<std::size_t> {
    const bool own = qualifier.empty() || EqualText(qualifier, alias.empty() ? table.Name() : alias);
    if (!own) return std::nullopt;
    return table.Definition().FindColumn(name);
  };
  std::vector<std::u16string> unknown;
  BindNames(expression, lookup, unknown);
  if (!unknown.empty()) {
    Raise(platform::kErrTooFewParameters, platform::DecimalText(static_cast<long long>(unknown.size())));
  }
}

std::vector<RowPointer> QueryRunner::Find(Table& table, std::u16string_view alias, Expression* where,
                                          double now) {
  if (where) Bind(*where, table, alias);
  std::vector<RowPointer> rows;
  RowScan scan(table);
  const EvaluationContext context{
      now, [&](std::size_t column) { return table.ValueOf(column, scan.Fields()[column]); }};
  while (scan.Next()) {
    if (!where || IsTrue(Evaluate(*where, context))) rows.push_back(scan.Place());
  }
  return rows;
}

QueryResult QueryRunner::Open(std::u16string_view text) {
  std::u16string_view source = platform::TrimBlanks(text);
  QueryResult result;
  if (IsTableName(source)) {
    if (source.size() > 2 && source.front() == u'[' && source.back() == u']') {
      source = source.substr(1, source.size() - 2);
    }
    result.table = OpenTable(source, platform::kErrTableNotFound);
    result.rows = Find(*result.table, {}, nullptr, 0);
  } else {
    Statement statement = ParseStatement(source);
    auto* select = std::get_if<SelectStatement>(&statement);
    if (!select) Raise(platform::kErrInvalidOperation);
    result.table = OpenTable(select->table, platform::kErrTableNotFound);
    for (const std::u16string& name : select->columns) {
      result.columns.push_back(RequireColumn(*result.table, name, platform::kErrTooFewParameters));
    }
    result.rows = Find(*result.table, select->alias, select->where.get(), database_.GetClock().Now());
  }
  const bool all = result.columns.empty();
  for (std::size_t i = 0; all && i < result.table->Definition().columns.size(); ++i) {
    result.columns.push_back(i);
  }
  return result;
}

std::int32_t QueryRunner::Execute(std::u16string_view text, bool failOnError) {
  const std::u16string_view source = platform::TrimBlanks(text);
  const bool oneWord = source.find_first_of(u" \t\r\n(;") == source.npos;
  if (oneWord && !source.empty() && !platform::EqualIgnoringCase(source, u"SELECT")) {
    Raise(platform::kErrTableNotFound, source);
  }
  Statement statement = ParseStatement(source);
  return std::visit([&](auto& s) { return Run(s, failOnError); }, statement);
}

std::int32_t QueryRunner::Run(SelectStatement&, bool) { Raise(platform::kErrExecuteSelect); }

// Each row in a savepoint of its own, so that one that fails leaves nothing behind.
template <class Work>
std::int32_t QueryRunner::ForRows(const std::vector<RowPointer>& rows, bool failOnError, Work work) {
  std::int32_t affected = 0;
  for (const RowPointer row : rows) {
    if (failOnError) {
      work(row);
      ++affected;
      continue;
    }
    try {
      Atomic atomic(database_.Pages());
      work(row);
      atomic.Commit();
      ++affected;
    } catch (const RunTimeError& error) {
      if (!IsRowError(error.Number())) throw;
    }
  }
  return affected;
}

std::int32_t QueryRunner::Run(DeleteStatement& statement, bool failOnError) {
  const std::shared_ptr<Table> table = OpenForChange(statement.table, platform::kErrTableNotFound);
  const auto rows = Find(*table, {}, statement.where.get(), database_.GetClock().Now());
  return ForRows(rows, failOnError, [&](RowPointer row) { rows_.Delete(*table, row); });
}

std::int32_t QueryRunner::Run(UpdateStatement& statement, bool failOnError) {
  const std::shared_ptr<Table> table = OpenForChange(statement.table, platform::kErrTableNotFound);
  const double now = database_.GetClock().Now();
  std::vector<std::size_t> columns;
  for (auto& [name, expression] : statement.assignments) {
    columns.push_back(RequireColumn(*table, name, platform::kErrTooFewParameters));
    if (std::count(columns.begin(), columns.end(), columns.back()) > 1) {
      Raise(platform::kErrDuplicateDestination, name);
    }
    Bind(*expression, *table, statement.alias);
  }
  const auto rows = Find(*table, statement.alias, statement.where.get(), now);
  return ForRows(rows, failOnError, [&](RowPointer row) {
    const RowFields former = table->Read(row);
    const EvaluationContext context{
        now, [&](std::size_t column) { return table->ValueOf(column, former[column]); }};
    std::vector<ColumnChange> changes;
    for (std::size_t i = 0; i < columns.size(); ++i) {
      const Column& column = table->Definition().columns[columns[i]];
      changes.emplace_back(columns[i],
                           StoredValue(column, Evaluate(*statement.assignments[i].second, context)));
    }
    rows_.Update(*table, row, changes);
  });
}

std::int32_t QueryRunner::Run(InsertStatement& statement, bool failOnError) {
  const std::shared_ptr<Table> table = OpenForChange(statement.table, platform::kErrOutputTableNotFound);
  std::vector<std::size_t> columns;
  for (const std::u16string& name : statement.columns) {
    columns.push_back(RequireColumn(*table, name, platform::kErrUnknownInsertField));
    if (std::count(columns.begin(), columns.end(), columns.back()) > 1) {
      Raise(platform::kErrDuplicateDestination, name);
    }
  }
  for (std::size_t i = 0; statement.columns.empty() && i < table->Definition().columns.size(); ++i) {
    columns.push_back(i);
  }
  if (columns.size() != statement.values.size()) Raise(platform::kErrValueCount);
  const double now = database_.GetClock().Now();
  const EvaluationContext context{now, {}};
  std::vector<dao::Value> values = RowDefaults(database_.GetCatalog(), *table).Values(*table, now);
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (table->Definition().columns[i].IsCounter()) values[i] = table->NextCounter();
  }
  for (std::size_t i = 0; i < columns.size(); ++i) {
    std::vector<std::u16string> unknown;
    BindNames(*statement.values[i], [](auto, auto) { return std::nullopt; }, unknown);
    if (!unknown.empty()) Raise(platform::kErrTooFewParameters, u"1");
    values[columns[i]] =
        StoredValue(table->Definition().columns[columns[i]], Evaluate(*statement.values[i], context));
  }
  return ForRows({RowPointer{}}, failOnError, [&](RowPointer) { rows_.Insert(*table, values); });
}

}  // namespace zimbrat::jet
