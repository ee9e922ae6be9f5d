#include "changes.h"

#include <algorithm>

#include "jet/file/errors.h"
#include "jet/sql/defaults.h"
#include "jet/table/convert.h"

#include "from_compiler.h"

namespace zimbrat::jet {

namespace {

using platform::RunTimeError;

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

}  // namespace

bool ChangeRow(ChangeRun& run, const std::function<void()>& work) {
  if (run.failOnError) {
    work();
    return true;
  }
  try {
    Atomic atomic(run.database.Pages());
    work();
    atomic.Commit();
    return true;
  } catch (const RunTimeError& error) {
    if (!IsRowError(error.Number())) throw;
    return false;
  }
}

dao::Value StoredValue(const ChangeRun& run, const Column& column, const dao::Value& value) {
  try {
    return ConvertToColumn(column, value);
  } catch (const RunTimeError& error) {
    if (error.Number() != platform::kErrDataConversion) throw;
    // A value of a wrong type in a statement is the criteria's error.
    if (run.failOnError) Raise(platform::kErrCriteriaMismatch);
    return ConvertToColumn(column, dao::Null{});
  }
}

void RequireChangeable(DatabaseFile& database, Table& table) {
  const CatalogObject* object = database.GetCatalog().FindTableByPage(table.Page());
  if (!object || object->IsSystem()) Raise(platform::kErrReadOnly);
}

std::shared_ptr<Table> OpenForChange(DatabaseFile& database, std::u16string_view name, std::int32_t error) {
  std::shared_ptr<Table> table = OpenTable(database, name, error);
  RequireChangeable(database, *table);
  return table;
}

PlaceList FindPlaces(RowPlan& plan, Pager& pager) {
  PlaceList places(pager, plan.Rows().PlaceSize());
  std::vector<std::byte> place;
  for (plan.Rows().Start(); plan.Rows().Next();) {
    place.clear();
    plan.Rows().Save(place);
    places.Add(place);
  }
  return places;
}

struct RowInserter::State {
  ChangeRun& run;
  std::shared_ptr<Table> table;
  std::vector<std::size_t> columns;
  RowDefaults defaults;
};

RowInserter::RowInserter(ChangeRun& run, std::shared_ptr<Table> table, std::vector<std::size_t> columns) {
  RowDefaults defaults(run.database.GetCatalog(), *table);
  state_ = std::make_unique<State>(State{run, std::move(table), std::move(columns), std::move(defaults)});
}

RowInserter::~RowInserter() = default;

bool RowInserter::Insert(const std::vector<dao::Value>& given) {
  Table& table = *state_->table;
  return ChangeRow(state_->run, [&] {
    std::vector<dao::Value> values = state_->defaults.Values(table, state_->run.now);
    const std::vector<Column>& columns = table.Definition().columns;
    for (std::size_t i = 0; i < state_->columns.size(); ++i) {
      const std::size_t column = state_->columns[i];
      values[column] = StoredValue(state_->run, columns[column], given[i]);
    }
    for (std::size_t i = 0; i < columns.size(); ++i) {
      const bool isGiven = std::find(state_->columns.begin(), state_->columns.end(), i) != state_->columns.end();
      if (columns[i].IsCounter() && (!isGiven || dao::IsNull(values[i]))) values[i] = table.NextCounter();
    }
    state_->run.rows.Insert(table, values);
  });
}

}  // namespace zimbrat::jet
