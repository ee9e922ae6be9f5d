// Comparisons between values.
#include "jet/file/errors.h"
#include "jet/index/collation.h"
#include "jet/table/convert.h"

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

double NumberOf(const dao::Value& v) {
  const std::optional<double> number = FindDouble(v);
  if (!number) Raise(platform::kErrCriteriaMismatch);
  return *number;
}

}  // namespace

int CompareValues(const dao::Value& a, const dao::Value& b) {
  if (IsEither<dao::Guid>(a, b)) {
    const auto [left, right] = Both<dao::Guid>(a, b);
    return Order(left->bytes, right->bytes);
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
  return Order(NumberOf(a), NumberOf(b));
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
