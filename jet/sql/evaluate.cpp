#include <optional>

#include "jet/file/errors.h"
#include "jet/sql/functions.h"
#include "jet/table/convert.h"

#include "operators.h"

namespace zimbrat::jet {

namespace {

class Evaluator {
 public:
  Evaluator(const Expression& e, const EvaluationContext& context) : e_(e), context_(context) {}

  dao::Value Run() const {
    switch (e_.op) {
      case Operator::Negate: return Negated(Operand(0));
      case Operator::Plus: return Operand(0);
      case Operator::Not: return LogicalNot(Operand(0));
      case Operator::IsNull: return dao::IsNull(Operand(0));
      case Operator::IsNotNull: return !dao::IsNull(Operand(0));
      case Operator::Join: return JoinTexts(Operand(0), Operand(1));
      case Operator::Like: return Like(kLikeWildcards);
      case Operator::ALike: return Like(kALikeWildcards);
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

  dao::Value Like(const Wildcards& wildcards) const {
    const dao::Value text = Operand(0), pattern = Operand(1);
    if (dao::IsNull(text) || dao::IsNull(pattern)) return dao::Null{};
    return MatchesPattern(TextOfValue(text), TextOfValue(pattern), wildcards);
  }
  dao::Value Between() const {
    const dao::Value v = Operand(0), a = Operand(1), b = Operand(2);
    if (dao::IsNull(v) || dao::IsNull(a) || dao::IsNull(b)) return dao::Null{};
    const bool swapped = CompareValues(a, b) > 0;
    return CompareValues(v, swapped ? b : a) >= 0 && CompareValues(v, swapped ? a : b) <= 0;
  }
  dao::Value In() const {
    const dao::Value v = Operand(0);
    if (dao::IsNull(v)) return dao::Null{};
    bool sawNull = false;
    for (std::size_t i = 1; i < e_.operands.size(); ++i) {
      const dao::Value item = Operand(i);
      if (dao::IsNull(item)) {
        sawNull = true;
      } else if (CompareValues(v, item) == 0) {
        return true;
      }
    }
    if (sawNull) return dao::Null{};
    return false;
  }

  const Expression& e_;
  const EvaluationContext& context_;
};

dao::Value ValueOfName(const Expression& e, const EvaluationContext& context) {
  const EvaluationContext* around = &context;
  for (std::size_t i = 0; i < e.level; ++i) around = around->outer;
  return around->valueOf(e.column);
}

}  // namespace

dao::Value Evaluate(const Expression& e, const EvaluationContext& context) {
  switch (e.kind) {
    case Expression::Kind::Literal: return e.value;
    case Expression::Kind::Name: return ValueOfName(e, context);
    case Expression::Kind::Subquery: return e.subquery->Evaluate(e, context);
    case Expression::Kind::Call: return CallFunction(e, context);
    default: return Evaluator(e, context).Run();
  }
}

bool IsTrue(const dao::Value& value) {
  if (dao::IsNull(value)) return false;
  const std::optional<double> number = FindDouble(value);
  if (!number) Raise(platform::kErrCriteriaMismatch);
  return *number != 0;
}

}  // namespace zimbrat::jet
