// The path rules that are the same over any Files.
#include "platform/files.h"

#include <gtest/gtest.h>

#include "platform/text.h"

namespace zimbrat::platform {
namespace {

// A path written with `/`, with this system's separator.
std::u16string P(std::u16string_view path) {
  return ReplaceAll(path, u"/", std::u16string(1, kPathSeparator));
}

TEST(Paths, SplitAtTheLastSeparator) {
  const struct {
    std::u16string_view path, folder, name;
  } rows[] = {{u"/a/b.mdb", u"/a", u"b.mdb"}, {u"b.mdb", u"", u"b.mdb"}, {u"/b", u"/", u"b"},
              {u"a/", u"a", u""},             {u"", u"", u""}};
  for (const auto& row : rows) {
    const std::u16string path = P(row.path);
    EXPECT_EQ(FolderOfPath(path), P(row.folder)) << Utf8FromUtf16(path);
    EXPECT_EQ(NameOfPath(path), row.name) << Utf8FromUtf16(path);
  }
  EXPECT_EQ(JoinPath(u"", u"b"), u"b");
  EXPECT_EQ(JoinPath(P(u"/"), u"b"), P(u"/b"));
  EXPECT_EQ(JoinPath(u"a", u"b"), P(u"a/b"));
}

TEST(Pattern, KnowsStarAndQuestionMarkWithoutCase) {
  const struct {
    std::u16string_view name, pattern;
    bool matches;
  } rows[] = {
      {u"Faktury.STB", u"*.stb", true}, {u"a.stbx", u"*.stb", false}, {u"łódź.mdb", u"Ł?D*", true},
      {u"a", u"*.*", true},             {u"", u"*", true},            {u"", u"?", false},
      {u"abc", u"a*b*c*", true},        {u"abc", u"a*b*d", false},    {u"a.b", u"a.b", true},
      {u"aab", u"*ab", true},           {u"a", u"", false},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(MatchesPattern(row.name, row.pattern), row.matches)
        << Utf8FromUtf16(row.name) << " ~ " << Utf8FromUtf16(row.pattern);
  }
}

TEST(Pattern, ManyStarsDoNotTakeForever) {
  std::u16string pattern;
  for (int i = 0; i < 200; ++i) pattern += u"*a";
  EXPECT_FALSE(MatchesPattern(std::u16string(5000, u'a') + u"b", pattern));
}

TEST(NameOrder, IsThatOfUpperCasedUnits) {
  const std::u16string_view names[] = {u"10", u"2", u"aa", u"B2", u"z_", u"ć", u"ł"};
  for (std::size_t i = 1; i < std::size(names); ++i) {
    EXPECT_TRUE(NameComesBefore(names[i - 1], names[i]));
    EXPECT_FALSE(NameComesBefore(names[i], names[i - 1]));
  }
}

}  // namespace
}  // namespace zimbrat::platform
