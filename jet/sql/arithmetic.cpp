// Arithmetic and the joining of texts. Whole numbers stay whole while they fit a Long, amounts and Decimals are
// reckoned exactly, dates stay dates; all else is a Double.
#include <cmath>
#include <limits>

#include "jet/file/errors.h"
#include "jet/table/convert.h"
#include "jet/table/decimal.h"
#include "platform/dates.h"
#include "platform/numbers.h"

#include "operators.h"

namespace zimbrat::jet {

namespace {

using platform::ExactNumber;

struct KindFinder {
  using Kind = std::optional<NumberKind>;
  Kind operator()(bool) const { return NumberKind::Whole; }
  Kind operator()(std::uint8_t) const { return NumberKind::Whole; }
  Kind operator()(std::int16_t) const { return NumberKind::Whole; }
  Kind operator()(std::int32_t) const { return NumberKind::Whole; }
  Kind operator()(dao::Currency) const { return NumberKind::Currency; }
  Kind operator()(const dao::Decimal&) const { return NumberKind::Decimal; }
  Kind operator()(dao::Date) const { return NumberKind::Date; }
  Kind operator()(float) const { return NumberKind::Double; }
  Kind operator()(double) const { return NumberKind::Double; }
  Kind operator()(const std::u16string&) const { return NumberKind::Double; }
  template <class Other>
  Kind operator()(const Other&) const { return std::nullopt; }
};

double Finite(double number) {
  if (!std::isfinite(number)) Raise(platform::kErrOverflow);
  return number;
}

dao::Value LongOrDouble(std::int64_t number) {
  if (number < std::numeric_limits<std::int32_t>::min() || number > std::numeric_limits<std::int32_t>::max()) {
    return static_cast<double>(number);
  }
  return static_cast<std::int32_t>(number);
}

dao::Value InRange(dao::Date date) {
  if (!platform::IsDateInRange(date.days)) Raise(platform::kErrOverflow);
  return date;
}

template <class Number>
Number Plain(Operator op, Number a, Number b) {
  return op == Operator::Add ? a + b : op == Operator::Subtract ? a - b : a * b;
}

ExactNumber Exact(Operator op, const ExactNumber& a, const ExactNumber& b) {
  if (op == Operator::Multiply) return Product(a, b);
  return Sum(a, op == Operator::Add ? b : Negated(b));
}

ExactNumber ExactOf(const dao::Value& v) {
  const std::optional<ExactNumber> number = FindExact(v);
  if (!number) Raise(platform::kErrOverflow);  // an infinite one
  return *number;
}

std::optional<dao::Value> FindExactResult(bool decimal, const ExactNumber& result) {
  if (decimal) {
    if (const auto found = FindDecimal(result)) return *found;
  } else if (const auto scaled = platform::FindScaled(result, 4)) {
    return dao::Currency{*scaled};
  }
  return std::nullopt;
}

// An amount with a Double gives an amount in sums, a Double in products.
bool IsExact(Operator op, NumberKind a, NumberKind b) {
  if (a == NumberKind::Date || b == NumberKind::Date) return false;
  const auto either = [&](NumberKind kind) { return a == kind || b == kind; };
  if (!either(NumberKind::Double)) return true;
  return op != Operator::Multiply && either(NumberKind::Currency);
}

dao::Value SumOrProduct(Operator op, const dao::Value& a, const dao::Value& b) {
  const NumberKind left = KindOfNumber(a), right = KindOfNumber(b);
  const double number = Plain(op, NumberOf(a), NumberOf(b));
  if (left == NumberKind::Whole && right == NumberKind::Whole) {
    const auto whole = [](const dao::Value& v) { return static_cast<std::int64_t>(NumberOf(v)); };
    return LongOrDouble(Plain(op, whole(a), whole(b)));
  }
  const bool inexact = left == NumberKind::Double || right == NumberKind::Double;
  if (IsExact(op, left, right)) {
    const bool decimal = left == NumberKind::Decimal || right == NumberKind::Decimal;
    const auto result = FindExactResult(decimal, Exact(op, ExactOf(a), ExactOf(b)));
    if (result) return *result;
    if (!inexact) Raise(platform::kErrOverflow);
  }
  const bool dates = left == NumberKind::Date || right == NumberKind::Date;
  const bool span = left == right && op == Operator::Subtract;
  if (dates && !span && op != Operator::Multiply) return InRange({Finite(number)});
  return Finite(number);
}

dao::Value WholeDivision(Operator op, const dao::Value& a, const dao::Value& b) {
  const std::int64_t left = platform::LongFromDouble(NumberOf(a));
  const std::int64_t right = platform::LongFromDouble(NumberOf(b));
  if (right == 0) Raise(platform::kErrDivisionByZero);
  const std::int64_t result = op == Operator::Modulo ? left % right : left / right;
  if (result > std::numeric_limits<std::int32_t>::max()) Raise(platform::kErrOverflow);
  return static_cast<std::int32_t>(result);
}

dao::Value Power(double base, double exponent) {
  const double result = std::pow(base, exponent);
  if (std::isnan(result) || (base == 0 && exponent < 0)) Raise(platform::kErrInvalidCall);
  return Finite(result);
}

dao::Value Quotient(double a, double b) {
  if (b == 0) Raise(platform::kErrDivisionByZero);
  return Finite(a / b);
}

}  // namespace

NumberKind KindOfNumber(const dao::Value& value) {
  const std::optional<NumberKind> kind = std::visit(KindFinder{}, value);
  if (!kind) Raise(platform::kErrCriteriaMismatch);
  return *kind;
}

double NumberOf(const dao::Value& value) {
  const std::optional<double> number = FindDouble(value);
  if (!number) Raise(platform::kErrCriteriaMismatch);
  return *number;
}

dao::Value Arithmetic(Operator op, const dao::Value& a, const dao::Value& b) {
  if (dao::IsNull(a) || dao::IsNull(b)) return dao::Null{};
  switch (op) {
    case Operator::Power: return Power(NumberOf(a), NumberOf(b));
    case Operator::Divide: return Quotient(NumberOf(a), NumberOf(b));
    case Operator::IntegerDivide:
    case Operator::Modulo: return WholeDivision(op, a, b);
    default: break;
  }
  const bool texts = std::holds_alternative<std::u16string>(a) && std::holds_alternative<std::u16string>(b);
  return op == Operator::Add && texts ? JoinTexts(a, b) : SumOrProduct(op, a, b);
}

dao::Value Negated(const dao::Value& value) {
  if (dao::IsNull(value)) return value;
  if (const auto* date = std::get_if<dao::Date>(&value); date && platform::IsDateInRange(-date->days)) {
    return dao::Date{-date->days};
  }
  if (std::holds_alternative<dao::Date>(value)) return -NumberOf(value);
  return SumOrProduct(Operator::Multiply, value, std::int32_t{-1});
}

void CheckResultLength(std::size_t length) {
  if (length > kMaxResultLength) Raise(platform::kErrOutOfMemory);
}

dao::Value JoinTexts(const dao::Value& a, const dao::Value& b) {
  if (dao::IsNull(a) && dao::IsNull(b)) return dao::Null{};
  std::u16string text = TextOfValue(a) + TextOfValue(b);
  CheckResultLength(text.size());
  return text;
}

}  // namespace zimbrat::jet
