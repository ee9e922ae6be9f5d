#include "select_plan.h"

namespace zimbrat::jet {

SelectPlan::SelectPlan(SelectStatement statement, Compilation& compilation)
    : statement_(std::move(statement)),
      rowContext_{compilation.now,
                  [this](std::size_t column) { return slots_[column].source->ValueAt(slots_[column].column); }},
      groupContext_{compilation.now, [this](std::size_t column) { return groups_->ValueAt(column); }} {}

dao::Value SelectPlan::ValueAt(std::size_t column) { return Evaluate(*outputs_[column], Context()); }

void SelectPlan::SetOuter(const EvaluationContext* outer) {
  rowContext_.outer = outer;
  groupContext_.outer = outer;
}

TableSource* SelectPlan::EditedTable() {
  const bool single = leaves_.size() == 1 && !isGrouped_ && statement_.repeats != Repeats::DropEqualValues;
  return single ? leaves_.front().table : nullptr;
}

std::optional<std::size_t> SelectPlan::EditedColumn(std::size_t column) const {
  const Expression& e = *outputs_[column];
  if (e.kind != Expression::Kind::Name || e.level != 0 || isGrouped_) return std::nullopt;
  return e.column;
}

void DerivedRows::Start() {
  isNull_ = false;
  plan_->Rows().Start();
}

void DerivedRows::Save(std::vector<std::byte>& place) {
  place.push_back(static_cast<std::byte>(isNull_ ? 0 : 1));
  const std::size_t end = place.size() + plan_->Rows().PlaceSize();
  if (!isNull_) plan_->Rows().Save(place);
  place.resize(end);
}

void DerivedRows::Load(ConstBytes& place) {
  isNull_ = place[0] == std::byte{0};
  ConstBytes own = place.subspan(1);
  if (!isNull_) plan_->Rows().Load(own);
  place = place.subspan(PlaceSize());
}

}  // namespace zimbrat::jet
