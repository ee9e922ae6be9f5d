#include "jet/sql/functions.h"

#include <algorithm>
#include <cmath>

#include "jet/file/errors.h"
#include "jet/table/convert.h"
#include "platform/dates.h"
#include "platform/numbers.h"
#include "platform/text.h"

namespace zimbrat::jet {

namespace {

using Arguments = std::vector<dao::Value>;

struct Function {
  std::u16string_view name;
  std::size_t least;
  std::size_t most;
  dao::Value (*call)(const Arguments&, const EvaluationContext&);
};

double NumberAt(const Arguments& arguments, std::size_t i) {
  if (dao::IsNull(arguments[i])) Raise(platform::kErrInvalidNull);
  const std::optional<double> number = FindDouble(arguments[i]);
  if (!number) Raise(platform::kErrCriteriaMismatch);
  return *number;
}

std::size_t LengthAt(const Arguments& arguments, std::size_t i, double least) {
  const double number = platform::RoundHalfEven(NumberAt(arguments, i));
  if (!(number >= least)) Raise(platform::kErrInvalidCall);
  return static_cast<std::size_t>(std::min(number, 2147483647.0));
}

// A text function of one text: Null stays Null.
template <class Work>
dao::Value OnText(const Arguments& arguments, Work work) {
  if (dao::IsNull(arguments[0])) return dao::Null{};
  return work(TextOfValue(arguments[0]));
}

template <class Work>
dao::Value OnDate(const Arguments& arguments, Work work) {
  if (dao::IsNull(arguments[0])) return dao::Null{};
  return static_cast<std::int16_t>(work(platform::PartsOfDate(NumberAt(arguments, 0))));
}

template <class Work>
dao::Value OnNumber(const Arguments& arguments, Work work) {
  if (dao::IsNull(arguments[0])) return dao::Null{};
  return work(NumberAt(arguments, 0));
}

std::u16string TrimLeft(std::u16string_view text) {
  const std::size_t start = text.find_first_not_of(u' ');
  return start == text.npos ? std::u16string() : std::u16string(text.substr(start));
}

std::u16string TrimRight(std::u16string_view text) {
  return std::u16string(text.substr(0, text.find_last_not_of(u' ') + 1));
}

std::u16string LowerCase(std::u16string_view text) {
  std::u16string lower(text);
  for (char16_t& c : lower) {
    if (c >= u'A' && c <= u'Z') c = static_cast<char16_t>(c + 32);
    if (c > 127) {
      // The pairs of the Latin blocks: a capital is one below its small letter or 32 below it.
      for (const int step : {1, 32}) {
        const auto candidate = static_cast<char16_t>(c + step);
        if (platform::UpperCase(candidate) == c && candidate != c) {
          c = candidate;
          break;
        }
      }
    }
  }
  return lower;
}

constexpr Function kFunctions[] = {
    {u"ABS", 1, 1, [](const Arguments& a, const EvaluationContext&) {
       return OnNumber(a, [](double v) { return dao::Value(std::abs(v)); });
     }},
    {u"CSTR", 1, 1, [](const Arguments& a, const EvaluationContext&) -> dao::Value {
       if (dao::IsNull(a[0])) Raise(platform::kErrInvalidNull);
       return TextOfValue(a[0]);
     }},
    {u"DATE", 0, 0, [](const Arguments&, const EvaluationContext& c) -> dao::Value {
       return dao::Date{std::trunc(c.now)};
     }},
    {u"DAY", 1, 1, [](const Arguments& a, const EvaluationContext&) {
       return OnDate(a, [](const platform::DateParts& p) { return p.day; });
     }},
    {u"FIX", 1, 1, [](const Arguments& a, const EvaluationContext&) {
       return OnNumber(a, [](double v) { return dao::Value(std::trunc(v)); });
     }},
    {u"INT", 1, 1, [](const Arguments& a, const EvaluationContext&) {
       return OnNumber(a, [](double v) { return dao::Value(std::floor(v)); });
     }},
    {u"ISNULL", 1, 1, [](const Arguments& a, const EvaluationContext&) -> dao::Value {
       return dao::IsNull(a[0]);
     }},
    {u"LCASE", 1, 1, [](const Arguments& a, const EvaluationContext&) {
       return OnText(a, [](std::u16string_view t) { return dao::Value(LowerCase(t)); });
     }},
    {u"LEFT", 2, 2, [](const Arguments& a, const EvaluationContext&) {
       return OnText(a, [&](std::u16string_view t) {
         return dao::Value(std::u16string(t.substr(0, LengthAt(a, 1, 0))));
       });
     }},
    {u"LEN", 1, 1, [](const Arguments& a, const EvaluationContext&) {
       return OnText(a, [](std::u16string_view t) { return dao::Value(static_cast<std::int32_t>(t.size())); });
     }},
    {u"LTRIM", 1, 1, [](const Arguments& a, const EvaluationContext&) {
       return OnText(a, [](std::u16string_view t) { return dao::Value(TrimLeft(t)); });
     }},
    {u"MID", 2, 3, [](const Arguments& a, const EvaluationContext&) {
       return OnText(a, [&](std::u16string_view t) {
         const std::size_t start = LengthAt(a, 1, 1) - 1;
         const std::size_t size = a.size() > 2 ? LengthAt(a, 2, 0) : t.size();
         return dao::Value(start < t.size() ? std::u16string(t.substr(start, size)) : std::u16string());
       });
     }},
    {u"MONTH", 1, 1, [](const Arguments& a, const EvaluationContext&) {
       return OnDate(a, [](const platform::DateParts& p) { return p.month; });
     }},
    {u"NOW", 0, 0, [](const Arguments&, const EvaluationContext& c) -> dao::Value {
       return dao::Date{c.now};
     }},
    {u"RIGHT", 2, 2, [](const Arguments& a, const EvaluationContext&) {
       return OnText(a, [&](std::u16string_view t) {
         const std::size_t size = std::min(LengthAt(a, 1, 0), t.size());
         return dao::Value(std::u16string(t.substr(t.size() - size)));
       });
     }},
    {u"RTRIM", 1, 1, [](const Arguments& a, const EvaluationContext&) {
       return OnText(a, [](std::u16string_view t) { return dao::Value(TrimRight(t)); });
     }},
    {u"TIME", 0, 0, [](const Arguments&, const EvaluationContext& c) -> dao::Value {
       return dao::Date{std::abs(c.now - std::trunc(c.now))};
     }},
    {u"TRIM", 1, 1, [](const Arguments& a, const EvaluationContext&) {
       return OnText(a, [](std::u16string_view t) { return dao::Value(TrimRight(TrimLeft(t))); });
     }},
    {u"UCASE", 1, 1, [](const Arguments& a, const EvaluationContext&) {
       return OnText(a, [](std::u16string_view t) { return dao::Value(platform::UpperCase(t)); });
     }},
    {u"VAL", 1, 1, [](const Arguments& a, const EvaluationContext&) -> dao::Value {
       if (dao::IsNull(a[0])) Raise(platform::kErrInvalidNull);
       return platform::Val(TextOfValue(a[0]));
     }},
    {u"YEAR", 1, 1, [](const Arguments& a, const EvaluationContext&) {
       return OnDate(a, [](const platform::DateParts& p) { return p.year; });
     }},
};

// "Left$" is "Left".
std::u16string PlainName(std::u16string_view name) {
  std::u16string upper = platform::UpperCase(name);
  if (!upper.empty() && upper.back() == u'$') upper.pop_back();
  return upper;
}

const Function* FindFunction(std::u16string_view name) {
  const std::u16string plain = PlainName(name);
  const auto* found = std::find_if(std::begin(kFunctions), std::end(kFunctions),
                                   [&](const Function& f) { return f.name == plain; });
  return found == std::end(kFunctions) ? nullptr : found;
}

[[noreturn]] void RaiseArgumentCount(std::u16string_view name) {
  Raise(platform::kErrQueryExpression, u"Nieprawidłowa liczba argumentów funkcji", name);
}

}  // namespace

bool IsKnownFunction(std::u16string_view name) { return PlainName(name) == u"IIF" || FindFunction(name); }

dao::Value CallFunction(const Expression& call, const EvaluationContext& context) {
  if (PlainName(call.name) == u"IIF") {  // only the branch that is needed
    if (call.operands.size() != 3) RaiseArgumentCount(call.name);
    return Evaluate(*call.operands[IsTrue(Evaluate(*call.operands[0], context)) ? 1 : 2], context);
  }
  const Function* function = FindFunction(call.name);
  if (!function) Raise(platform::kErrUndefinedFunction, call.name);
  if (call.operands.size() < function->least || call.operands.size() > function->most) {
    RaiseArgumentCount(call.name);
  }
  Arguments arguments;
  for (const ExpressionPtr& operand : call.operands) arguments.push_back(Evaluate(*operand, context));
  return function->call(arguments, context);
}

}  // namespace zimbrat::jet
