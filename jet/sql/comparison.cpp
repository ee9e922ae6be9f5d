// Comparisons between values.
#include <cmath>
#include <limits>

#include "jet/file/errors.h"
#include "jet/index/collation.h"
#include "jet/table/convert.h"
#include "jet/table/guid_text.h"

#include "operators.h"

namespace zimbrat::jet {

namespace {

template <class T>
int Order(const T& a, const T& b) {
  return a < b ? -1 : b < a ? 1 : 0;
}

// Both of the kind T, or error 3464.
template <class T>
std::pair<const T*, const T*> Both(const dao::Value& a, const dao::Value& b) {
  const T* left = std::get_if<T>(&a);
  const T* right = std::get_if<T>(&b);
  if (!left || !right) Raise(platform::kErrCriteriaMismatch);
  return {left, right};
}

template <class T>
bool IsEither(const dao::Value& a, const dao::Value& b) {
  return std::holds_alternative<T>(a) || std::holds_alternative<T>(b);
}

bool IsAmount(NumberKind kind) { return kind == NumberKind::Currency || kind == NumberKind::Decimal; }

// Exact where an amount or a Decimal meets another exact number, else as Doubles.
int CompareNumbers(const dao::Value& a, const dao::Value& b) {
  const NumberKind left = KindOfNumber(a), right = KindOfNumber(b);
  const bool exact = (IsAmount(left) && (IsAmount(right) || right == NumberKind::Whole)) ||
                     (left == NumberKind::Whole && IsAmount(right));
  if (exact) return platform::Compare(*FindExact(a), *FindExact(b));
  // A broken file may hold what is no number; it goes last, so that there is one order.
  const auto ordered = [](double number) {
    return std::isnan(number) ? std::numeric_limits<double>::infinity() : number;
  };
  return Order(ordered(NumberOf(a)), ordered(NumberOf(b)));
}

// A text next to a GUID is one, or error 3464.
dao::Guid GuidOf(const dao::Value& v) {
  if (const auto* guid = std::get_if<dao::Guid>(&v)) return *guid;
  const auto* text = std::get_if<std::u16string>(&v);
  const std::optional<dao::Guid> guid = text ? FindGuid(*text) : std::nullopt;
  if (!guid) Raise(platform::kErrCriteriaMismatch);
  return *guid;
}

}  // namespace

int CompareValues(const dao::Value& a, const dao::Value& b) {
  if (IsEither<dao::Guid>(a, b)) {
    return Order(GuidOf(a).bytes, GuidOf(b).bytes);
  }
  if (IsEither<dao::Binary>(a, b)) {
    const auto [left, right] = Both<dao::Binary>(a, b);
    return Order(*left, *right);
  }
  if (IsEither<std::u16string>(a, b)) {
    const auto [left, right] = Both<std::u16string>(a, b);
    const auto order = CompareText(*left, *right);
    return order < 0 ? -1 : order > 0 ? 1 : 0;
  }
  return CompareNumbers(a, b);
}

dao::Value Comparison(Operator op, const dao::Value& a, const dao::Value& b) {
  if (dao::IsNull(a) || dao::IsNull(b)) return dao::Null{};
  const int order = CompareValues(a, b);
  switch (op) {
    case Operator::Equal: return order == 0;
    case Operator::NotEqual: return order != 0;
    case Operator::Less: return order < 0;
    case Operator::LessEqual: return order <= 0;
    case Operator::Greater: return order > 0;
    default: return order >= 0;
  }
}

}  // namespace zimbrat::jet
