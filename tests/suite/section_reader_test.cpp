#include <gtest/gtest.h>

#include "suite/ModPrgFun.h"
#include "tests/product/bench.h"

namespace zimbrat::tests {
namespace {

// "key|value" of each entry.
std::vector<std::string> Read(Bench& bench, std::u16string_view section, std::u16string_view path) {
  std::vector<std::string> lines;
  for (const auto& entry : suite::ReadSection(bench.profile, section, path)) {
    lines.push_back(Utf8(entry.key) + "|" + Utf8(entry.value));
  }
  return lines;
}

struct Case {
  const char* name;
  const char* content;
  std::vector<std::string> entries;
};

class SectionReader : public testing::TestWithParam<Case> {};

TEST_P(SectionReader, SplitsLinesIntoKeysAndValues) {
  Bench bench;
  const std::u16string path = bench.WriteStructure(u"a.stb", GetParam().content);
  EXPECT_EQ(Read(bench, u"S", path), GetParam().entries);
}

INSTANTIATE_TEST_SUITE_P(
    Lines, SectionReader,
    testing::Values(Case{"EqualsSigns", "[S]\nA=1\nB\n=C\nD=E=F\n", {"A|1", "B|", "=C|", "D|E=F"}},
                    Case{"RepeatedKeys", "[S]\nField=a\nField=b\n", {"Field|a", "Field|b"}},
                    Case{"PolishLetters", "[S]\nźdźbło=Ąę, żółć\n", {"źdźbło|Ąę, żółć"}},
                    Case{"QuotesStay", "[S]\nA=\"PLN\"\n", {"A|\"PLN\""}},
                    Case{"BlanksInside", "[S]\nA= 1, 2 \n", {"A|1, 2"}},
                    Case{"MissingSection", "[T]\nA=1\n", {}},
                    Case{"EmptySection", "[S]\n[T]\nA=1\n", {}}),
    [](const auto& row) { return row.param.name; });

TEST(SectionBuffer, HoldsEverythingUpTo2046Characters) {
  Bench bench;
  // With "v=" and its NUL the whole answer has 2046 characters.
  const std::string value(2043, 'x');
  const auto path = bench.WriteStructure(u"a.stb", "[S]\nv=" + value + "\n");
  EXPECT_EQ(Read(bench, u"S", path), std::vector<std::string>{"v|" + value});
}

TEST(SectionBuffer, CutsTheRestAnywhere) {
  Bench bench;
  std::string content = "[S]\n";
  for (int i = 100; i < 400; ++i) content += "key" + std::to_string(i) + "=value\n";
  const auto entries = Read(bench, u"S", bench.WriteStructure(u"a.stb", content));
  ASSERT_EQ(entries.size(), 158u);
  EXPECT_EQ(entries[156], "key256|value");
  EXPECT_EQ(entries[157], "key25|");  // cut before its number ended
}

TEST(HeaderText, IsCutToOneLessThanItsBuffer) {
  Bench bench;
  const auto path = bench.WriteStructure(
      u"a.stb", "[HEADER]\nProgram=" + std::string(120, 'p') + "\nSymbol=ABCDEFGHIJ\n");
  EXPECT_EQ(Utf8(suite::ReadHeaderText(bench.profile, "Program", suite::kHeaderBuffer, path)),
            std::string(99, 'p'));
  EXPECT_EQ(Utf8(suite::ReadHeaderText(bench.profile, "Symbol", suite::kSymbolBuffer, path)),
            "ABCDEFGHI");
  EXPECT_EQ(Utf8(suite::ReadHeaderText(bench.profile, "VerMajor", suite::kHeaderBuffer, path)), "");
}

TEST(SplitPath, CutsAtTheLastSeparator) {
  const std::u16string bar(1, platform::kPathSeparator);
  const std::tuple<std::u16string, std::u16string, std::u16string> rows[] = {
      {u"Firma.mdb", u"", u"Firma.mdb"},
      {u"a" + bar + u"b" + bar + u"Firma.mdb", u"a" + bar + u"b", u"Firma.mdb"},
      {bar + u"Firma.mdb", u"", u"Firma.mdb"},
      {u"a" + bar, u"a", u""},
  };
  for (const auto& [path, folder, name] : rows) {
    std::u16string gotFolder, gotName;
    suite::SplitPath(path, gotFolder, gotName);
    EXPECT_EQ(Utf8(gotFolder), Utf8(folder)) << Utf8(path);
    EXPECT_EQ(Utf8(gotName), Utf8(name)) << Utf8(path);
  }
}

}  // namespace
}  // namespace zimbrat::tests
