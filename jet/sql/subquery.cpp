#include "subquery.h"

#include <algorithm>

#include "jet/file/errors.h"
#include "jet/sql/row_plan.h"

#include "operators.h"
#include "value_codec.h"

namespace zimbrat::jet {

namespace {

constexpr int kPositionBits = 40;
constexpr std::uint64_t kPositionMask = (std::uint64_t{1} << kPositionBits) - 1;

// The values of an IN (SELECT …) that is the same for every row, by the hashes of their keys.
class ValueSet {
 public:
  ValueSet(RowPlan& plan, Pager& pager) : plan_(plan), places_(pager, plan.Rows().PlaceSize()) {
    std::vector<std::byte> key, place;
    for (plan.Rows().Start(); plan.Rows().Next();) {
      const dao::Value value = plan.ValueAt(0);
      if (dao::IsNull(value)) {
        hasNull_ = true;
        continue;
      }
      if (places_.Count() == 0) sample_ = value;
      key.clear();
      place.clear();
      AppendSortKey(value, false, key);
      plan.Rows().Save(place);
      entries_.push_back(std::uint64_t{HashOf(key)} << kPositionBits | places_.Count());
      places_.Add(place);
    }
    std::sort(entries_.begin(), entries_.end());
  }

  dao::Value Contains(const dao::Value& value) {
    if (places_.Count() == 0 && !hasNull_) return false;
    if (dao::IsNull(value)) return value;
    Comparison(Operator::Equal, value, sample_);  // types that never match are an error
    if (RankOf(value) != RankOf(sample_)) return CompareWithAll(value);
    std::vector<std::byte> key;
    AppendSortKey(value, false, key);
    const std::uint64_t hash = std::uint64_t{HashOf(key)} << kPositionBits;
    for (auto i = std::lower_bound(entries_.begin(), entries_.end(), hash);
         i != entries_.end() && (*i & ~kPositionMask) == hash; ++i) {
      ConstBytes place = places_.At(*i & kPositionMask);
      plan_.Rows().Load(place);
      if (IsTrue(Comparison(Operator::Equal, value, plan_.ValueAt(0)))) return true;
    }
    if (hasNull_) return dao::Null{};
    return false;
  }

 private:
  // Texts and GUIDs compare, but their keys do not.
  dao::Value CompareWithAll(const dao::Value& value) {
    for (std::uint64_t i = 0; i < places_.Count(); ++i) {
      ConstBytes place = places_.At(i);
      plan_.Rows().Load(place);
      if (IsTrue(Comparison(Operator::Equal, value, plan_.ValueAt(0)))) return true;
    }
    if (hasNull_) return dao::Null{};
    return false;
  }

  RowPlan& plan_;
  PlaceList places_;
  std::vector<std::uint64_t> entries_;
  dao::Value sample_;
  bool hasNull_ = false;
};

class PlannedSubquery : public BoundSubquery {
 public:
  PlannedSubquery(RowPlanPtr plan, Pager& pager) : plan_(std::move(plan)), pager_(pager) {}

  RowPlan& Plan() { return *plan_; }

  dao::Value Evaluate(const Expression& e, const EvaluationContext& context) override {
    if (plan_->FollowsOuter()) {
      plan_->SetOuter(&context);
      plan_->Rows().Forget();
    }
    switch (e.use) {
      case SubqueryUse::Value: return Once([&] { return SingleValue(); });
      case SubqueryUse::Exists: return Once([&]() -> dao::Value {
        plan_->Rows().Start();
        return plan_->Rows().Next();
      });
      case SubqueryUse::In:
        if (!plan_->FollowsOuter()) return InSet(jet::Evaluate(*e.operands[0], context));
        return Compare(Operator::Equal, true, jet::Evaluate(*e.operands[0], context));
      default: return Compare(e.op, e.use == SubqueryUse::Any, jet::Evaluate(*e.operands[0], context));
    }
  }

 private:
  // What does not depend on the row around it is found once.
  template <class Work>
  dao::Value Once(Work work) {
    if (known_) return *known_;
    dao::Value value = work();
    if (!plan_->FollowsOuter()) known_ = value;
    return value;
  }

  dao::Value SingleValue() {
    RowSource& rows = plan_->Rows();
    rows.Start();
    if (!rows.Next()) return dao::Null{};
    dao::Value value = plan_->ValueAt(0);
    if (rows.Next()) Raise(platform::kErrSubqueryRows);
    return value;
  }

  dao::Value InSet(const dao::Value& value) {
    if (!set_) set_.emplace(*plan_, pager_);
    return set_->Contains(value);
  }

  // With any row, or with all: Null when that depends on a Null.
  dao::Value Compare(Operator op, bool any, const dao::Value& value) {
    bool sawNull = false;
    for (plan_->Rows().Start(); plan_->Rows().Next();) {
      const dao::Value result = Comparison(op, value, plan_->ValueAt(0));
      if (dao::IsNull(result)) {
        sawNull = true;
      } else if (IsTrue(result) == any) {
        return any;
      }
    }
    if (sawNull) return dao::Null{};
    return !any;
  }

  RowPlanPtr plan_;
  Pager& pager_;
  std::optional<dao::Value> known_;
  std::optional<ValueSet> set_;
};

PlannedSubquery* PlanOf(const Expression& e) { return static_cast<PlannedSubquery*>(e.subquery.get()); }

}  // namespace

std::shared_ptr<BoundSubquery> BindSubquery(Expression& e, Scope& outer, Compilation& compilation) {
  RowPlanPtr plan = CompileQuery(std::move(e.query), &outer, compilation);
  if (e.use != SubqueryUse::Exists && plan->Columns().size() != 1) Raise(platform::kErrSubqueryColumns);
  return std::make_shared<PlannedSubquery>(std::move(plan), compilation.database.Pages());
}

ColumnType TypeOfSubquery(const Expression& e) {
  if (e.use != SubqueryUse::Value || !e.subquery) return {dao::dbBoolean, 1};
  const ScopeColumn& column = PlanOf(e)->Plan().Columns().front();
  return {column.type, column.size};
}

bool FollowsOuter(const Expression& subquery) { return PlanOf(subquery)->Plan().FollowsOuter(); }

}  // namespace zimbrat::jet
