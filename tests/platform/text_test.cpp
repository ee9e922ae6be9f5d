#include "platform/text.h"

#include <gtest/gtest.h>

namespace zimbrat::platform {
namespace {

constexpr std::u16string_view kPolish = u"ĄĆĘŁŃÓŚŹŻąćęłńóśźż";

TEST(Utf8, RoundTripsWhatIsWellFormed) {
  for (const std::u16string text : {u"", u"a", u"zażółć gęślą jaźń", u"€", u"\U0001F600x", u"\uFFFF"}) {
    EXPECT_EQ(Utf16FromUtf8(Utf8FromUtf16(text)), text);
  }
  EXPECT_EQ(Utf8FromUtf16(u"Ł\U0001F600"), "\xC5\x81\xF0\x9F\x98\x80");
}

TEST(Utf8, ReplacesWhatIsBroken) {
  const struct {
    std::string_view bytes;
    std::u16string_view text;
  } rows[] = {
      {"a\x80z", u"a\uFFFDz"},                 // a continuation alone
      {"\xC5", u"\uFFFD"},                     // cut
      {"\xE2\x82z", u"\uFFFDz"},               // cut inside
      {"\xC0\x80", u"\uFFFD\uFFFD"},           // overlong NUL
      {"\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD"},  // a surrogate
      {"\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},  // above 10FFFF
      {"\xFF\xFE", u"\uFFFD\uFFFD"},
  };
  for (const auto& row : rows) EXPECT_EQ(Utf16FromUtf8(row.bytes), row.text);
  EXPECT_EQ(Utf8FromUtf16(u"a\xD83D"), "a\xEF\xBF\xBD");
  EXPECT_EQ(Utf8FromUtf16(u"\xDE00\xD83Dz"), "\xEF\xBF\xBD\xEF\xBF\xBDz");
}

TEST(Ansi1250, RoundTripsEveryByte) {
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte) bytes.push_back(static_cast<char>(byte));
  EXPECT_EQ(Ansi1250FromUtf16(Utf16FromAnsi1250(bytes)), bytes);
}

TEST(Ansi1250, HasThePolishLettersAndReplacesOthers) {
  EXPECT_EQ(Ansi1250FromUtf16(kPolish),
            "\xA5\xC6\xCA\xA3\xD1\xD3\x8C\x8F\xAF\xB9\xE6\xEA\xB3\xF1\xF3\x9C\x9F\xBF");
  EXPECT_EQ(Utf16FromAnsi1250("\x80\x81\x84\xA0"), u"€\u0081„\u00A0");
  EXPECT_EQ(Ansi1250FromUtf16(u"à½\U0001F600"), "????");
}

TEST(Case, FoldsLettersOneToOne) {
  EXPECT_EQ(UpperCase(u"zażółć ÿ αως дёѕ"), u"ZAŻÓŁĆ Ÿ ΑΩΣ ДЁЅ");
  EXPECT_EQ(UpperCase(u"ßı÷×@[`{"), u"ßı÷×@[`{");
  for (unsigned unit = 0; unit <= 0xFFFF; ++unit) {
    const char16_t upper = UpperCase(static_cast<char16_t>(unit));
    ASSERT_EQ(UpperCase(upper), upper) << std::hex << unit;  // a capital has no further one
  }
  EXPECT_TRUE(EqualIgnoringCase(u"Łódź", u"łÓDŹ"));
  EXPECT_FALSE(EqualIgnoringCase(u"lodz", u"łodz"));
  EXPECT_FALSE(EqualIgnoringCase(u"a", u"ab"));
}

TEST(Texts, TrimAndReplaceAsVisualBasic) {
  EXPECT_EQ(TrimBlanks(u"  a b "), u"a b");
  EXPECT_EQ(TrimBlanks(u"\ta\u00A0"), u"\ta\u00A0");
  EXPECT_EQ(TrimBlanks(u"   "), u"");
  EXPECT_EQ(ReplaceAll(u"a.mdb.Mdb.mdb", u".mdb", u""), u"a.Mdb");
  EXPECT_EQ(ReplaceAll(u"aaa", u"aa", u"b"), u"ba");
  EXPECT_EQ(ReplaceAll(u"abc", u"", u"x"), u"abc");
  EXPECT_EQ(DecimalText(-9223372036854775807LL), u"-9223372036854775807");
}

TEST(Wipe, LeavesNothingInTheMemoryThatTheTextKeeps) {
  std::u16string secret(100, u'x');
  secret.resize(3);
  Wipe(secret);
  EXPECT_TRUE(secret.empty());
  secret.resize(100, u'\0');
  EXPECT_EQ(secret.find(u'x'), std::u16string::npos);
}

}  // namespace
}  // namespace zimbrat::platform
