// Arithmetic and the joining of texts.
#include <cmath>
#include <limits>

#include "jet/file/errors.h"
#include "jet/table/convert.h"
#include "platform/numbers.h"

#include "operators.h"

namespace zimbrat::jet {

namespace {

constexpr double kCurrencyScale = 10000.0;

[[noreturn]] void RaiseMismatch() { Raise(platform::kErrCriteriaMismatch); }

bool IsText(const dao::Value& v) { return std::holds_alternative<std::u16string>(v); }
bool IsDate(const dao::Value& v) { return std::holds_alternative<dao::Date>(v); }
bool IsCurrency(const dao::Value& v) { return std::holds_alternative<dao::Currency>(v); }
bool IsWhole(const dao::Value& v) {
  return std::holds_alternative<bool>(v) || std::holds_alternative<std::uint8_t>(v) ||
         std::holds_alternative<std::int16_t>(v) || std::holds_alternative<std::int32_t>(v);
}

double NumberOf(const dao::Value& v) {
  const std::optional<double> number = FindDouble(v);
  if (!number) RaiseMismatch();
  return *number;
}

double Finite(double number) {
  if (!std::isfinite(number)) Raise(platform::kErrOverflow);
  return number;
}

std::int32_t LongOf(const dao::Value& v) { return platform::LongFromDouble(NumberOf(v)); }

// Whole numbers stay whole while they fit a Long; amounts stay amounts; dates stay dates.
dao::Value TypedResult(Operator op, const dao::Value& a, const dao::Value& b, double result) {
  if (IsWhole(a) && IsWhole(b) && std::abs(result) <= 2147483647.0) {
    return static_cast<std::int32_t>(result);
  }
  const bool sum = op == Operator::Add || op == Operator::Subtract;
  if (sum && IsDate(a) != IsDate(b)) return dao::Date{result};
  const bool amounts = (IsCurrency(a) && (IsCurrency(b) || IsWhole(b))) || (IsWhole(a) && IsCurrency(b));
  const double scaled = platform::RoundHalfEven(result * kCurrencyScale);
  if (amounts && std::abs(scaled) < 9.2e18) return dao::Currency{static_cast<std::int64_t>(scaled)};
  return result;
}

}  // namespace

dao::Value Arithmetic(Operator op, const dao::Value& a, const dao::Value& b) {
  if (dao::IsNull(a) || dao::IsNull(b)) return dao::Null{};
  if (op == Operator::Add && IsText(a) && IsText(b)) {
    return std::get<std::u16string>(a) + std::get<std::u16string>(b);
  }
  switch (op) {
    case Operator::Add: return TypedResult(op, a, b, Finite(NumberOf(a) + NumberOf(b)));
    case Operator::Subtract: return TypedResult(op, a, b, Finite(NumberOf(a) - NumberOf(b)));
    case Operator::Multiply: return TypedResult(op, a, b, Finite(NumberOf(a) * NumberOf(b)));
    case Operator::Power: return Finite(std::pow(NumberOf(a), NumberOf(b)));
    case Operator::Divide:
      if (NumberOf(b) == 0) Raise(platform::kErrDivisionByZero);
      return Finite(NumberOf(a) / NumberOf(b));
    default: break;
  }
  const std::int64_t left = LongOf(a);
  const std::int64_t right = LongOf(b);
  if (right == 0) Raise(platform::kErrDivisionByZero);
  const std::int64_t result = op == Operator::Modulo ? left % right : left / right;
  if (result > std::numeric_limits<std::int32_t>::max()) Raise(platform::kErrOverflow);
  return static_cast<std::int32_t>(result);
}

dao::Value Negated(const dao::Value& v) {
  if (dao::IsNull(v)) return v;
  if (const auto* amount = std::get_if<dao::Currency>(&v)) return dao::Currency{-amount->scaled};
  return TypedResult(Operator::Subtract, std::int32_t{0}, v, -NumberOf(v));
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
