#include "platform/numbers.h"

#include <gtest/gtest.h>

#include "platform/error_numbers.h"
#include "platform/text.h"
#include "tests/support/error_of.h"

namespace zimbrat::platform {
namespace {

using tests::ErrorOf;

TEST(Val, TakesTheLongestNumericPrefix) {
  const struct {
    std::u16string_view text;
    double value;
  } rows[] = {
      {u"", 0},           {u"abc", 0},          {u"12abc", 12},        {u" 1 6\t1 5x", 1615},
      {u"-1.5,7", -1.5},  {u"+.5", 0.5},        {u"1,5", 1},           {u"1e3", 1000},
      {u"1D-2x", 0.01},   {u"1e", 1},           {u"1e+", 1},           {u"1.2.3", 1.2},
      {u"&HFFFF", -1},    {u"&HFFFF&", 65535},  {u"&H10000", 65536},   {u"&HFFFFFFFF", -1},
      {u"&O17", 15},      {u"&17", 15},         {u"&HG", 0},           {u"-&H10", -16},
      {u"--5", 0},        {u"50%", 50},         {u"1e-999", 0},        {u"0e999999999999999999999", 0},
      {u"\u00A01", 0},    {u".", 0},            {u"00012", 12},
  };
  for (const auto& row : rows) EXPECT_EQ(Val(row.text), row.value) << Utf8FromUtf16(row.text);
}

TEST(Val, RaisesWhatVisualBasicRaises) {
  EXPECT_EQ(ErrorOf([] { Val(u"50.5%"); }), kErrTypeMismatch);
  EXPECT_EQ(ErrorOf([] { Val(u"1e999"); }), kErrOverflow);
  EXPECT_EQ(ErrorOf([] { Val(u"&H100000000"); }), kErrOverflow);
  EXPECT_EQ(ErrorOf([] { Val(std::u16string(100000, u'9')); }), kErrOverflow);
  EXPECT_EQ(ErrorOf([] { Val(u"1e99999999999999999999"); }), kErrOverflow);
  EXPECT_EQ(Val(u"0." + std::u16string(1000, u'0') + u"1"), 0);
}

TEST(WholeNumber, AcceptsPolishFormatsAlone) {
  const struct {
    std::u16string_view text;
    double value;
  } accepted[] = {
      {u"12", 12},   {u" \t12 ", 12},      {u"-12", -12},   {u"+ 12", 12},       {u"12-", -12},
      {u"(12)", -12}, {u"1,5", 1.5},       {u",5", 0.5},    {u"1\u00A0000,5", 1000.5},
      {u"1e3", 1000}, {u"1d3", 1000},      {u"&H10", 16},   {u"&O17", 15},       {u"1e-400", 0},
  };
  for (const auto& row : accepted) {
    EXPECT_EQ(FindNumber(row.text), row.value) << Utf8FromUtf16(row.text);
  }
  for (const std::u16string_view text : {u"", u" ", u"abc", u"12abc", u"1.5", u"True", u"-", u"1,5,2",
                                         u"1\u00A0", u"\u00A01", u"--1", u"-1-", u"()", u"&H", u"1e",
                                         u"&H1,5", u"1 2", u"1\u00A0\u00A02"}) {
    EXPECT_FALSE(FindNumber(text)) << Utf8FromUtf16(text);
  }
  EXPECT_EQ(FindNumber(u"1.5", {.acceptPoint = true}), 1.5);
}

TEST(Conversions, RoundHalfToEvenAndCheckTheRange) {
  const struct {
    std::u16string_view text;
    std::int16_t value;
  } rows[] = {{u"0,5", 0}, {u"1,5", 2}, {u"-2,5", -2}, {u"2,50001", 3}, {u"-32768,5", -32768},
              {u"32767,4", 32767}};
  for (const auto& row : rows) EXPECT_EQ(IntegerFromText(row.text), row.value);
  EXPECT_EQ(LongFromText(u"2147483647,4"), 2147483647);
  EXPECT_EQ(ErrorOf([] { IntegerFromText(u"32767,5"); }), kErrOverflow);
  EXPECT_EQ(ErrorOf([] { LongFromText(u"2147483648"); }), kErrOverflow);
  EXPECT_EQ(ErrorOf([] { LongFromText(u"1e300"); }), kErrOverflow);
  EXPECT_EQ(ErrorOf([] { DoubleFromText(u"1e400"); }), kErrOverflow);
  EXPECT_EQ(ErrorOf([] { IntegerFromText(u""); }), kErrTypeMismatch);
  EXPECT_EQ(ErrorOf([] { IntegerFromDouble(0.0 / 0.0 * 1.0); }), kErrOverflow);
}

TEST(Conversions, BooleanKnowsEnglishWordsAndNumbers) {
  for (const std::u16string_view text : {u"True", u" tRUE ", u"#TRUE#", u"-1", u"0,1", u"&H1"}) {
    EXPECT_TRUE(BooleanFromText(text)) << Utf8FromUtf16(text);
  }
  for (const std::u16string_view text : {u"False", u"#false#", u"0", u"0,0"}) {
    EXPECT_FALSE(BooleanFromText(text)) << Utf8FromUtf16(text);
  }
  for (const std::u16string_view text : {u"", u"Tak", u"Prawda", u"T", u"Yes"}) {
    EXPECT_EQ(ErrorOf([&] { BooleanFromText(text); }), kErrTypeMismatch) << Utf8FromUtf16(text);
  }
}

TEST(Integers, OverflowAtSixteenBits) {
  EXPECT_EQ(MultiplyIntegers(3276, 10), 32760);
  EXPECT_EQ(ErrorOf([] { MultiplyIntegers(3277, 10); }), kErrOverflow);
  EXPECT_EQ(AddIntegers(-32767, -1), -32768);
  EXPECT_EQ(ErrorOf([] { AddIntegers(32767, 1); }), kErrOverflow);
}

TEST(DoubleText, ShowsFifteenDigits) {
  const struct {
    double value;
    std::u16string_view text;
  } rows[] = {
      {0, u"0"},           {-0.0, u"0"},        {1, u"1"},           {-1.5, u"-1,5"},
      {0.1 + 0.2, u"0,3"}, {1e14, u"100000000000000"}, {1e15, u"1E+15"}, {123456789012345, u"123456789012345"},
      {1.0 / 3, u"0,333333333333333"}, {1.0 / 30, u"3,33333333333333E-02"}, {0.0001, u"0,0001"},
      {0.00001, u"1E-05"}, {-1.25e-200, u"-1,25E-200"}, {1200, u"1200"}, {12.5, u"12,5"},
  };
  for (const auto& row : rows) EXPECT_EQ(TextFromDouble(row.value), row.text) << row.value;
  EXPECT_EQ(TextFromDouble(1.5, u'.'), u"1.5");
}

}  // namespace
}  // namespace zimbrat::platform
