#include "platform/exact_number.h"

#include <gtest/gtest.h>

#include <random>

#include "platform/text.h"

namespace zimbrat::platform {
namespace {

ExactNumber Of(std::u16string_view text) { return FindExactNumber(text).value(); }

TEST(ExactNumber, AgreesWithWholeArithmetic) {
  std::mt19937 random(1);
  std::uniform_int_distribution<std::int64_t> any(-99'999, 99'999);
  for (int i = 0; i < 2000; ++i) {
    const std::int64_t a = any(random) / (i % 7 + 1), b = any(random) / (i % 11 + 1);
    const ExactNumber left = ExactFromWhole(a, 2), right = ExactFromWhole(b, 2);
    EXPECT_EQ(Sum(left, right), ExactFromWhole(a + b, 2)) << a << " " << b;
    EXPECT_EQ(Product(left, right), ExactFromWhole(a * b, 4)) << a << " " << b;
    EXPECT_EQ(Compare(left, right), a < b ? -1 : a > b ? 1 : 0) << a << " " << b;
    EXPECT_EQ(FindScaled(left, 2), a);
    EXPECT_EQ(Of(TextFromExact(left)), left) << a;
    EXPECT_EQ(DoubleFromExact(left), static_cast<double>(a) / 100);
  }
}

TEST(ExactNumber, RoundsTiesAsAsked) {
  const struct {
    std::u16string_view number;
    int places;
    std::u16string_view toEven, away;
  } rows[] = {
      {u"0,5", 0, u"0", u"1"},         {u"1,5", 0, u"2", u"2"},         {u"-2,5", 0, u"-2", u"-3"},
      {u"0,51", 0, u"1", u"1"},        {u"0,05", 0, u"0", u"0"},        {u"99,95", 1, u"100", u"100"},
      {u"0,00015", 4, u"0,0002", u"0,0002"},                            {u"0,00025", 4, u"0,0002", u"0,0003"},
      {u"1234", -2, u"1200", u"1200"}, {u"1250", -2, u"1200", u"1300"}, {u"5", -1, u"0", u"10"},
      {u"1e-9", 4, u"0", u"0"},        {u"12,34", 5, u"12,34", u"12,34"},
  };
  for (const auto& row : rows) {
    const ExactNumber number = Of(row.number);
    EXPECT_EQ(TextFromExact(Rounded(number, row.places)), row.toEven) << Utf8FromUtf16(row.number);
    EXPECT_EQ(TextFromExact(Rounded(number, row.places, Ties::Away)), row.away) << Utf8FromUtf16(row.number);
  }
}

TEST(ExactNumber, ScalesWhatFits64Bits) {
  EXPECT_EQ(FindScaled(Of(u"922337203685477,5807"), 4), INT64_MAX);
  EXPECT_EQ(FindScaled(Of(u"-922337203685477,5808"), 4), INT64_MIN);
  EXPECT_EQ(FindScaled(Of(u"922337203685477,5808"), 4), std::nullopt);
  EXPECT_EQ(FindScaled(Of(u"1e999999999999"), 4), std::nullopt);
  EXPECT_EQ(FindScaled(Of(u"-1e-999999999999"), 4), 0);
  EXPECT_EQ(FindScaled(ExactFromDouble(0.1 + 0.2), 4), 3000);
}

}  // namespace
}  // namespace zimbrat::platform
