#include "platform/dates.h"

#include <gtest/gtest.h>

#include "platform/text.h"

namespace zimbrat::platform {
namespace {

TEST(DateSerial, CountsFromTheEndOf1899) {
  const struct {
    int year, month, day;
    double serial;
  } rows[] = {
      {1899, 12, 30, 0},      {1900, 1, 1, 2},         {1970, 1, 1, 25569},     {2000, 2, 29, 36585},
      {2003, 2, 5, 37657},    {100, 1, 1, -657434},    {9999, 12, 31, 2958465}, {2003, 13, 1, 37987},
      {2003, 0, 1, 37591},    {2003, 3, 0, 37680},     {2003, -11, 1, 37257},   {29, 1, 1, 47119},
      {30, 1, 1, 10959},      {1900, 3, 1, 61},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(DateSerial(row.year, row.month, row.day), row.serial)
        << row.year << "-" << row.month << "-" << row.day;
  }
}

TEST(DateParts, RoundTripEveryDayAndSecondsOfSome) {
  for (int serial = -657434; serial <= 2958465; serial += 17) {
    const DateParts parts = PartsOfDate(serial);
    ASSERT_EQ(DateSerial(parts.year, parts.month, parts.day), serial);
  }
  for (const double date : {37657.0, -37657.0, 0.0, -1.0}) {
    for (int second = 0; second < 86400; second += 61) {
      const double moment = date < 0 ? date - second / 86400.0 : date + second / 86400.0;
      const DateParts parts = PartsOfDate(moment);
      ASSERT_EQ(parts.hour * 3600 + parts.minute * 60 + parts.second, second) << moment;
      ASSERT_NEAR(DateFromParts(parts), moment, 1e-9);
    }
  }
}

TEST(DateParts, RoundUpOverMidnight) {
  EXPECT_EQ(TextFromDate(37657.999999), u"2003-02-06");
  EXPECT_EQ(TextFromDate(-1.999999), u"1899-12-30");
  EXPECT_EQ(TextFromDate(37657.25), u"2003-02-05 06:00:00");
  EXPECT_EQ(TextFromDate(0.25), u"06:00:00");
  EXPECT_EQ(PartsOfDate(1e300).year, 1899);
  EXPECT_FALSE(IsDateInRange(2958466));
  EXPECT_FALSE(IsDateInRange(0.0 / 0.0 * 1.0));
}

TEST(FindDate, ReadsTheFormatsOfTheEngineAndOfPolishUsers) {
  const struct {
    std::u16string_view text;
    std::optional<double> date;
  } rows[] = {
      {u"2003-02-05", 37657},        {u" 5.02.2003 ", 37657},  {u"05/2/2003", 37657},
      {u"5.2.03", 37657},            {u"06:00", 0.25},         {u"2003-02-05 06:00:00", 37657.25},
      {u"5.2.2003  18:00", 37657.75}, {u"1899-12-29 06:00", -1.25},
      {u"29.02.2004", 38046},        {u"29.02.2003", {}},      {u"2003-13-01", {}},
      {u"31.04.2003", {}},           {u"5.2/2003", {}},        {u"24:00", {}},
      {u"12:60", {}},                {u"5.2", {}},             {u"", {}},
      {u"99999-01-01", {}},          {u"2003-02-05x", {}},     {u"2003-02-05 ", 37657},
      {u"5 lutego 2003", 37657},     {u"5 LUT 03 6:00", 37657.25}, {u"5-2-2003", 37657},
      {u"2003/2/5", 37657},          {u"2003.02-05", {}},      {u"5 maja", {}},
      {u"6:00 AM", 0.25},            {u"12:00 am", 0},         {u"12:00pm", 0.5},
      {u"13:00 PM", {}},             {u"0:30 AM", {}},         {u"6:00 XM", {}},
      {u"12", {}},                   {u"1.1.123", {}},         {u"0099-01-01", {}},
  };
  for (const auto& row : rows) EXPECT_EQ(FindDate(row.text), row.date) << Utf8FromUtf16(row.text);
}

}  // namespace
}  // namespace zimbrat::platform
