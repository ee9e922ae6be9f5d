// UNION: the rows of one query, then those of another.
#include <algorithm>
#include <array>

#include "jet/file/errors.h"
#include "jet/sql/row_plan.h"
#include "platform/text.h"

#include "select_plan.h"
#include "value_codec.h"

namespace zimbrat::jet {

namespace {

using namespace zimbrat::platform;

class RowsOfBoth : public RowSource {
 public:
  RowsOfBoth(RowPlan& first, RowPlan& second) : plans_{&first, &second} {}

  RowPlan& Current() { return *plans_[current_]; }

  void Start() override {
    current_ = 0;
    Current().Rows().Start();
  }
  bool Next() override {
    if (Current().Rows().Next()) return true;
    if (current_ == 1) return false;
    current_ = 1;
    Current().Rows().Start();
    return Current().Rows().Next();
  }
  // A byte that says whose row it is, then its place.
  std::size_t PlaceSize() const override {
    return 1 + std::max(plans_[0]->Rows().PlaceSize(), plans_[1]->Rows().PlaceSize());
  }
  void Save(std::vector<std::byte>& place) override {
    const std::size_t end = place.size() + PlaceSize();
    place.push_back(static_cast<std::byte>(current_));
    Current().Rows().Save(place);
    place.resize(end);
  }
  void Load(ConstBytes& place) override {
    current_ = std::to_integer<std::size_t>(place[0]);
    ConstBytes own = place.subspan(1);
    Current().Rows().Load(own);
    place = place.subspan(PlaceSize());
  }
  void SetNull() override {}
  void Forget() override {
    for (RowPlan* plan : plans_) plan->Rows().Forget();
  }

 private:
  std::array<RowPlan*, 2> plans_;
  std::size_t current_ = 0;
};

class UnionPlan : public RowPlan {
 public:
  UnionPlan(RowPlanPtr first, RowPlanPtr second, bool keepsRepeats, Pager& pager)
      : first_(std::move(first)), second_(std::move(second)) {
    if (first_->Columns().size() != second_->Columns().size()) Raise(kErrUnionColumns);
    columns_ = first_->Columns();
    for (std::size_t i = 0; i < columns_.size(); ++i) MergeType(columns_[i], second_->Columns()[i]);
    auto both = std::make_unique<RowsOfBoth>(*first_, *second_);
    both_ = both.get();
    root_ = std::move(both);
    if (keepsRepeats) return;
    for (const ScopeColumn& column : columns_) {
      if (column.type == dao::dbLongBinary) Raise(kErrDistinctOnLongValue, column.name);
    }
    root_ = std::make_unique<SortedRows>(
        std::move(root_), pager,
        [this](std::vector<std::byte>& key) {
          for (std::size_t i = 0; i < columns_.size(); ++i) AppendSortKey(ValueAt(i), false, key);
        },
        true);
  }

  const std::vector<ScopeColumn>& Columns() const override { return columns_; }
  RowSource& Rows() override { return *root_; }
  dao::Value ValueAt(std::size_t column) override { return both_->Current().ValueAt(column); }
  void SetOuter(const EvaluationContext* outer) override {
    first_->SetOuter(outer);
    second_->SetOuter(outer);
  }
  bool FollowsOuter() const override { return first_->FollowsOuter() || second_->FollowsOuter(); }

  // By the columns' names or positions. Error 3351 for anything else.
  void Order(const std::vector<OrderItem>& items, Pager& pager) {
    std::vector<std::pair<std::size_t, bool>> order;
    for (const OrderItem& item : items) order.emplace_back(ColumnOf(*item.expression), item.descending);
    root_ = std::make_unique<SortedRows>(
        std::move(root_), pager,
        [this, order](std::vector<std::byte>& key) {
          for (const auto& [column, descending] : order) AppendSortKey(ValueAt(column), descending, key);
        },
        false);
  }

 private:
  static void MergeType(ScopeColumn& a, const ScopeColumn& b) {
    a.isCounter = false;
    if (a.type == b.type) {
      a.size = std::max(a.size, b.size);
      return;
    }
    const auto isNumber = [](std::int16_t type) { return type >= dao::dbBoolean && type <= dao::dbDouble; };
    const bool numbers = isNumber(a.type) && isNumber(b.type);
    const bool isLong = a.type == dao::dbMemo || b.type == dao::dbMemo;
    a.type = numbers ? dao::dbDouble : isLong ? dao::dbMemo : dao::dbText;
    a.size = numbers ? 8 : isLong ? 0 : 255;
  }

  std::size_t ColumnOf(const Expression& e) const {
    if (const auto* position = std::get_if<std::int32_t>(&e.value)) {
      if (*position >= 1 && *position <= static_cast<std::int32_t>(columns_.size())) {
        return static_cast<std::size_t>(*position) - 1;
      }
      Raise(kErrUnionOrder, DecimalText(*position));
    }
    for (std::size_t i = 0; e.kind == Expression::Kind::Name && i < columns_.size(); ++i) {
      if (EqualIgnoringCase(columns_[i].name, e.name)) return i;
    }
    Raise(kErrUnionOrder, e.name);
  }

  RowPlanPtr first_;
  RowPlanPtr second_;
  RowsOfBoth* both_ = nullptr;
  std::vector<ScopeColumn> columns_;
  RowSourcePtr root_;
};

}  // namespace

RowPlanPtr CompileQuery(std::shared_ptr<QueryStatement> query, Scope* outer, Compilation& compilation) {
  if (std::any_of(query->selects.begin(), query->selects.end(),
                  [](const SelectStatement& select) { return !select.into.empty(); })) {
    Raise(kErrInvalidOperation);
  }
  Pager& pager = compilation.database.Pages();
  RowPlanPtr plan = CompileSelect(std::move(query->selects.front()), outer, compilation);
  // The last UNION without ALL drops the repeats of all before it.
  const std::vector<bool>& keeps = query->keepsRepeats;
  const auto lastDrop = static_cast<std::size_t>(std::find(keeps.rbegin(), keeps.rend(), false).base() - keeps.begin());
  for (std::size_t i = 1; i < query->selects.size(); ++i) {
    RowPlanPtr next = CompileSelect(std::move(query->selects[i]), outer, compilation);
    auto united = std::make_unique<UnionPlan>(std::move(plan), std::move(next), i != lastDrop, pager);
    const bool isLast = i + 1 == query->selects.size();
    if (isLast && !query->orderBy.empty()) united->Order(query->orderBy, pager);
    plan = std::move(united);
  }
  return plan;
}

}  // namespace zimbrat::jet
