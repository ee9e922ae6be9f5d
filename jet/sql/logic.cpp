// The logical operators. The unknown of three-valued logic is Null.
#include "jet/file/errors.h"
#include "jet/table/convert.h"
#include "platform/numbers.h"

#include "operators.h"

namespace zimbrat::jet {

namespace {

using Bits = std::optional<std::int32_t>;

Bits BitsOf(const dao::Value& v) {
  if (dao::IsNull(v)) return std::nullopt;
  const std::optional<double> number = FindDouble(v);
  if (!number) Raise(platform::kErrCriteriaMismatch);
  return platform::LongFromDouble(*number);
}

Bits Combined(Operator op, Bits a, Bits b) {
  const bool known = a && b;
  switch (op) {
    case Operator::And:
      if (a == 0 || b == 0) return 0;
      return known ? Bits(*a & *b) : std::nullopt;
    case Operator::Or:
      if (a == -1 || b == -1) return -1;
      return known ? Bits(*a | *b) : std::nullopt;
    case Operator::Implies:
      if (a == 0 || b == -1) return -1;
      return known ? Bits(~*a | *b) : std::nullopt;
    case Operator::Xor: return known ? Bits(*a ^ *b) : std::nullopt;
    default: return known ? Bits(~(*a ^ *b)) : std::nullopt;
  }
}

bool IsBooleanOrNull(const dao::Value& v) { return dao::IsNull(v) || std::holds_alternative<bool>(v); }

dao::Value FromBits(Bits bits, bool boolean) {
  if (!bits) return dao::Null{};
  if (boolean) return *bits != 0;
  return *bits;
}

}  // namespace

dao::Value Logic(Operator op, const dao::Value& a, const dao::Value& b) {
  return FromBits(Combined(op, BitsOf(a), BitsOf(b)), IsBooleanOrNull(a) && IsBooleanOrNull(b));
}

dao::Value LogicalNot(const dao::Value& value) {
  const Bits bits = BitsOf(value);
  return FromBits(bits ? Bits(~*bits) : std::nullopt, IsBooleanOrNull(value));
}

}  // namespace zimbrat::jet
