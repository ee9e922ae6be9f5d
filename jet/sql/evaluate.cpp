#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

#include "jet/file/errors.h"
#include "jet/index/collation.h"
#include "jet/sql/expression.h"
#include "jet/sql/functions.h"
#include "jet/table/convert.h"
#include "platform/numbers.h"
#include "platform/text.h"

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

dao::Value JoinTexts(const dao::Value& a, const dao::Value& b) {
  if (dao::IsNull(a) && dao::IsNull(b)) return dao::Null{};
  return TextOfValue(a) + TextOfValue(b);
}

// Negative, zero or positive; texts as the sort order compares them.
int Compare(const dao::Value& a, const dao::Value& b) {
  if (IsText(a) && IsText(b)) {
    const auto order = CompareText(std::get<std::u16string>(a), std::get<std::u16string>(b));
    return order < 0 ? -1 : order > 0 ? 1 : 0;
  }
  if (const auto* left = std::get_if<dao::Binary>(&a)) {
    const auto* right = std::get_if<dao::Binary>(&b);
    if (!right) RaiseMismatch();
    return *left < *right ? -1 : *right < *left ? 1 : 0;
  }
  if (const auto* left = std::get_if<dao::Guid>(&a)) {
    const auto* right = std::get_if<dao::Guid>(&b);
    if (!right) RaiseMismatch();
    return left->bytes < right->bytes ? -1 : right->bytes < left->bytes ? 1 : 0;
  }
  if (IsText(a) || IsText(b)) RaiseMismatch();
  if (IsCurrency(a) && IsCurrency(b)) {
    const std::int64_t left = std::get<dao::Currency>(a).scaled, right = std::get<dao::Currency>(b).scaled;
    return left < right ? -1 : left > right ? 1 : 0;
  }
  const double left = NumberOf(a), right = NumberOf(b);
  return left < right ? -1 : left > right ? 1 : 0;
}

dao::Value Comparison(Operator op, const dao::Value& a, const dao::Value& b) {
  if (dao::IsNull(a) || dao::IsNull(b)) return dao::Null{};
  const int order = Compare(a, b);
  switch (op) {
    case Operator::Equal: return order == 0;
    case Operator::NotEqual: return order != 0;
    case Operator::Less: return order < 0;
    case Operator::LessEqual: return order <= 0;
    case Operator::Greater: return order > 0;
    default: return order >= 0;
  }
}

// One element of a pattern: how far it reaches, and whether a character fits it.
struct PatternElement {
  std::size_t end = 0;
  bool fits = false;
};

PatternElement MatchElement(std::u16string_view pattern, std::size_t at, char16_t c) {
  const char16_t p = pattern[at];
  if (p == u'?') return {at + 1, true};
  if (p == u'#') return {at + 1, c >= u'0' && c <= u'9'};
  const std::size_t close = p == u'[' ? pattern.find(u']', at + 1) : pattern.npos;
  if (close == pattern.npos) return {at + 1, platform::UpperCase(p) == platform::UpperCase(c)};
  std::u16string_view set = pattern.substr(at + 1, close - at - 1);
  const bool negated = set.size() > 1 && set.front() == u'!';
  if (negated) set.remove_prefix(1);
  bool inside = false;
  for (std::size_t i = 0; i < set.size(); ++i) {
    const bool range = i + 2 < set.size() && set[i + 1] == u'-';
    const std::u16string_view low = set.substr(i, 1);
    const std::u16string_view high = range ? set.substr(i + 2, 1) : low;
    const std::u16string_view own(&c, 1);
    // Ranges follow the sort order: "ł" lies between "a" and "z".
    inside = inside || (CompareText(own, low) >= 0 && CompareText(own, high) <= 0);
    if (range) i += 2;
  }
  return {close + 1, inside != negated};
}

// `*` any run, `?` one character, `#` a digit, `[a-z]`, `[!a-z]`. Goes back to the last star only, so the
// time is bounded by the product of the lengths.
bool MatchesPattern(std::u16string_view text, std::u16string_view pattern) {
  std::size_t t = 0, p = 0, starPattern = pattern.npos, starText = 0;
  while (t < text.size()) {
    if (p < pattern.size() && pattern[p] == u'*') {
      starPattern = ++p;
      starText = t;
      continue;
    }
    if (p < pattern.size()) {
      const PatternElement element = MatchElement(pattern, p, text[t]);
      if (element.fits) {
        p = element.end;
        ++t;
        continue;
      }
    }
    if (starPattern == pattern.npos) return false;
    p = starPattern;
    t = ++starText;
  }
  while (p < pattern.size() && pattern[p] == u'*') ++p;
  return p == pattern.size();
}

// The truth of three-valued logic: nothing is Null. On numbers other than -1 and 0 the operators work on bits.
std::optional<std::int32_t> BitsOf(const dao::Value& v) {
  if (dao::IsNull(v)) return std::nullopt;
  return LongOf(v);
}

dao::Value FromBits(std::int32_t bits, bool boolean) {
  if (boolean) return bits != 0;
  return bits;
}

dao::Value Logic(Operator op, const dao::Value& a, const dao::Value& b) {
  const auto left = BitsOf(a), right = BitsOf(b);
  const bool boolean = (!left || std::holds_alternative<bool>(a)) && (!right || std::holds_alternative<bool>(b));
  const bool known = left && right;
  if (op == Operator::And) {
    if ((left && *left == 0) || (right && *right == 0)) return FromBits(0, boolean);
    if (known) return FromBits(*left & *right, boolean);
  } else if (op == Operator::Or) {
    if (known) return FromBits(*left | *right, boolean);
    if ((left && *left == -1) || (right && *right == -1)) return FromBits(-1, boolean);
  } else if (op == Operator::Implies) {
    if (known) return FromBits(~*left | *right, boolean);
    if ((left && *left == 0) || (right && *right == -1)) return FromBits(-1, boolean);
  } else if (known) {
    return FromBits(op == Operator::Xor ? *left ^ *right : ~(*left ^ *right), boolean);
  }
  return dao::Null{};
}

class Evaluator {
 public:
  Evaluator(const Expression& e, const EvaluationContext& context) : e_(e), context_(context) {}

  dao::Value Run() const {
    switch (e_.op) {
      case Operator::Negate: return Negate(Operand(0));
      case Operator::Plus: return Operand(0);
      case Operator::Not: return Not(Operand(0));
      case Operator::IsNull: return dao::IsNull(Operand(0));
      case Operator::IsNotNull: return !dao::IsNull(Operand(0));
      case Operator::Join: return JoinTexts(Operand(0), Operand(1));
      case Operator::Like: return Like();
      case Operator::Between: return Between();
      case Operator::In: return In();
      default: break;
    }
    if (e_.op >= Operator::And) return Logic(e_.op, Operand(0), Operand(1));
    if (e_.op >= Operator::Equal && e_.op <= Operator::GreaterEqual) {
      return Comparison(e_.op, Operand(0), Operand(1));
    }
    return Arithmetic(e_.op, Operand(0), Operand(1));
  }

 private:
  dao::Value Operand(std::size_t i) const { return Evaluate(*e_.operands[i], context_); }

  static dao::Value Negate(const dao::Value& v) {
    if (dao::IsNull(v)) return v;
    if (const auto* amount = std::get_if<dao::Currency>(&v)) return dao::Currency{-amount->scaled};
    return TypedResult(Operator::Subtract, std::int32_t{0}, v, -NumberOf(v));
  }
  static dao::Value Not(const dao::Value& v) {
    const auto bits = BitsOf(v);
    if (!bits) return dao::Null{};
    return FromBits(~*bits, std::holds_alternative<bool>(v));
  }
  dao::Value Like() const {
    const dao::Value text = Operand(0), pattern = Operand(1);
    if (dao::IsNull(text) || dao::IsNull(pattern)) return dao::Null{};
    return MatchesPattern(TextOfValue(text), TextOfValue(pattern));
  }
  dao::Value Between() const {
    const dao::Value v = Operand(0), a = Operand(1), b = Operand(2);
    if (dao::IsNull(v) || dao::IsNull(a) || dao::IsNull(b)) return dao::Null{};
    const bool swapped = Compare(a, b) > 0;
    return Compare(v, swapped ? b : a) >= 0 && Compare(v, swapped ? a : b) <= 0;
  }
  dao::Value In() const {
    const dao::Value v = Operand(0);
    if (dao::IsNull(v)) return dao::Null{};
    bool sawNull = false;
    for (std::size_t i = 1; i < e_.operands.size(); ++i) {
      const dao::Value item = Operand(i);
      if (dao::IsNull(item)) {
        sawNull = true;
      } else if (Compare(v, item) == 0) {
        return true;
      }
    }
    if (sawNull) return dao::Null{};
    return false;
  }

  const Expression& e_;
  const EvaluationContext& context_;
};

}  // namespace

dao::Value Evaluate(const Expression& e, const EvaluationContext& context) {
  switch (e.kind) {
    case Expression::Kind::Literal: return e.value;
    case Expression::Kind::Name: return context.valueOf(e.column);
    case Expression::Kind::Call: return CallFunction(e, context);
    default: return Evaluator(e, context).Run();
  }
}

bool IsTrue(const dao::Value& value) {
  const std::optional<double> number = FindDouble(value);
  return number && *number != 0;
}

}  // namespace zimbrat::jet
