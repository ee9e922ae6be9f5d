#include "column_type.h"

#include <algorithm>

#include "jet/catalog/field_spec.h"
#include "platform/text.h"

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
  const bool amounts = (a == dao::dbCurrency || IsWholeType(a)) && (b == dao::dbCurrency || IsWholeType(b));
  if (amounts) return Fixed(dao::dbCurrency);
  const bool sum = e.op == Operator::Add || e.op == Operator::Subtract || e.op == Operator::Negate;
  if (sum && (a == dao::dbDate) != (b == dao::dbDate)) return Fixed(dao::dbDate);
  return Fixed(dao::dbDouble);
}

struct FunctionType {
  std::u16string_view name;
  std::int16_t type;
};
constexpr FunctionType kFunctions[] = {
    {u"LEN", dao::dbLong},         {u"INSTR", dao::dbLong},       {u"INSTRREV", dao::dbLong},
    {u"CLNG", dao::dbLong},        {u"DATEDIFF", dao::dbLong},    {u"CINT", dao::dbInteger},
    {u"ASC", dao::dbInteger},      {u"ASCW", dao::dbInteger},     {u"YEAR", dao::dbInteger},
    {u"MONTH", dao::dbInteger},    {u"DAY", dao::dbInteger},      {u"HOUR", dao::dbInteger},
    {u"MINUTE", dao::dbInteger},   {u"SECOND", dao::dbInteger},   {u"WEEKDAY", dao::dbInteger},
    {u"DATEPART", dao::dbInteger}, {u"STRCOMP", dao::dbInteger},  {u"SGN", dao::dbInteger},
    {u"CBYTE", dao::dbByte},       {u"CBOOL", dao::dbBoolean},    {u"ISNULL", dao::dbBoolean},
    {u"ISDATE", dao::dbBoolean},   {u"ISNUMERIC", dao::dbBoolean}, {u"CCUR", dao::dbCurrency},
    {u"CSNG", dao::dbSingle},      {u"CDBL", dao::dbDouble},      {u"VAL", dao::dbDouble},
    {u"SQR", dao::dbDouble},       {u"EXP", dao::dbDouble},       {u"LOG", dao::dbDouble},
    {u"SIN", dao::dbDouble},       {u"COS", dao::dbDouble},       {u"TAN", dao::dbDouble},
    {u"ATN", dao::dbDouble},       {u"RND", dao::dbSingle},       {u"NOW", dao::dbDate},
    {u"DATE", dao::dbDate},        {u"TIME", dao::dbDate},        {u"DATESERIAL", dao::dbDate},
    {u"TIMESERIAL", dao::dbDate},  {u"DATEVALUE", dao::dbDate},   {u"TIMEVALUE", dao::dbDate},
    {u"DATEADD", dao::dbDate},     {u"CDATE", dao::dbDate},       {u"CVDATE", dao::dbDate},
};
// Functions whose value is of the type of an argument: the first that is not just Null.
struct FunctionOfArgument {
  std::u16string_view name;
  std::size_t first;
  std::size_t step;
};
constexpr FunctionOfArgument kByArgument[] = {{u"IIF", 1, 1},  {u"CHOOSE", 1, 1}, {u"SWITCH", 1, 2},
                                              {u"ABS", 0, 9},  {u"INT", 0, 9},    {u"FIX", 0, 9},
                                              {u"ROUND", 0, 9}, {u"CVAR", 0, 9}};

ColumnType OfCall(const Expression& e) {
  for (const FunctionType& function : kFunctions) {
    if (platform::EqualIgnoringCase(function.name, e.name)) return Fixed(function.type);
  }
  for (const FunctionOfArgument& function : kByArgument) {
    if (!platform::EqualIgnoringCase(function.name, e.name)) continue;
    for (std::size_t i = function.first; i < e.operands.size(); i += function.step) {
      const Expression& argument = *e.operands[i];
      if (argument.kind != Expression::Kind::Literal || !dao::IsNull(argument.value)) return TypeOf(argument);
    }
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
  return e.op >= Operator::Equal ? Fixed(dao::dbBoolean) : OfArithmetic(e);
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
