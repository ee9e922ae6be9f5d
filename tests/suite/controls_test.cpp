#include <gtest/gtest.h>

#include <random>

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
  months.SetRowSource(u"SELECT x");
  EXPECT_EQ(months.Count(), 0);
}

TEST(Combo, ReadsBackWhatItWasSetTo) {
  platform::OrvCombo list;
  list.SetRowSource(u"LIST ;(brak)|C:\\Firma.mdb;Firma");
  const std::tuple<const char16_t*, const char*, const char*, const char*> rows[] = {
      {u"Firma", "Firma", "C:\\Firma.mdb", "Firma"},
      {u"C:\\Firma.mdb", "C:\\Firma.mdb", "C:\\Firma.mdb", "Firma"},
      {u"C:\\Inna.mdb", "", "", ""},
      {u"", "", "", "(brak)"}};
  for (const auto& [set, value, hidden, shown] : rows) {
    list.SetValue(set);
    EXPECT_EQ(Utf8(list.Value()), value);
    EXPECT_EQ(Utf8(list.HiddenValue()), hidden);
    EXPECT_EQ(Utf8(list.ShownText()), shown);
  }
  list.SetValue(u"Firma");
  list.ClickItem(1);
  EXPECT_EQ(Utf8(list.Value()), "C:\\Firma.mdb") << "picked";
}

TEST(Combo, ShowsATextThatNamesAnItemOrNone) {
  platform::OrvCombo list;
  list.SetRowSource(u"LIST ;(brak)|C:\\Firma.mdb;Firma");
  list.SetValue(u"Firma");
  list.SetShownText(u"(brak)");
  EXPECT_EQ(list.Current(), 0);
  EXPECT_TRUE(list.HiddenValue().empty());
  list.SetValue(u"Firma");
  list.SetShownText(u"(żadna)");
  EXPECT_EQ(list.Current(), -1);
  EXPECT_EQ(Utf8(list.ShownText()), "(żadna)");
  list.ClickItem(1);
  EXPECT_EQ(Utf8(list.ShownText()), "Firma");
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

// What the bar shows of runs whose headers tell any story, step by step.
class Progress : public testing::Test {
 protected:
  Progress() {
    bar_.SetListener([this](platform::Change) {
      EXPECT_GE(bar_.Fraction(), last_);
      EXPECT_LT(bar_.Fraction(), 1.0);
      EXPECT_LE(bar_.Value(), bar_.Maximum());
      last_ = bar_.Fraction();
    });
  }

  platform::ProgressBar bar_;
  double last_ = 0;
};

TEST_F(Progress, FollowsTheFileAndDrawsTheWholeList) {
  const std::tuple<int, int, int> rows[] = {
      // announced, taken, value shown
      {3, 3, 3}, {0, 4, 0}, {-5, 4, 0}, {2, 4, 2}, {4, 1, 1}};
  int segment = 0;
  for (const auto& [announced, taken, value] : rows) {
    const double before = bar_.Fraction();
    bar_.SetSegment(segment++, 5);
    bar_.SetMaximum(announced);
    for (int step = 0; step < taken; ++step) bar_.Advance();
    EXPECT_EQ(bar_.Value(), value);
    EXPECT_EQ(bar_.Maximum(), std::max(announced, 0));
    EXPECT_TRUE(announced <= 0 || bar_.Fraction() > before) << "file " << segment;
  }
  bar_.SetListener(nullptr);
  bar_.Finish();
  EXPECT_EQ(bar_.Fraction(), 1.0);
  bar_.Reset();
  EXPECT_EQ(bar_.Fraction(), 0.0);
}

TEST_F(Progress, GoesOneWayWhateverIsAskedOfIt) {
  std::mt19937 dice(20);
  const auto pick = [&](int least, int count) {
    return least + static_cast<int>(dice() % static_cast<unsigned>(count));
  };
  for (int step = 0; step < 2000 && !HasFailure(); ++step) {
    if (pick(0, 20) == 0) bar_.SetSegment(pick(-2, 9), pick(-1, 7));
    if (pick(0, 5) == 0) bar_.SetMaximum(pick(-2, 12));
    bar_.Advance();
  }
  EXPECT_GT(bar_.Fraction(), 0.5);
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
