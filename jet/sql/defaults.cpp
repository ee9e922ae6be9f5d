#include "jet/sql/defaults.h"

#include <algorithm>
#include <initializer_list>

#include "jet/file/errors.h"
#include "jet/sql/functions.h"
#include "jet/table/convert.h"
#include "platform/text.h"

namespace zimbrat::jet {

namespace {

using platform::RunTimeError;

void CheckFunctions(const Expression& e) {
  if (e.kind == Expression::Kind::Call && !IsKnownFunction(e.name)) {
    Raise(platform::kErrUnknownFunctionInDefault, e.name);
  }
  for (const ExpressionPtr& operand : e.operands) CheckFunctions(*operand);
}

ExpressionPtr ParseDefault(std::u16string_view text, std::u16string_view field) {
  ExpressionPtr expression;
  try {
    expression = ParseExpressionText(text);
  } catch (const RunTimeError&) {
    Raise(platform::kErrDefaultSyntax, text, field);
  }
  std::vector<std::u16string> unknown;
  BindNames(*expression, [](auto, auto) { return std::nullopt; }, unknown);
  if (!unknown.empty()) Raise(platform::kErrUnknownNameInExpression, unknown.front());
  CheckFunctions(*expression);
  return expression;
}

using Words = std::initializer_list<std::u16string_view>;

bool Is(const Token& token, TokenKind kind, Words words) {
  return token.kind == kind && std::any_of(words.begin(), words.end(), [&](std::u16string_view word) {
           return platform::EqualIgnoringCase(token.text, word);
         });
}

bool StartsComparison(const Token& token) {
  return Is(token, TokenKind::Sign, {u"=", u"<>", u"<", u">", u"<=", u">="}) ||
         Is(token, TokenKind::Name, {u"LIKE", u"ALIKE", u"BETWEEN", u"IN", u"IS"});
}

bool OpensOperand(const Token& token) {
  return Is(token, TokenKind::Sign, {u"("}) ||
         Is(token, TokenKind::Name, {u"AND", u"OR", u"XOR", u"EQV", u"IMP"});
}

// A rule may leave its field out: ">0 And <10" stands for "[field] >0 And [field] <10".
std::u16string WithField(std::u16string_view rule, std::u16string_view field) {
  std::u16string whole;
  std::size_t copied = 0;
  bool opens = true;
  for (const Token& token : Tokenize(rule)) {
    if (opens && StartsComparison(token)) {
      whole.append(rule, copied, token.offset - copied).append(u"[").append(field).append(u"] ");
      copied = token.offset;
    }
    // "x Not Like y" has its operand in front.
    opens = OpensOperand(token) || (opens && Is(token, TokenKind::Name, {u"NOT"}));
  }
  return whole.append(rule, copied);
}

ExpressionPtr ParseRule(std::u16string_view rule, std::u16string_view field) {
  return ParseExpressionText(field.empty() ? std::u16string(rule) : WithField(rule, field));
}

bool Holds(std::u16string_view rule, std::u16string_view field, Table& table,
           const std::vector<dao::Value>& values, double now) {
  const ExpressionPtr expression = ParseRule(rule, field);
  std::vector<std::u16string> unknown;
  const NameLookup lookup = [&](std::u16string_view, std::u16string_view name) {
    return table.Definition().FindColumn(name);
  };
  BindNames(*expression, lookup, unknown);
  if (!unknown.empty()) Raise(platform::kErrUnknownNameInExpression, unknown.front());
  const dao::Value result = Evaluate(*expression, {now, [&](std::size_t column) { return values[column]; }});
  return dao::IsNull(result) || IsTrue(result);
}

[[noreturn]] void RaiseRule(std::int32_t number, std::u16string_view text, std::u16string_view a,
                            std::u16string_view b) {
  if (text.empty()) Raise(number, a, b);
  throw RunTimeError(number, {}, std::u16string(text));
}

}  // namespace

RowDefaults::RowDefaults(Catalog& catalog, Table& table) {
  const std::vector<FieldRules>& rules = catalog.Rules(table);
  for (std::size_t i = 0; i < rules.size(); ++i) {
    const std::u16string& text = rules[i].defaultValue;
    expressions_.push_back(text.empty() ? nullptr : ParseDefault(text, table.Definition().columns[i].name));
  }
}

std::vector<dao::Value> RowDefaults::Values(Table& table, double now) const {
  std::vector<dao::Value> values;
  const EvaluationContext context{now, {}};
  const std::vector<Column>& columns = table.Definition().columns;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    const bool has = i < expressions_.size() && expressions_[i];
    values.push_back(ConvertToColumn(columns[i], has ? Evaluate(*expressions_[i], context) : dao::Value()));
  }
  return values;
}

void CheckDefault(std::u16string_view expression, std::u16string_view field) {
  if (!expression.empty()) ParseDefault(expression, field);
}

void CheckValidationRules(Catalog& catalog, Table& table, const std::vector<dao::Value>& values, double now) {
  const std::vector<FieldRules>& rules = catalog.Rules(table);
  const std::vector<Column>& columns = table.Definition().columns;
  for (std::size_t i = 0; i < rules.size(); ++i) {
    const FieldRules& rule = rules[i];
    if (rule.validationRule.empty()) continue;
    if (!Holds(rule.validationRule, columns[i].name, table, values, now)) {
      RaiseRule(platform::kErrFieldRule, rule.validationText, rule.validationRule, columns[i].name);
    }
  }
  const CatalogObject* object = catalog.FindTableByPage(table.Page());
  if (!object) return;
  const PropertyBlob& properties = catalog.Properties(object->id);
  const std::u16string rule = properties.FindText({}, u"ValidationRule");
  if (!rule.empty() && !Holds(rule, {}, table, values, now)) {
    RaiseRule(platform::kErrTableRule, properties.FindText({}, u"ValidationText"), table.Name(), {});
  }
}

}  // namespace zimbrat::jet
