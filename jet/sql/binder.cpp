#include "jet/sql/binder.h"

#include <algorithm>

#include "jet/file/errors.h"
#include "jet/sql/functions.h"
#include "platform/text.h"

#include "aggregates.h"
#include "subquery.h"

namespace zimbrat::jet {

void Compilation::RequireAllKnown() const {
  if (unknown.empty()) return;
  Raise(platform::kErrTooFewParameters, platform::DecimalText(static_cast<long long>(unknown.size())));
}

bool IsAggregate(const Expression& e) {
  return e.kind == Expression::Kind::Call && FindAggregate(e.name).has_value();
}

bool ContainsAggregate(const Expression& e) {
  return IsAggregate(e) || std::any_of(e.operands.begin(), e.operands.end(),
                                       [](const ExpressionPtr& operand) { return ContainsAggregate(*operand); });
}

bool SameExpression(const Expression& a, const Expression& b) {
  if (a.kind != b.kind || a.operands.size() != b.operands.size()) return false;
  switch (a.kind) {
    case Expression::Kind::Literal:
      if (a.value != b.value) return false;
      break;
    case Expression::Kind::Name:
      return a.level == b.level && a.column == b.column;
    case Expression::Kind::Operation:
      if (a.op != b.op) return false;
      break;
    case Expression::Kind::Call:
      if (!platform::EqualIgnoringCase(a.name, b.name)) return false;
      break;
    default:
      return false;
  }
  return std::equal(a.operands.begin(), a.operands.end(), b.operands.begin(),
                    [](const ExpressionPtr& x, const ExpressionPtr& y) { return SameExpression(*x, *y); });
}

void Binder::BindName(Expression& e) {
  if (const std::optional<FoundName> found = scope_.Find(e.qualifier, e.name)) {
    e.column = found->column;
    e.level = found->level;
    e.type = found->description.type;
    e.size = found->description.size;
    e.name = found->description.name;
    return;
  }
  if (TurnIntoClockCall(e)) return;
  const std::u16string whole = e.qualifier.empty() ? e.name : e.qualifier + u"." + e.name;
  const bool noted = std::any_of(compilation_.unknown.begin(), compilation_.unknown.end(),
                                 [&](const std::u16string& n) { return platform::EqualIgnoringCase(n, whole); });
  if (!noted) compilation_.unknown.push_back(whole);
}

void Binder::Bind(Expression& e) {
  if (e.kind == Expression::Kind::Name) return BindName(e);
  if (e.kind == Expression::Kind::Call) {
    if (IsAggregate(e)) Raise(aggregateError_, e.name);
    CheckCall(e);
  }
  for (const ExpressionPtr& operand : e.operands) Bind(*operand);
  if (e.kind == Expression::Kind::Subquery) e.subquery = BindSubquery(e, scope_, compilation_);
}

}  // namespace zimbrat::jet
