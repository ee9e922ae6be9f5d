#include "column_type.h"

#include <algorithm>

#include "jet/catalog/field_spec.h"
#include "jet/sql/functions.h"

#include "aggregates.h"
#include "subquery.h"

namespace zimbrat::jet {

namespace {

constexpr std::int32_t kTextSize = 255;

ColumnType Fixed(std::int16_t type) { return {type, FixedLength(type)}; }
ColumnType Text() { return {dao::dbText, kTextSize}; }
bool IsTextType(std::int16_t type) { return type == dao::dbText || type == dao::dbMemo; }
bool IsWholeType(std::int16_t type) { return type >= dao::dbBoolean && type <= dao::dbLong; }

struct TypeOfLiteral {
  ColumnType operator()(dao::Null) const { return Text(); }
  ColumnType operator()(bool) const { return Fixed(dao::dbBoolean); }
  ColumnType operator()(std::uint8_t) const { return Fixed(dao::dbByte); }
  ColumnType operator()(std::int16_t) const { return Fixed(dao::dbInteger); }
  ColumnType operator()(std::int32_t) const { return Fixed(dao::dbLong); }
  ColumnType operator()(dao::Currency) const { return Fixed(dao::dbCurrency); }
  ColumnType operator()(float) const { return Fixed(dao::dbSingle); }
  ColumnType operator()(double) const { return Fixed(dao::dbDouble); }
  ColumnType operator()(dao::Date) const { return Fixed(dao::dbDate); }
  ColumnType operator()(const std::u16string& v) const {
    return v.size() > kTextSize ? ColumnType{dao::dbMemo, 0} : Text();
  }
  ColumnType operator()(const dao::Binary&) const { return {dao::dbLongBinary, 0}; }
  ColumnType operator()(const dao::Guid&) const { return Fixed(dao::dbGUID); }
  ColumnType operator()(const dao::Decimal&) const { return Fixed(dao::dbDouble); }
};

ColumnType OfArithmetic(const Expression& e) {
  const std::int16_t a = TypeOf(*e.operands[0]).type;
  const std::int16_t b = e.operands.size() > 1 ? TypeOf(*e.operands[1]).type : a;
  if (e.op == Operator::Join) return a == dao::dbMemo || b == dao::dbMemo ? ColumnType{dao::dbMemo, 0} : Text();
  if (e.op == Operator::Add && IsTextType(a) && IsTextType(b)) {
    return a == dao::dbMemo || b == dao::dbMemo ? ColumnType{dao::dbMemo, 0} : Text();
  }
  if (e.op == Operator::IntegerDivide || e.op == Operator::Modulo) return Fixed(dao::dbLong);
  if (e.op == Operator::Power || e.op == Operator::Divide) return Fixed(dao::dbDouble);
  if (IsWholeType(a) && IsWholeType(b)) return Fixed(dao::dbLong);
  const bool product = e.op == Operator::Multiply;
  const auto either = [&](std::int16_t type) { return a == type || b == type; };
  if (either(dao::dbDate)) {
    const bool span = e.op == Operator::Subtract && a == b;
    return Fixed(product || span ? dao::dbDouble : dao::dbDate);
  }
  const auto exact = [](std::int16_t type) { return type == dao::dbCurrency || IsWholeType(type); };
  const bool amount = either(dao::dbCurrency) && !either(dao::dbDecimal) && (!product || (exact(a) && exact(b)));
  return Fixed(amount ? dao::dbCurrency : dao::dbDouble);
}

// A choice whose first argument is just Null has the type of the next.
ColumnType OfCall(const Expression& e) {
  const FunctionResult result = ResultOf(e.name);
  if (result.type == dao::dbText) return Text();
  if (result.type != 0) return Fixed(result.type);
  for (std::size_t i = result.argument; i < e.operands.size(); i += result.step) {
    const Expression& argument = *e.operands[i];
    if (argument.kind != Expression::Kind::Literal || !dao::IsNull(argument.value)) return TypeOf(argument);
    if (result.step == 0) break;
  }
  return Text();
}

}  // namespace

ColumnType TypeOf(const Expression& e) {
  switch (e.kind) {
    case Expression::Kind::Literal: return std::visit(TypeOfLiteral{}, e.value);
    case Expression::Kind::Name: return e.type == 0 ? Text() : ColumnType{e.type, e.size};
    case Expression::Kind::Call: return OfCall(e);
    case Expression::Kind::Subquery: return TypeOfSubquery(e);
    default: break;
  }
  if (e.op < Operator::Equal) return OfArithmetic(e);
  // And and its like work on the bits of what is no condition.
  return Fixed(e.op >= Operator::Not && !IsCondition(e) ? dao::dbLong : dao::dbBoolean);
}

ColumnType TypeOfAggregate(std::u16string_view name, const Expression& argument) {
  const ColumnType own = TypeOf(argument);
  switch (FindAggregate(name).value_or(AggregateKind::Count)) {
    case AggregateKind::Count: return Fixed(dao::dbLong);
    case AggregateKind::Sum:
    case AggregateKind::Avg: return Fixed(own.type == dao::dbCurrency ? dao::dbCurrency : dao::dbDouble);
    case AggregateKind::Min:
    case AggregateKind::Max:
    case AggregateKind::First:
    case AggregateKind::Last: return own;
    default: return Fixed(dao::dbDouble);
  }
}

bool IsCondition(const Expression& e) {
  if (e.kind == Expression::Kind::Operation && e.op >= Operator::Not) {
    return std::all_of(e.operands.begin(), e.operands.end(),
                       [](const ExpressionPtr& operand) { return IsCondition(*operand); });
  }
  if (e.kind == Expression::Kind::Operation) return e.op >= Operator::Equal;
  if (e.kind == Expression::Kind::Literal) return std::holds_alternative<bool>(e.value);
  if (e.kind == Expression::Kind::Subquery) return e.use != SubqueryUse::Value;
  return e.kind == Expression::Kind::Name && e.type == dao::dbBoolean;
}

}  // namespace zimbrat::jet
