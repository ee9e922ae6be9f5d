// UPDATE and DELETE, over one table or over a join.
#include <algorithm>

#include "jet/file/errors.h"
#include "jet/index/collation.h"
#include "platform/text.h"

#include "changes.h"
#include "select_plan.h"

namespace zimbrat::jet {

namespace {

using namespace zimbrat::platform;

void AppendNames(const FromItem& item, std::vector<std::u16string>& names) {
  if (!item.IsJoin()) return names.push_back(item.Name());
  AppendNames(*item.left, names);
  AppendNames(*item.right, names);
}

// The tables' names in the order in which a plan numbers them.
std::vector<std::u16string> NamesOf(const FromList& list) {
  std::vector<std::u16string> names;
  for (const auto& item : list) AppendNames(*item, names);
  return names;
}

bool ContainsSubquery(const Expression& e) {
  return e.kind == Expression::Kind::Subquery ||
         std::any_of(e.operands.begin(), e.operands.end(),
                     [](const ExpressionPtr& operand) { return ContainsSubquery(*operand); });
}

struct Target {
  std::size_t table = 0;   // among the plan's
  std::size_t column = 0;  // in the table
};

// The column that an assignment names. Error 3079 when several tables have it.
std::optional<Target> FindTarget(const Assignment& assignment, const SelectPlan& plan,
                                 const std::vector<std::u16string>& names) {
  std::optional<Target> found;
  for (std::size_t t = 0; t < names.size(); ++t) {
    if (!assignment.qualifier.empty() && !EqualText(names[t], assignment.qualifier)) continue;
    const FromLeaf& leaf = plan.Tables()[t];
    if (leaf.derived) {
      const std::vector<ScopeColumn>& columns = leaf.derived->Plan().Columns();
      const auto named = [&](const ScopeColumn& c) { return EqualIgnoringCase(c.name, assignment.column); };
      if (std::any_of(columns.begin(), columns.end(), named)) Raise(kErrNotUpdatableQuery);
      continue;
    }
    const auto column = leaf.table->GetTable()->Definition().FindColumn(assignment.column);
    if (!column) continue;
    if (found) Raise(kErrAmbiguousName, assignment.column);
    found = Target{t, *column};
  }
  return found;
}

std::vector<Target> FindTargets(const UpdateStatement& statement, const SelectPlan& plan,
                                const std::vector<std::u16string>& names, Compilation& compilation) {
  std::vector<Target> targets;
  for (const Assignment& assignment : statement.assignments) {
    const std::optional<Target> target = FindTarget(assignment, plan, names);
    if (!target) {
      compilation.unknown.push_back(assignment.column);
      continue;
    }
    Table& table = *plan.Tables()[target->table].table->GetTable();
    RequireChangeable(compilation.database, table);
    if (table.Definition().columns[target->column].IsCounter()) Raise(kErrFieldNotUpdatable, assignment.column);
    for (const Target& other : targets) {
      if (other.table == target->table && other.column == target->column) {
        Raise(kErrDuplicateDestination, assignment.column);
      }
    }
    targets.push_back(*target);
  }
  compilation.RequireAllKnown();
  return targets;
}

// Every value is found before the first is stored.
bool UpdateRow(SelectPlan& plan, const std::vector<Target>& targets, ChangeRun& run) {
  std::vector<std::vector<ColumnChange>> changes(plan.Tables().size());
  for (std::size_t i = 0; i < targets.size(); ++i) {
    Table& table = *plan.Tables()[targets[i].table].table->GetTable();
    const Column& column = table.Definition().columns[targets[i].column];
    changes[targets[i].table].emplace_back(targets[i].column, StoredValue(run, column, plan.ValueAt(i)));
  }
  bool changed = false;
  for (std::size_t t = 0; t < changes.size(); ++t) {
    // The missing partner of an outer join is not made.
    if (changes[t].empty() || !plan.Tables()[t].table->Exists()) continue;
    run.rows.Update(*plan.Tables()[t].table->GetTable(), plan.Tables()[t].table->Place(), changes[t]);
    changed = true;
  }
  return changed;
}

}  // namespace

std::int32_t RunUpdate(UpdateStatement& statement, ChangeRun& run) {
  const std::vector<std::u16string> names = NamesOf(statement.from);
  Compilation compilation{run.database, run.now};
  SelectStatement select;
  for (Assignment& assignment : statement.assignments) {
    if (ContainsAggregate(*assignment.value) || ContainsSubquery(*assignment.value)) Raise(kErrNotUpdatableQuery);
    SelectItem item;
    item.expression = std::move(assignment.value);
    select.items.push_back(std::move(item));
  }
  select.from = std::move(statement.from);
  select.where = std::move(statement.where);
  const std::unique_ptr<SelectPlan> plan = CompileSelect(std::move(select), nullptr, compilation);
  const std::vector<Target> targets = FindTargets(statement, *plan, names, compilation);
  PlaceList places = FindPlaces(*plan, run.database.Pages());
  std::int32_t affected = 0;
  for (std::uint64_t i = 0; i < places.Count(); ++i) {
    bool changed = false;
    const bool kept = ChangeRow(run, [&] {
      ConstBytes place = places.At(i);
      plan->Rows().Load(place);
      changed = UpdateRow(*plan, targets, run);
    });
    if (kept && changed) ++affected;
  }
  return affected;
}

std::int32_t RunDelete(DeleteStatement& statement, ChangeRun& run) {
  const std::vector<std::u16string> names = NamesOf(statement.from);
  Compilation compilation{run.database, run.now};
  SelectStatement select;
  select.from = std::move(statement.from);
  select.where = std::move(statement.where);
  const std::unique_ptr<SelectPlan> plan = CompileSelect(std::move(select), nullptr, compilation);
  compilation.RequireAllKnown();
  if (names.size() > 1 && statement.target.empty()) Raise(kErrNoDeleteTable);
  std::size_t target = 0;
  while (!statement.target.empty() && target < names.size() && !EqualText(names[target], statement.target)) ++target;
  if (target == names.size()) Raise(kErrTableNotFound, statement.target);
  TableSource* source = plan->Tables()[target].table;
  if (!source) Raise(kErrCannotDelete);
  const std::shared_ptr<Table> table = source->GetTable();
  RequireChangeable(run.database, *table);
  PlaceList places = FindPlaces(*plan, run.database.Pages());
  std::int32_t affected = 0;
  for (std::uint64_t i = 0; i < places.Count(); ++i) {
    ConstBytes place = places.At(i);
    plan->Rows().Load(place);
    if (!source->Exists()) continue;  // paired twice, or gone with another
    if (ChangeRow(run, [&] { run.rows.Delete(*table, source->Place()); })) ++affected;
  }
  return affected;
}

}  // namespace zimbrat::jet
