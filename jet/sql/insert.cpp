// INSERT and SELECT INTO.
#include <algorithm>
#include <array>

#include "jet/catalog/schema.h"
#include "jet/file/errors.h"
#include "jet/file/scratch.h"

#include "changes.h"
#include "value_codec.h"

namespace zimbrat::jet {

namespace {

using namespace zimbrat::platform;

std::size_t RequireColumn(Table& table, std::u16string_view name) {
  const auto column = table.Definition().FindColumn(name);
  if (!column) Raise(kErrUnknownInsertField, name);
  return *column;
}

// The columns named; all of the table, in the order of its design, when none is.
std::vector<std::size_t> TargetColumns(Table& table, const std::vector<std::u16string>& names) {
  std::vector<std::size_t> columns;
  std::vector<bool> named(table.Definition().columns.size());
  for (const std::u16string& name : names) {
    const std::size_t column = RequireColumn(table, name);
    if (named[column]) Raise(kErrDuplicateDestination, name);
    named[column] = true;
    columns.push_back(column);
  }
  if (!names.empty()) return columns;
  for (std::size_t i = 0; i < named.size(); ++i) columns.push_back(i);
  std::stable_sort(columns.begin(), columns.end(), [&](std::size_t a, std::size_t b) {
    const std::vector<Column>& all = table.Definition().columns;
    return all[a].displayOrder < all[b].displayOrder;
  });
  return columns;
}

std::vector<dao::Value> ValuesOf(RowPlan& plan) {
  std::vector<dao::Value> values;
  for (std::size_t i = 0; i < plan.Columns().size(); ++i) values.push_back(plan.ValueAt(i));
  return values;
}

std::int32_t InsertRows(RowPlan& plan, RowInserter& inserter) {
  std::int32_t affected = 0;
  for (plan.Rows().Start(); plan.Rows().Next();) {
    if (inserter.Insert(ValuesOf(plan))) ++affected;
  }
  return affected;
}

// A query that reads the table which it fills is read to its end first.
std::int32_t InsertKeptRows(RowPlan& plan, RowInserter& inserter, Pager& pager) {
  Scratch kept(pager);
  for (plan.Rows().Start(); plan.Rows().Next();) {
    std::vector<std::byte> bytes(sizeof(std::uint32_t));
    for (const dao::Value& value : ValuesOf(plan)) AppendValue(value, bytes);
    Put32(bytes, 0, static_cast<std::uint32_t>(bytes.size() - sizeof(std::uint32_t)));
    kept.Append(bytes);
  }
  std::int32_t affected = 0;
  for (std::uint64_t at = 0; at < kept.Size();) {
    std::array<std::byte, sizeof(std::uint32_t)> size;
    kept.Read(at, size);
    std::vector<std::byte> bytes(Get32(size, 0));
    kept.Read(at + size.size(), bytes);
    at += size.size() + bytes.size();
    std::vector<dao::Value> values;
    for (ConstBytes rest = bytes; !rest.empty();) values.push_back(TakeValue(rest));
    if (inserter.Insert(values)) ++affected;
  }
  return affected;
}

std::int32_t InsertQuery(InsertStatement& statement, std::shared_ptr<Table> table, ChangeRun& run) {
  Compilation compilation{run.database, run.now};
  const RowPlanPtr plan = CompileQuery(std::move(statement.query), nullptr, compilation);
  compilation.RequireAllKnown();
  std::vector<std::u16string> names = statement.columns;
  for (std::size_t i = 0; statement.columns.empty() && i < plan->Columns().size(); ++i) {
    names.push_back(plan->Columns()[i].name);
  }
  std::vector<std::size_t> columns = TargetColumns(*table, names);
  if (columns.size() != plan->Columns().size()) Raise(kErrValueCount);
  const bool readsTarget =
      std::find(compilation.reads.begin(), compilation.reads.end(), table->Page()) != compilation.reads.end();
  RowInserter inserter(run, std::move(table), std::move(columns));
  return readsTarget ? InsertKeptRows(*plan, inserter, run.database.Pages()) : InsertRows(*plan, inserter);
}

// The field of a new table that holds a column of a query. A counter stays one only where each row of one
// table gives one row.
FieldSpec MakeField(const ScopeColumn& column, bool keepsCounter) {
  FieldSpec field;
  field.name = column.name;
  field.type = column.type == 0 ? dao::dbText : column.type;
  if (field.type == dao::dbDecimal) field.type = dao::dbDouble;
  field.size = column.size;
  if (field.type == dao::dbText && field.size < 1) field.size = 255;
  if (keepsCounter && column.isCounter) field.attributes = dao::dbFixedField | dao::dbAutoIncrField;
  field.allowZeroLength = field.type == dao::dbText || field.type == dao::dbMemo;
  return field;
}

}  // namespace

std::int32_t RunInsert(InsertStatement& statement, ChangeRun& run) {
  std::shared_ptr<Table> table = OpenForChange(run.database, statement.table, kErrOutputTableNotFound);
  if (statement.query) return InsertQuery(statement, std::move(table), run);
  std::vector<std::size_t> columns = TargetColumns(*table, statement.columns);
  if (columns.size() != statement.values.size()) Raise(kErrValueCount);
  Compilation compilation{run.database, run.now};
  TableScope nothing(nullptr);
  for (const ExpressionPtr& value : statement.values) Binder(nothing, compilation, kErrNotUpdatableQuery).Bind(*value);
  compilation.RequireAllKnown();
  const EvaluationContext context{run.now, {}};
  std::vector<dao::Value> values;
  for (const ExpressionPtr& value : statement.values) values.push_back(Evaluate(*value, context));
  return RowInserter(run, std::move(table), std::move(columns)).Insert(values) ? 1 : 0;
}

std::int32_t RunSelectInto(QueryStatement& query, ChangeRun& run) {
  const std::u16string name = std::exchange(query.selects.front().into, {});
  Compilation compilation{run.database, run.now};
  const RowPlanPtr plan = CompileQuery(std::make_shared<QueryStatement>(std::move(query)), nullptr, compilation);
  compilation.RequireAllKnown();
  Catalog& catalog = run.database.GetCatalog();
  if (catalog.FindTableOrQuery(name)) Raise(kErrTableExists, name);
  const bool keepsCounter = plan->EditedTable() != nullptr;
  std::vector<FieldSpec> fields;
  for (const ScopeColumn& column : plan->Columns()) fields.push_back(MakeField(column, keepsCounter));
  const PageNumber page = Schema(run.database.GetStorage(), catalog).CreateTable(name, fields, {});
  std::vector<std::size_t> columns;
  for (std::size_t i = 0; i < fields.size(); ++i) columns.push_back(i);
  RowInserter inserter(run, catalog.Open(page), std::move(columns));
  return InsertRows(*plan, inserter);
}

}  // namespace zimbrat::jet
