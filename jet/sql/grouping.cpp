#include "grouping.h"

#include <array>
#include <utility>

#include "jet/file/errors.h"
#include "jet/sql/functions.h"

#include "column_type.h"
#include "subquery.h"
#include "value_codec.h"

namespace zimbrat::jet {

GroupedRows::GroupedRows(RowSourcePtr input, std::vector<const Expression*> keys,
                         const std::vector<Aggregate>& aggregates, const EvaluationContext& rowContext,
                         Pager& pager)
    : keys_(std::move(keys)),
      aggregates_(aggregates),
      rowContext_(rowContext),
      pager_(pager),
      sorted_(std::move(input), pager,
              [this](std::vector<std::byte>& key) {
                for (const Expression* e : keys_) AppendSortKey(Evaluate(*e, rowContext_), false, key);
              },
              false) {}

void GroupedRows::Start() {
  kept_.emplace(pager_);
  sorted_.Start();
  isAtRow_ = sorted_.Next();
  isStarted_ = true;
}

bool GroupedRows::Next() {
  const bool isFirst = std::exchange(isStarted_, false);
  if (!isAtRow_ && !(isFirst && keys_.empty())) return false;
  values_.clear();
  for (const Expression* e : keys_) values_.push_back(Evaluate(*e, rowContext_));
  std::vector<Accumulator> totals;
  for (const Aggregate& aggregate : aggregates_) totals.emplace_back(aggregate.kind);
  const std::vector<std::byte> key = sorted_.Key();
  while (isAtRow_ && (keys_.empty() || sorted_.Key() == key)) {
    for (std::size_t i = 0; i < totals.size(); ++i) totals[i].Add(Evaluate(*aggregates_[i].argument, rowContext_));
    isAtRow_ = sorted_.Next();
  }
  for (const Accumulator& total : totals) values_.push_back(total.Result());
  return true;
}

void GroupedRows::Save(std::vector<std::byte>& place) {
  std::vector<std::byte> bytes(sizeof(std::uint32_t));
  for (const dao::Value& value : values_) AppendValue(value, bytes);
  Put32(bytes, 0, static_cast<std::uint32_t>(bytes.size() - sizeof(std::uint32_t)));
  std::array<std::byte, sizeof(std::uint64_t)> offset;
  PutLittle(Bytes(offset), 0, kept_->Append(bytes));
  place.insert(place.end(), offset.begin(), offset.end());
}

void GroupedRows::Load(ConstBytes& place) {
  const auto offset = GetLittle<std::uint64_t>(place, 0);
  place = place.subspan(sizeof(std::uint64_t));
  std::array<std::byte, sizeof(std::uint32_t)> size;
  kept_->Read(offset, size);
  std::vector<std::byte> bytes(Get32(size, 0));
  kept_->Read(offset + sizeof(std::uint32_t), bytes);
  values_.clear();
  for (ConstBytes rest = bytes; !rest.empty();) values_.push_back(TakeValue(rest));
}

dao::Value GroupedRows::ValueAt(std::size_t column) {
  return column < values_.size() ? values_[column] : dao::Value();
}

std::optional<FoundName> GroupScope::FindOwn(std::u16string_view qualifier, std::u16string_view name) {
  std::optional<FoundName> found = tables_.FindOwn(qualifier, name);
  if (!found) return found;
  for (std::size_t i = 0; i < keys_.size(); ++i) {
    const Expression& key = *keys_[i];
    if (key.kind != Expression::Kind::Name || key.level != 0 || key.column != found->column) continue;
    found->column = i;
    return found;
  }
  Raise(platform::kErrNotAggregated, name);
}

void GroupBinder::Bind(Expression& e) {
  BindColumns(e);
  Rewrite(e);
}

// Names find the tables' columns first, so that whole expressions can be compared with the keys.
void GroupBinder::BindColumns(Expression& e) {
  if (e.kind == Expression::Kind::Name) return Binder(tables_, compilation_, 0).BindName(e);
  if (e.kind == Expression::Kind::Call && !IsAggregate(e)) CheckCall(e);
  for (const ExpressionPtr& operand : e.operands) {
    if (IsAggregate(e)) {
      Binder(tables_, compilation_, platform::kErrNestedAggregate).Bind(*operand);
    } else {
      BindColumns(*operand);
    }
  }
}

void GroupBinder::Rewrite(Expression& e) {
  for (std::size_t i = 0; i < keys_.size(); ++i) {
    if (!SameExpression(e, *keys_[i])) continue;
    const ColumnType type = TypeOf(e);
    e.kind = Expression::Kind::Name;
    e.operands.clear();
    e.column = i;
    e.level = 0;
    e.type = type.type;
    e.size = type.size;
    return;
  }
  if (IsAggregate(e)) return RewriteAggregate(e);
  const bool isUnknown = !compilation_.unknown.empty();
  if (e.kind == Expression::Kind::Name && e.level == 0 && !isUnknown) Raise(platform::kErrNotAggregated, e.name);
  for (const ExpressionPtr& operand : e.operands) Rewrite(*operand);
  if (e.kind == Expression::Kind::Subquery) e.subquery = BindSubquery(e, scope_, compilation_);
}

void GroupBinder::RewriteAggregate(Expression& e) {
  if (e.operands.size() != 1) {
    Raise(platform::kErrQueryExpression, u"Nieprawidłowa liczba argumentów funkcji", e.name);
  }
  const AggregateKind kind = *FindAggregate(e.name);
  if (kind != AggregateKind::Count && TypeOf(*e.operands[0]).type == dao::dbLongBinary) {
    Raise(platform::kErrAggregateOfLongValue, e.name);
  }
  const ColumnType type = TypeOfAggregate(e.name, *e.operands[0]);
  aggregates_.push_back({kind, std::move(e.operands[0])});
  e.operands.clear();
  e.kind = Expression::Kind::Name;
  e.column = keys_.size() + aggregates_.size() - 1;
  e.level = 0;
  e.type = type.type;
  e.size = type.size;
}

}  // namespace zimbrat::jet
