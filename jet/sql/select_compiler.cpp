// From a parsed SELECT to its plan.
#include <algorithm>

#include "jet/file/errors.h"
#include "jet/index/collation.h"
#include "platform/text.h"

#include "column_type.h"
#include "select_plan.h"
#include "value_codec.h"

namespace zimbrat::jet {

namespace {

using namespace zimbrat::platform;

constexpr std::int32_t kFirstExpressionName = 1000;

void AppendKeys(const std::vector<const Expression*>& expressions, const EvaluationContext& context,
                std::vector<std::byte>& key) {
  for (const Expression* e : expressions) AppendSortKey(Evaluate(*e, context), false, key);
}

void ForbidOle(const Expression& e, std::int32_t error) {
  if (TypeOf(e).type == dao::dbLongBinary) Raise(error, e.name);
}

}  // namespace

class SelectCompiler {
 public:
  SelectCompiler(SelectStatement statement, Scope* outer, Compilation& compilation)
      : compilation_(compilation),
        plan_(std::make_unique<SelectPlan>(std::move(statement), compilation)),
        select_(plan_->statement_),
        scope_(outer),
        from_(compilation, scope_, plan_->rowContext_),
        groups_(outer, scope_, select_.groupBy, compilation) {}

  std::unique_ptr<SelectPlan> Run() {
    AddTables();
    if (select_.groupBy.size() > kMaxColumns || select_.orderBy.size() > kMaxColumns) Raise(kErrQueryTooComplex);
    if (select_.where) Binder(scope_, compilation_, kErrAggregateInWhere).Bind(*select_.where);
    ExpandItems();
    plan_->isGrouped_ = IsGrouped();
    for (const ExpressionPtr& key : select_.groupBy) {
      Binder(scope_, compilation_, kErrAggregateInGroupBy).Bind(*key);
      ForbidOle(*key, kErrGroupOnLongValue);
    }
    for (std::size_t i = 0; i < plan_->outputs_.size(); ++i) BindOutput(i);
    NameRepeatedColumns();
    if (select_.having) BindBehindGroups(*select_.having);
    BindOrder();
    BuildRows();
    plan_->followsOuter_ = scope_.FollowsOuter() || groups_.FollowsOuter();
    return std::move(plan_);
  }

 private:
  void AddTables() {
    from_.Add(select_.from);
    plan_->leaves_ = from_.Tables();
    for (std::size_t t = 0; t < plan_->leaves_.size(); ++t) {
      for (std::size_t c = 0; c < scope_.Tables()[t].columns.size(); ++c) {
        plan_->slots_.push_back({plan_->leaves_[t].source, c});
      }
    }
  }

  void AddOutput(ExpressionPtr expression, std::u16string_view name) {
    if (plan_->outputs_.size() == kMaxColumns) Raise(kErrTooManyFields);
    plan_->outputs_.push_back(std::move(expression));
    ScopeColumn column;
    column.name = name;
    plan_->columns_.push_back(std::move(column));
  }

  void ExpandItems() {
    for (SelectItem& item : select_.items) {
      if (item.expression) {
        AddOutput(std::move(item.expression), item.alias);
      } else {
        ExpandAll(item.qualifier);
      }
    }
  }

  void ExpandAll(std::u16string_view qualifier) {
    bool found = false;
    for (const ScopeTable& table : scope_.Tables()) {
      if (!qualifier.empty() && !EqualText(table.name, qualifier)) continue;
      found = true;
      std::vector<ScopeColumn> columns = table.columns;
      std::stable_sort(columns.begin(), columns.end(),
                       [](const ScopeColumn& a, const ScopeColumn& b) { return a.order < b.order; });
      for (const ScopeColumn& column : columns) {
        auto name = std::make_unique<Expression>();
        name->kind = Expression::Kind::Name;
        name->qualifier = table.name;
        name->name = column.name;
        AddOutput(std::move(name), {});
      }
    }
    if (!found) Raise(kErrTableNotFound, qualifier);
  }

  bool IsGrouped() const {
    const auto any = [](const auto& list) {
      return std::any_of(list.begin(), list.end(), [](const ExpressionPtr& e) { return ContainsAggregate(*e); });
    };
    return !select_.groupBy.empty() || select_.having || any(plan_->outputs_) ||
           std::any_of(select_.orderBy.begin(), select_.orderBy.end(),
                       [](const OrderItem& item) { return ContainsAggregate(*item.expression); });
  }

  void BindBehindGroups(Expression& e) {
    if (plan_->isGrouped_) return groups_.Bind(e);
    Binder(scope_, compilation_, kErrAggregateInWhere).Bind(e);
  }

  void BindOutput(std::size_t i) {
    Expression& e = *plan_->outputs_[i];
    const bool isName = e.kind == Expression::Kind::Name;
    BindBehindGroups(e);
    ScopeColumn& column = plan_->columns_[i];
    const ColumnType type = TypeOf(e);
    column.type = type.type;
    column.size = type.size;
    const bool isColumn = isName && e.kind == Expression::Kind::Name;
    const bool isPlain = isColumn && e.level == 0 && !plan_->isGrouped_ && e.column < scope_.ColumnCount();
    column.isCounter = isPlain && scope_.Column(e.column).isCounter;
    if (!column.name.empty()) return;
    column.name = isColumn ? e.name : u"Expr" + DecimalText(kFirstExpressionName + static_cast<std::int32_t>(i));
  }

  // Columns of one name from several tables are told apart by the tables.
  void NameRepeatedColumns() {
    std::vector<ScopeColumn>& columns = plan_->columns_;
    std::vector<bool> repeated(columns.size());
    for (std::size_t i = 0; i < columns.size(); ++i) {
      for (std::size_t j = i + 1; j < columns.size(); ++j) {
        if (EqualIgnoringCase(columns[i].name, columns[j].name)) repeated[i] = repeated[j] = true;
      }
    }
    for (std::size_t i = 0; i < columns.size(); ++i) {
      const Expression& e = *plan_->outputs_[i];
      if (repeated[i] && e.kind == Expression::Kind::Name && !e.qualifier.empty()) {
        columns[i].name = e.qualifier + u"." + columns[i].name;
      }
    }
  }

  // A position stands for the column of the list; everything else is bound as the list is.
  void BindOrder() {
    for (OrderItem& item : select_.orderBy) {
      const Expression& e = *item.expression;
      const auto* position = std::get_if<std::int32_t>(&e.value);
      if (e.kind == Expression::Kind::Literal && position) {
        if (*position < 1 || *position > static_cast<std::int32_t>(plan_->outputs_.size())) {
          Raise(kErrUnionOrder, DecimalText(*position));
        }
        order_.push_back(plan_->outputs_[static_cast<std::size_t>(*position) - 1].get());
      } else {
        BindBehindGroups(*item.expression);
        order_.push_back(item.expression.get());
      }
      ForbidOle(*order_.back(), kErrSortOnLongValue);
      if (select_.repeats == Repeats::DropEqualValues && !IsInList(*order_.back())) {
        Raise(kErrOrderConflictsDistinct, order_.back()->name);
      }
    }
  }

  bool IsInList(const Expression& e) const {
    return std::any_of(plan_->outputs_.begin(), plan_->outputs_.end(),
                       [&](const ExpressionPtr& output) { return SameExpression(*output, e) || output.get() == &e; });
  }

  Pager& Pages() { return compilation_.database.Pages(); }

  void BuildRows() {
    plan_->root_ = from_.Plan(select_.where.get());
    if (plan_->isGrouped_) AddGroups();
    if (select_.repeats == Repeats::DropEqualValues) AddDistinct();
    if (select_.repeats == Repeats::DropEqualRows && !plan_->isGrouped_) AddDistinctRow();
    AddOrderAndTop();
  }

  void AddGroups() {
    std::vector<const Expression*> keys;
    for (const ExpressionPtr& key : select_.groupBy) keys.push_back(key.get());
    plan_->aggregates_ = groups_.TakeAggregates();
    auto groups = std::make_unique<GroupedRows>(std::move(plan_->root_), std::move(keys), plan_->aggregates_,
                                                plan_->rowContext_, Pages());
    plan_->groups_ = groups.get();
    plan_->root_ = std::move(groups);
    if (!select_.having) return;
    plan_->root_ = std::make_unique<FilteredRows>(std::move(plan_->root_), Conditions{select_.having.get()},
                                                  plan_->groupContext_);
  }

  void AddDistinct() {
    std::vector<const Expression*> outputs;
    for (const ExpressionPtr& output : plan_->outputs_) {
      ForbidOle(*output, kErrDistinctOnLongValue);
      outputs.push_back(output.get());
    }
    const EvaluationContext& context = plan_->Context();
    plan_->root_ = std::make_unique<SortedRows>(
        std::move(plan_->root_), Pages(),
        [outputs, &context](std::vector<std::byte>& key) { AppendKeys(outputs, context, key); }, true);
  }

  // Of a join that shows only some of its tables: the rows of those once.
  void AddDistinctRow() {
    std::vector<LeafSource*> shown;
    for (std::size_t t = 0; t < plan_->leaves_.size(); ++t) {
      const auto shows = [&](const ExpressionPtr& output) { return Names(*output, t); };
      if (std::any_of(plan_->outputs_.begin(), plan_->outputs_.end(), shows)) {
        shown.push_back(plan_->leaves_[t].source);
      }
    }
    if (shown.empty() || shown.size() == plan_->leaves_.size()) return;
    plan_->root_ = std::make_unique<SortedRows>(
        std::move(plan_->root_), Pages(),
        [shown](std::vector<std::byte>& key) {
          for (LeafSource* source : shown) source->Save(key);
        },
        true);
  }

  bool Names(const Expression& e, std::size_t table) const {
    if (e.kind == Expression::Kind::Name) return e.level == 0 && scope_.TableOf(e.column) == table;
    return std::any_of(e.operands.begin(), e.operands.end(),
                       [&](const ExpressionPtr& operand) { return Names(*operand, table); });
  }

  void AddOrderAndTop() {
    const bool percent = select_.top && select_.top->percent;
    if (order_.empty() && !percent) {
      if (select_.top) plan_->root_ = std::make_unique<FirstRows>(std::move(plan_->root_), select_.top->count);
      return;
    }
    std::vector<std::pair<const Expression*, bool>> order;
    for (std::size_t i = 0; i < order_.size(); ++i) order.emplace_back(order_[i], select_.orderBy[i].descending);
    const EvaluationContext& context = plan_->Context();
    auto sorted = std::make_unique<SortedRows>(
        std::move(plan_->root_), Pages(),
        [order, &context](std::vector<std::byte>& key) {
          for (const auto& [e, descending] : order) AppendSortKey(Evaluate(*e, context), descending, key);
        },
        false);
    if (!select_.top) {
      plan_->root_ = std::move(sorted);
      return;
    }
    plan_->root_ = std::make_unique<FirstRows>(std::move(sorted), select_.top->count, percent, !order_.empty());
  }

  Compilation& compilation_;
  std::unique_ptr<SelectPlan> plan_;
  SelectStatement& select_;
  TableScope scope_;
  FromCompiler from_;
  GroupBinder groups_;
  std::vector<const Expression*> order_;
};

std::unique_ptr<SelectPlan> CompileSelect(SelectStatement statement, Scope* outer, Compilation& compilation) {
  return SelectCompiler(std::move(statement), outer, compilation).Run();
}

}  // namespace zimbrat::jet
