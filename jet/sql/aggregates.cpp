#include "aggregates.h"

#include <cmath>
#include <limits>
#include <utility>

#include "jet/file/errors.h"
#include "jet/sql/expression.h"
#include "jet/table/convert.h"
#include "platform/numbers.h"
#include "platform/text.h"

#include "operators.h"

namespace zimbrat::jet {

std::optional<AggregateKind> FindAggregate(std::u16string_view name) {
  constexpr std::pair<std::u16string_view, AggregateKind> names[] = {
      {u"COUNT", AggregateKind::Count},   {u"SUM", AggregateKind::Sum},       {u"AVG", AggregateKind::Avg},
      {u"MIN", AggregateKind::Min},       {u"MAX", AggregateKind::Max},       {u"FIRST", AggregateKind::First},
      {u"LAST", AggregateKind::Last},     {u"STDEV", AggregateKind::StDev},   {u"STDEVP", AggregateKind::StDevP},
      {u"VAR", AggregateKind::Var},       {u"VARP", AggregateKind::VarP}};
  for (const auto& [text, kind] : names) {
    if (platform::EqualIgnoringCase(text, name)) return kind;
  }
  return std::nullopt;
}

void Accumulator::AddNumber(const dao::Value& value) {
  const bool isText = std::holds_alternative<std::u16string>(value);
  const std::optional<double> number = isText ? std::nullopt : FindDouble(value);
  if (!number) Raise(platform::kErrCriteriaMismatch);
  sum_ += *number;
  if (!std::isfinite(sum_)) Raise(platform::kErrOverflow);
  const double distance = *number - mean_;
  mean_ += distance / static_cast<double>(count_);
  squares_ += distance * (*number - mean_);
  const auto* amount = std::get_if<dao::Currency>(&value);
  areAmounts_ = areAmounts_ && amount;
  if (!areAmounts_) return;
  const bool overflows = amount->scaled > 0 ? amount_ > std::numeric_limits<std::int64_t>::max() - amount->scaled
                                            : amount_ < std::numeric_limits<std::int64_t>::min() - amount->scaled;
  if (overflows) Raise(platform::kErrOverflow);
  amount_ += amount->scaled;
}

void Accumulator::Add(const dao::Value& value) {
  if (kind_ == AggregateKind::Last || (kind_ == AggregateKind::First && count_ == 0)) value_ = value;
  if (kind_ == AggregateKind::First || kind_ == AggregateKind::Last) {
    ++count_;
    return;
  }
  if (dao::IsNull(value)) return;
  ++count_;
  switch (kind_) {
    case AggregateKind::Count: return;
    case AggregateKind::Min:
      if (count_ == 1 || IsTrue(Comparison(Operator::Less, value, value_))) value_ = value;
      return;
    case AggregateKind::Max:
      if (count_ == 1 || IsTrue(Comparison(Operator::Greater, value, value_))) value_ = value;
      return;
    default: AddNumber(value);
  }
}

// The sum, or the mean, as an amount when all were amounts.
dao::Value Accumulator::Total() const {
  const bool mean = kind_ == AggregateKind::Avg;
  if (!areAmounts_) return mean ? sum_ / static_cast<double>(count_) : sum_;
  if (!mean) return dao::Currency{amount_};
  return dao::Currency{static_cast<std::int64_t>(
      platform::RoundHalfEven(static_cast<double>(amount_) / static_cast<double>(count_)))};
}

dao::Value Accumulator::Result() const {
  const double count = static_cast<double>(count_);
  switch (kind_) {
    case AggregateKind::Count: return static_cast<std::int32_t>(count_);
    case AggregateKind::Min:
    case AggregateKind::Max:
    case AggregateKind::First:
    case AggregateKind::Last: return value_;
    case AggregateKind::Sum:
    case AggregateKind::Avg: return count_ == 0 ? dao::Value() : Total();
    default: break;
  }
  const bool population = kind_ == AggregateKind::StDevP || kind_ == AggregateKind::VarP;
  if (count_ < (population ? 1 : 2)) return dao::Null{};
  const double variance = squares_ / (population ? count : count - 1);
  const bool isVariance = kind_ == AggregateKind::Var || kind_ == AggregateKind::VarP;
  return isVariance ? variance : std::sqrt(variance);
}

}  // namespace zimbrat::jet
