#include "jet/sql/functions.h"

#include <algorithm>
#include <cmath>

#include "jet/file/errors.h"
#include "jet/table/convert.h"
#include "platform/dates.h"
#include "platform/numbers.h"
#include "platform/text.h"

#include "function.h"
#include "operators.h"

namespace zimbrat::jet {

namespace {

// Functions that evaluate only the argument that is needed.
struct Choice {
  std::u16string_view name;
  std::size_t least, most;
  FunctionResult result;
  dao::Value (*call)(const Expression&, const EvaluationContext&);
};

dao::Value ImmediateIf(const Expression& call, const EvaluationContext& context) {
  return Evaluate(*call.operands[IsTrue(Evaluate(*call.operands[0], context)) ? 1 : 2], context);
}

dao::Value Choose(const Expression& call, const EvaluationContext& context) {
  const dao::Value index = Evaluate(*call.operands[0], context);
  if (dao::IsNull(index)) return dao::Null{};
  const double choice = std::trunc(NumberOf(index));
  if (!(choice >= 1 && choice < static_cast<double>(call.operands.size()))) return dao::Null{};
  return Evaluate(*call.operands[static_cast<std::size_t>(choice)], context);
}

dao::Value Switch(const Expression& call, const EvaluationContext& context) {
  if (call.operands.size() % 2 != 0) Raise(platform::kErrInvalidCall);
  for (std::size_t i = 0; i < call.operands.size(); i += 2) {
    if (IsTrue(Evaluate(*call.operands[i], context))) return Evaluate(*call.operands[i + 1], context);
  }
  return dao::Null{};
}

constexpr std::size_t kMany = 1000;

constexpr Choice kChoices[] = {
    {u"IIF", 3, 3, {0, 1, 1}, ImmediateIf},
    {u"CHOOSE", 2, kMany, {0, 1, 1}, Choose},
    {u"SWITCH", 2, kMany, {0, 1, 2}, Switch},
};

// "Left$" is "Left".
std::u16string PlainName(std::u16string_view name) {
  std::u16string upper = platform::UpperCase(name);
  if (!upper.empty() && upper.back() == u'$') upper.pop_back();
  return upper;
}

template <class Row, std::size_t kExtent>
const Row* FindRow(std::span<const Row, kExtent> rows, std::u16string_view plainName) {
  const auto found = std::find_if(rows.begin(), rows.end(), [&](const Row& row) { return row.name == plainName; });
  return found == rows.end() ? nullptr : &*found;
}

const Function* FindFunction(std::u16string_view plainName) {
  for (const auto& functions : {TextFunctions(), DateFunctions(), NumberFunctions(), ConversionFunctions()}) {
    if (const Function* found = FindRow(functions, plainName)) return found;
  }
  return nullptr;
}

const Function& RequireFunction(std::u16string_view plainName, const Expression& call) {
  const Function* function = FindFunction(plainName);
  if (!function) Raise(platform::kErrUndefinedFunction, call.name);
  return *function;
}

template <class Row>
void CheckArgumentCount(const Row& row, const Expression& call) {
  if (call.operands.size() >= row.least && call.operands.size() <= row.most) return;
  Raise(platform::kErrQueryExpression, u"Nieprawidłowa liczba argumentów funkcji", call.name);
}

}  // namespace

double Arguments::Number(std::size_t i) const {
  if (IsNull(i)) Raise(platform::kErrInvalidNull);
  return NumberOf(values_[i]);
}

std::int32_t Arguments::Long(std::size_t i) const { return platform::LongFromDouble(Number(i)); }

std::size_t Arguments::Count(std::size_t i, std::int32_t least) const {
  const std::int32_t count = Long(i);
  if (count < least) Raise(platform::kErrInvalidCall);
  return static_cast<std::size_t>(count);
}

std::u16string Arguments::Text(std::size_t i) const {
  if (IsNull(i)) Raise(platform::kErrInvalidNull);
  return TextOfValue(values_[i]);
}

double Arguments::Date(std::size_t i) const {
  if (IsNull(i)) Raise(platform::kErrInvalidNull);
  const std::optional<double> date = FindDateValue(values_[i]);
  if (!date) Raise(platform::kErrCriteriaMismatch);
  if (!platform::IsDateInRange(*date)) Raise(platform::kErrOverflow);
  return *date;
}

bool IsKnownFunction(std::u16string_view name) {
  const std::u16string plain = PlainName(name);
  return FindRow(std::span(kChoices), plain) || FindFunction(plain);
}

FunctionResult ResultOf(std::u16string_view functionName) {
  const std::u16string plain = PlainName(functionName);
  if (const Choice* choice = FindRow(std::span(kChoices), plain)) return choice->result;
  const Function* function = FindFunction(plain);
  return function ? function->result : FunctionResult{dao::dbText};
}

void CheckCall(const Expression& call) {
  const std::u16string plain = PlainName(call.name);
  if (const Choice* choice = FindRow(std::span(kChoices), plain)) return CheckArgumentCount(*choice, call);
  CheckArgumentCount(RequireFunction(plain, call), call);
}

dao::Value CallFunction(const Expression& call, const EvaluationContext& context) {
  const std::u16string plain = PlainName(call.name);
  if (const Choice* choice = FindRow(std::span(kChoices), plain)) {
    CheckArgumentCount(*choice, call);
    return choice->call(call, context);
  }
  const Function& function = RequireFunction(plain, call);
  CheckArgumentCount(function, call);
  std::vector<dao::Value> values;
  for (const ExpressionPtr& operand : call.operands) values.push_back(Evaluate(*operand, context));
  for (std::size_t i = 0; i < values.size(); ++i) {
    if ((function.nulls >> i & 1u) != 0 && dao::IsNull(values[i])) return dao::Null{};
  }
  return function.call(Arguments(std::move(values), context.now));
}

}  // namespace zimbrat::jet
