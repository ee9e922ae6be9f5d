// Expressions: evaluated over values of every type, and stored as default values and validation rules.
#include <optional>
#include <string>
#include <vector>

#include "jet/sql/defaults.h"
#include "jet/sql/expression.h"
#include "jet/table/convert.h"
#include "jet/table/definition.h"
#include "outcome.h"
#include "platform/dates.h"
#include "platform/exact_number.h"
#include "small_database.h"
#include "targets.h"
#include "text_input.h"

namespace zimbrat::fuzz {

namespace {

using Values = std::vector<dao::Value>;

// The names a to m stand for these.
Values Operands() {
  return {{}, true, std::uint8_t{255}, std::int16_t{-32768}, std::int32_t{INT32_MAX}, dao::Currency{INT64_MIN}, 1.5f,
          -1e300, dao::Date{37657.25}, std::u16string(u"Łódź 12"), dao::Binary(4, std::byte{7}), dao::Guid{},
          dao::Decimal{true, {0, 1, 2, 3}, 28}};
}

std::optional<std::size_t> FindOperand(std::u16string_view name, std::size_t count) {
  if (name.size() != 1 || name[0] < u'a' || name[0] >= u'a' + count) return std::nullopt;
  return static_cast<std::size_t>(name[0] - u'a');
}

void ConvertToAll(const dao::Value& value) {
  jet::TextOfValue(value);
  for (const std::int16_t type : {dao::dbBoolean, dao::dbByte, dao::dbInteger, dao::dbLong, dao::dbCurrency,
                                  dao::dbSingle, dao::dbDouble, dao::dbDate, dao::dbBinary, dao::dbText,
                                  dao::dbMemo, dao::dbGUID, std::int16_t{jet::kTypeDecimal}}) {
    jet::Column column;
    column.type = static_cast<std::uint8_t>(type);
    column.length = 20;
    Attempt([&] { jet::ConvertToColumn(column, value); });
  }
}

}  // namespace

void EvaluateExpression(Input input) {
  const std::u16string text = TextOf(input);
  Attempt([&] { jet::CheckDefault(text, u"pole"); });
  Attempt([&] {
    const jet::ExpressionPtr expression = jet::ParseExpressionText(text);
    const Values operands = Operands();
    std::vector<std::u16string> unknown;
    jet::BindNames(*expression, [&](auto, auto name) { return FindOperand(name, operands.size()); }, unknown);
    if (!unknown.empty()) return;
    const auto value =
        jet::Evaluate(*expression, {37657.25, [&](std::size_t column) { return operands[column]; }});
    Attempt([&] { jet::IsTrue(value); });
    ConvertToAll(value);
  });
}

// The first line is the default value, the second the rule of a text, the third that of a number.
void StoreExpression(Input input) {
  SmallDatabase small;
  dao::Database& database = small.Open();
  const std::u16string defaultValue = TextOf(TakeUntil(input, '\n')), textRule = TextOf(TakeUntil(input, '\n'));
  const std::u16string numberRule = TextOf(input);
  const auto fields = database.TableDefs()->Item(u"T")->Fields();
  Attempt([&] { fields->Item(u"A")->SetDefaultValue(defaultValue); });
  Attempt([&] { fields->Item(u"A")->SetValidationRule(textRule); });
  Attempt([&] { fields->Item(u"N")->SetDefaultValue(defaultValue); });
  Attempt([&] { fields->Item(u"N")->SetValidationRule(numberRule); });
  fields->Item(u"A")->ValidationRule();
  Attempt([&] { database.Execute(u"INSERT INTO T (W) VALUES (1)", dao::dbFailOnError); });
  Attempt([&] { database.Execute(u"UPDATE T SET A = A & 'x', N = 5", dao::dbFailOnError); });
  small.Close();
  small.Check();
}

}  // namespace zimbrat::fuzz
