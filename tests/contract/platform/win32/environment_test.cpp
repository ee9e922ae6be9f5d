// The surroundings that the other tests rely on: a Polish system, or at least one of a known code page.
#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "platform/win32/win32_clock.h"

namespace zimbrat::platform {
namespace {

TEST(WindowsEnvironment, IsPolish) {
  if (::GetACP() == 1252) GTEST_SKIP() << "the run with the other code page";
  EXPECT_EQ(::GetACP(), 1250u);
  wchar_t name[LOCALE_NAME_MAX_LENGTH];
  ::GetUserDefaultLocaleName(name, LOCALE_NAME_MAX_LENGTH);
  EXPECT_EQ(std::wstring(name), L"pl-PL");
  wchar_t letters[16] = {};
  ::MultiByteToWideChar(CP_ACP, 0, "\xA5\xC6\xCA\xA3\xD1\xD3\x8C\x8F\xAF", -1, letters, 16);
  EXPECT_EQ(std::wstring(letters), L"ĄĆĘŁŃÓŚŹŻ");
}

// The user's setting of the date, put back at the end.
class DatePattern {
 public:
  DatePattern() { ::GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SSHORTDATE, former_, 80); }
  ~DatePattern() { Set(former_); }
  DatePattern(const DatePattern&) = delete;
  DatePattern& operator=(const DatePattern&) = delete;
  void Set(const wchar_t* pattern) { EXPECT_TRUE(::SetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SSHORTDATE, pattern)); }

 private:
  wchar_t former_[80] = {};
};

// The user's own pattern, not one of ours. One test, since the setting is one for all programs.
TEST(WindowsClock, FollowsTheRegionalFormats) {
  Win32Clock clock;
  SYSTEMTIME now;
  wchar_t date[64], time[64];
  std::u16string expectedDate, expectedTime;
  do {  // the minute may end in between
    ::GetLocalTime(&now);
    ::GetDateFormatW(LOCALE_USER_DEFAULT, DATE_SHORTDATE, &now, nullptr, date, 64);
    ::GetTimeFormatW(LOCALE_USER_DEFAULT, TIME_NOSECONDS, &now, nullptr, time, 64);
    expectedDate = clock.ShortDate();
    expectedTime = clock.ShortTime();
  } while (std::wstring(time) != std::wstring(expectedTime.begin(), expectedTime.end()));
  EXPECT_EQ(std::wstring(expectedDate.begin(), expectedDate.end()), date);
  if (::GetACP() == 1250) {
    EXPECT_EQ(expectedDate.size(), 10u);
    EXPECT_EQ(expectedTime.size(), 5u);
  }
  DatePattern pattern;
  pattern.Set(L"yyyy-MM-dd");
  const std::u16string dashes = clock.ShortDate();
  pattern.Set(L"d/M/yy");
  const std::u16string slashes = clock.ShortDate();
  ASSERT_EQ(dashes.size(), 10u);
  EXPECT_EQ(dashes[4], u'-');
  EXPECT_EQ(dashes[7], u'-');
  EXPECT_EQ(std::count(slashes.begin(), slashes.end(), u'/'), 2);
  EXPECT_EQ(slashes.substr(slashes.size() - 2), dashes.substr(2, 2)) << "the year";
}

}  // namespace
}  // namespace zimbrat::platform
