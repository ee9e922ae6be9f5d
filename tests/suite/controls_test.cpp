#include <gtest/gtest.h>

#include "platform/controls.h"
#include "tests/product/bench.h"

namespace zimbrat::tests {
namespace {

TEST(CheckList, JoinsItsCheckedValuesWithItsOwnSeparator) {
  for (const char16_t separator : {u',', u';'}) {
    platform::OrvListCheck list(separator);
    for (const char16_t* value : {u"a", u"b", u"c"}) list.Add(u"tekst", value);
    list.SetChecked(0, true);
    list.SetChecked(2, true);
    list.SetChecked(7, true);
    EXPECT_EQ(list.CheckedValues(), std::u16string(u"a") + separator + u"c");
    EXPECT_EQ(list.CheckedCount(), 2);
  }
}

TEST(CheckList, ChecksTheItemsOfItsPresentValues) {
  platform::OrvListCheck list(u',');
  for (const char16_t* value : {u"a", u"b"}) list.Add(value, value);
  list.SetPresentValues(u"b;x;");
  EXPECT_FALSE(list.IsChecked(0));
  EXPECT_TRUE(list.IsChecked(1));
  list.Clear();
  EXPECT_TRUE(list.PresentValues().empty());
}

TEST(Combo, TakesRowsFromARowSource) {
  platform::OrvCombo months;
  months.SetRowSource(u"LIST 1;Styczeń|2;Luty|3");
  ASSERT_EQ(months.Count(), 3);
  months.SetValue(u"2");
  EXPECT_EQ(Utf8(months.ShownText()), "Luty");
  months.SetValue(u"Styczeń");
  EXPECT_EQ(Utf8(months.Value()), "1");
  months.SetShownText(u"(brak)");
  EXPECT_EQ(Utf8(months.ShownText()), "(brak)");
  months.SetValue(u"nie ma");
  EXPECT_EQ(months.Current(), -1);
  EXPECT_TRUE(months.Value().empty());
  months.SetRowSource(u"SELECT x");
  EXPECT_EQ(months.Count(), 0);
}

TEST(UpDown, StepsFromTheNumberWithinItsRange) {
  platform::OrvUpDown year;
  year.SetRange(1900, 2000);
  const std::tuple<const char16_t*, const char*, const char*> rows[] = {
      {u"1999", "2000", "1998"},
      {u"2000", "2000", "1999"},
      {u"99999999999", "2000", "1999"},
      {u"rok", "1901", "1900"},
      {u"", "1901", "1900"}};
  for (const auto& [text, up, down] : rows) {
    year.SetText(text);
    year.Up();
    EXPECT_EQ(Utf8(year.Text()), up);
    year.SetText(text);
    year.Down();
    EXPECT_EQ(Utf8(year.Text()), down);
  }
}

TEST(Progress, GoesOneWayAcrossSegmentsWhateverTheHeadersSay) {
  platform::ProgressBar bar;
  double last = 0;
  bar.SetListener([&](platform::Change) {
    EXPECT_GE(bar.Fraction(), last);
    EXPECT_LE(bar.Fraction(), 1.0);
    last = bar.Fraction();
  });
  const int declared[] = {3, 0, -5, 2};
  for (int segment = 0; segment < 4; ++segment) {
    bar.SetSegment(segment, 4);
    bar.SetMaximum(declared[segment]);
    for (int step = 0; step < 4; ++step) bar.Advance();
  }
  EXPECT_EQ(bar.Fraction(), 1.0);
}

TEST(Options, OnlyOneOfAGroupIsChosen) {
  platform::OptionButton first, second;
  for (auto* option : {&first, &second}) option->SetGroup({&first, &second});
  first.Select();
  second.Select();
  EXPECT_FALSE(first.Value());
  EXPECT_TRUE(second.Value());
}

}  // namespace
}  // namespace zimbrat::tests
