// Expressions over values that no literal makes, and arguments that ask for too much.
#include <gtest/gtest.h>

#include <limits>

#include "jet/sql/expression.h"
#include "jet/table/convert.h"
#include "jet/table/decimal.h"
#include "platform/error_numbers.h"
#include "platform/run_time_error.h"
#include "platform/text.h"

namespace zimbrat::jet {

namespace {

// Of an expression over the names a and b; an error is "! number".
std::u16string Result(std::u16string_view text, const dao::Value& a = {}, const dao::Value& b = {}) {
  try {
    const ExpressionPtr expression = ParseExpressionText(text);
    std::vector<std::u16string> unknown;
    const NameLookup lookup = [](std::u16string_view, std::u16string_view name) -> std::optional<std::size_t> {
      if (name != u"a" && name != u"b") return std::nullopt;
      return name == u"a" ? 0 : 1;
    };
    BindNames(*expression, lookup, unknown);
    const EvaluationContext context{37657, [&](std::size_t column) { return column == 0 ? a : b; }};
    return TextOfValue(Evaluate(*expression, context));
  } catch (const platform::RunTimeError& error) {
    return u"! " + platform::DecimalText(error.Number());
  }
}

dao::Value Decimal(std::u16string_view text) { return *FindDecimal(*platform::FindExactNumber(text)); }

std::int32_t StoringError(const Column& column, const dao::Value& value) {
  try {
    ConvertToColumn(column, value);
    return 0;
  } catch (const platform::RunTimeError& error) {
    return error.Number();
  }
}

}  // namespace

TEST(Expressions, ReckonDecimalsExactly) {
  const dao::Value large = Decimal(u"9999999999999999999999999999");
  const dao::Value small = Decimal(u"0,0000000000000000000000000001");
  const struct {
    std::u16string_view expression;
    dao::Value a, b;
    std::u16string_view result;
  } rows[] = {
      {u"a + b", Decimal(u"0,1"), Decimal(u"0,2"), u"0,3"},
      {u"a + b = 0.3", Decimal(u"0,1"), Decimal(u"0,2"), u"-1"},
      {u"a - 1", large, {}, u"9999999999999999999999999998"},
      {u"a + 1", large, {}, u"! 6"},
      {u"a * a", large, {}, u"! 6"},
      {u"a + b", Decimal(u"1"), small, u"1"},
      {u"a * 3", small, {}, u"0,0000000000000000000000000003"},
      {u"a * a", small, {}, u"0"},
      {u"a + b", Decimal(u"1,5"), dao::Currency{5000}, u"2"},
      {u"a > b", Decimal(u"922337203685477,58071"), dao::Currency{INT64_MAX}, u"-1"},
      {u"a = 1 And a In (2, 1)", Decimal(u"1,000"), {}, u"-1"},
      {u"-a & '|' & Abs(-a) & '|' & Int(a) & '|' & Fix(a)", Decimal(u"-1,5"), {}, u"1,5|1,5|-2|-1"},
      {u"Round(a, 2) & '|' & CLng(a) & '|' & CCur(a)", Decimal(u"2,345"), {}, u"2,34|2|2,345"},
      {u"Format(a, '0.00') & Str(a)", Decimal(u"2,345"), {}, u"2,35 2.345"},
      {u"a / 2", Decimal(u"0,3"), {}, u"0,15"},
      {u"a + 0.25", Decimal(u"0,5"), {}, u"0,75"},
      {u"a = b", dao::Guid{}, std::u16string(u"{00000000-0000-0000-0000-000000000000}"), u"-1"},
      {u"a = b", dao::Guid{}, std::int32_t{0}, u"! 3464"},
      {u"a < b", dao::Binary{std::byte{1}}, dao::Binary{std::byte{1}, std::byte{0}}, u"-1"},
      {u"a = b", dao::Binary{}, std::u16string(), u"! 3464"},
      {u"a + 1", dao::Binary{}, {}, u"! 3464"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Result(row.expression, row.a, row.b), row.result) << platform::Utf8FromUtf16(row.expression);
  }
}

TEST(Expressions, StoreDecimalsByTheColumn) {
  Column column;
  column.type = kTypeDecimal;
  column.extra = 5 | 2 << 8;
  EXPECT_EQ(TextOfValue(ConvertToColumn(column, std::u16string(u"123,455"))), u"123,46");
  EXPECT_EQ(TextOfValue(ConvertToColumn(column, -999.99)), u"-999,99");
  EXPECT_EQ(TextOfValue(ConvertToColumn(column, dao::Currency{1})), u"0");
  EXPECT_EQ(StoringError(column, 1000.0), platform::kErrDataConversion);
  EXPECT_EQ(StoringError(column, std::u16string(u"999,995")), platform::kErrDataConversion);
  EXPECT_EQ(StoringError(column, std::u16string(u"abc")), platform::kErrDataConversion);
}

// A broken file may hold numbers that are none; none of them is made into another value that is stored.
TEST(Expressions, StopAtWhatIsNoNumber) {
  const double nan = std::numeric_limits<double>::quiet_NaN(), infinity = std::numeric_limits<double>::infinity();
  for (const double bad : {nan, infinity, -infinity}) {
    EXPECT_EQ(Result(u"a * 2", bad), u"! 6");
    EXPECT_EQ(Result(u"CCur(a)", bad), u"! 6");
    EXPECT_EQ(Result(u"CCur(1) + a", bad), u"! 6");
    EXPECT_EQ(Result(u"CLng(a)", bad), u"! 6");
    EXPECT_EQ(Result(u"DateAdd('d', 1, a)", bad), u"! 6");
    EXPECT_EQ(Result(u"Year(a)", dao::Date{bad}), u"! 6");
    EXPECT_EQ(Result(u"a And 1", bad), u"! 6");
    Result(u"Round(a, 2) & Int(a) & Format(a, '0.00') & Sgn(a) & Rnd(a) & Str(a)", bad);
    Column column;
    for (const std::uint8_t type : {kTypeLong, kTypeCurrency, kTypeSingle, kTypeDouble, kTypeDate, kTypeDecimal}) {
      column.type = type;
      EXPECT_EQ(StoringError(column, bad), platform::kErrDataConversion) << int{type};
    }
  }
}

// Every function with every pair of odd arguments ends in a value or an error.
TEST(Expressions, FunctionsSurviveAnyArguments) {
  const std::u16string_view values[] = {
      u"Null", u"''",   u"'x'",       u"'1,5'",               u"-1",   u"0",
      u"1E300", u"2147483647", u"#1/1/100#", u"#12/31/9999 23:59:59#", u"'yyyy'", u"'#,##0.00;;'",
  };
  const std::u16string names =
      u"Left Right Mid Len Trim LTrim RTrim UCase LCase InStr InStrRev Replace Space String StrComp StrConv StrReverse "
      u"Chr ChrW Asc AscW Format Hex Oct Year Hour Weekday DateSerial TimeSerial DateValue TimeValue DateAdd DateDiff "
      u"DatePart MonthName WeekdayName CBool CByte CInt CLng CSng CDbl CCur CDate CVDate CStr CVar Val Str Int Fix Abs "
      u"Sgn Sqr Exp Log Sin Tan Atn Rnd Round IsNull IsDate IsNumeric IIf Choose Switch ";
  for (std::size_t at = 0, end; (end = names.find(u' ', at)) != names.npos; at = end + 1) {
    const std::u16string start = names.substr(at, end - at) + u"(";
    for (const std::u16string_view a : values) {
      for (const std::u16string_view b : values) {
        const std::u16string first(a), second(b);
        for (const std::u16string& call :
             {start + first + u")", start + first + u"," + second + u")", start + first + u"," + second + u",-1)",
              start + first + u",1," + second + u",2)", start + u"'d'," + first + u"," + second + u",1,1)"}) {
          EXPECT_LE(Result(call).size(), 1'048'576u) << platform::Utf8FromUtf16(call);
        }
      }
    }
  }
}

}  // namespace zimbrat::jet
