#include "jet/sql/index_range.h"

#include <algorithm>
#include <cmath>

#include "jet/index/collation.h"
#include "jet/index/key.h"
#include "jet/table/convert.h"

namespace zimbrat::jet {

namespace {

// The value as the column would hold it, when nothing is lost on the way.
std::optional<dao::Value> ExactValue(const Column& column, const dao::Value& value) {
  if (column.IsText()) {
    const bool fits = std::holds_alternative<std::u16string>(value) &&
                      std::get<std::u16string>(value).size() <= kMaxIndexedUnits;
    return fits ? std::optional(value) : std::nullopt;
  }
  if (column.type == kTypeGuid) {
    return std::holds_alternative<dao::Guid>(value) ? std::optional(value) : std::nullopt;
  }
  if (std::holds_alternative<std::u16string>(value)) return std::nullopt;
  const std::optional<double> number = FindDouble(value);
  if (!number || !std::isfinite(*number)) return std::nullopt;
  switch (column.type) {
    case kTypeBoolean:
      if (*number != 0 && *number != -1) return std::nullopt;
      return dao::Value(*number != 0);
    case kTypeByte:
    case kTypeInteger:
    case kTypeLong: {
      constexpr double kLeast[] = {0, -32768, -2147483648.0};
      constexpr double kMost[] = {255, 32767, 2147483647.0};
      const std::size_t i = column.type - kTypeByte;
      if (*number != std::trunc(*number) || *number < kLeast[i] || *number > kMost[i]) return std::nullopt;
      return dao::Value(static_cast<std::int32_t>(*number));
    }
    case kTypeDouble: return dao::Value(*number);
    case kTypeDate: return dao::Value(dao::Date{*number});
    case kTypeCurrency:
      return std::holds_alternative<dao::Currency>(value) || *number == std::trunc(*number)
                 ? std::optional(ConvertToColumn(column, value))
                 : std::nullopt;
    default: return std::nullopt;
  }
}

bool CanLookUp(const Column& column) {
  if (column.IsText()) return static_cast<std::uint16_t>(column.extra) == kGeneralLanguage;
  return column.type == kTypeGuid ||
         (column.type >= kTypeBoolean && column.type <= kTypeDate && column.type != kTypeSingle);
}

Operator Mirrored(Operator op) {
  switch (op) {
    case Operator::Less: return Operator::Greater;
    case Operator::LessEqual: return Operator::GreaterEqual;
    case Operator::Greater: return Operator::Less;
    case Operator::GreaterEqual: return Operator::LessEqual;
    default: return op;
  }
}

}  // namespace

IndexRange::Bound IndexRange::FindBound(std::size_t column, const Conditions& conditions, const OwnColumn& own,
                                        const IsKnown& isKnown) {
  Bound bound;
  bound.column = column;
  for (const Expression* c : conditions) {
    if (c->kind != Expression::Kind::Operation) continue;
    if (c->op == Operator::Between && own(*c->operands[0]) == column && isKnown(*c->operands[1]) &&
        isKnown(*c->operands[2])) {
      return {column, nullptr, c->operands[1].get(), c->operands[2].get(), true};
    }
    if (c->operands.size() != 2) continue;
    if (c->op < Operator::Equal || c->op > Operator::GreaterEqual || c->op == Operator::NotEqual) continue;
    for (const std::size_t side : {0, 1}) {
      const Expression& value = *c->operands[1 - side];
      if (own(*c->operands[side]) != column || !isKnown(value)) continue;
      const Operator op = side == 0 ? c->op : Mirrored(c->op);
      if (op == Operator::Equal) bound.equal = &value;
      if (op == Operator::Less || op == Operator::LessEqual) bound.high = &value;
      if (op == Operator::Greater || op == Operator::GreaterEqual) bound.low = &value;
    }
  }
  return bound;
}

std::optional<IndexRange> IndexRange::Choose(Table& table, const Conditions& conditions, const OwnColumn& column,
                                             const IsKnown& isKnown) {
  std::optional<IndexRange> best;
  double bestScore = 0;
  const TableDefinition& definition = table.Definition();
  for (std::size_t i = 0; i < definition.realIndexes.size(); ++i) {
    const RealIndex& index = definition.realIndexes[i];
    IndexRange range;
    range.realIndex_ = i;
    double score = 0;
    for (const IndexColumn& part : index.columns) {
      const std::optional<std::size_t> position = definition.FindColumnById(part.columnId);
      if (!position || !CanLookUp(definition.columns[*position])) break;
      Bound bound = FindBound(*position, conditions, column, isKnown);
      if (bound.equal) bound.low = bound.high = nullptr;
      const bool isRange = bound.low || bound.high;
      if (!bound.equal && (!isRange || !part.ascending)) break;
      range.bounds_.push_back(bound);
      range.ascending_.push_back(part.ascending);
      score += bound.equal ? 1 : 0.25;
      if (!bound.equal) break;
    }
    const bool isWhole = range.bounds_.size() == index.columns.size();
    if (index.IgnoresNulls() && !isWhole) continue;  // rows with nulls further on may not be in it
    if (index.IsUnique() && isWhole) score += 0.5;
    if (score <= bestScore) continue;
    bestScore = score;
    best = std::move(range);
  }
  return best;
}

IndexRange::Appended IndexRange::Append(Table& table, const Bound& bound, const Expression& value,
                                        const EvaluationContext& context, std::vector<std::byte>& key) const {
  const dao::Value v = Evaluate(value, context);
  if (dao::IsNull(v)) return Appended::NeverEqual;
  const Column& column = table.Definition().columns[bound.column];
  const std::optional<dao::Value> exact = ExactValue(column, v);
  if (!exact) return Appended::Unusable;
  const std::size_t part = static_cast<std::size_t>(&bound - bounds_.data());
  AppendKeyColumn({column.type, ascending_[part]}, *exact, key);
  if (key.size() > kMaxKeyLength) key.resize(kMaxKeyLength);
  return Appended::Yes;
}

bool IndexRange::Start(Table& table, const EvaluationContext& context) {
  cursor_.reset();
  std::vector<std::byte> low;
  high_.clear();
  for (const Bound& bound : bounds_) {
    if (bound.equal) {
      const Appended appended = Append(table, bound, *bound.equal, context, low);
      if (appended != Appended::Yes) return appended == Appended::NeverEqual;
      high_ = low;
      continue;
    }
    if (bound.high) {
      const Appended appended = Append(table, bound, *bound.high, context, high_);
      if (appended != Appended::Yes) return appended == Appended::NeverEqual;
    }
    if (bound.low) {
      const Appended appended = Append(table, bound, *bound.low, context, low);
      if (appended != Appended::Yes) return appended == Appended::NeverEqual;
    }
    if (bound.mayBeExchanged && high_ < low) std::swap(high_, low);
  }
  cursor_ = table.Tree(realIndex_).Seek(low);
  return true;
}

std::optional<RowPointer> IndexRange::Next() {
  if (!cursor_) return std::nullopt;
  const ConstBytes key = cursor_->Valid() ? cursor_->Key() : ConstBytes();
  const ConstBytes start = key.first(std::min(key.size(), high_.size()));
  if (!cursor_->Valid() || std::lexicographical_compare(high_.begin(), high_.end(), start.begin(), start.end())) {
    cursor_.reset();
    return std::nullopt;
  }
  const RowPointer row = cursor_->Row();
  cursor_->Next();
  return row;
}

}  // namespace zimbrat::jet
