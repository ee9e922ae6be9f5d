#include <gtest/gtest.h>

#include "suite/ModPrgFun.h"
#include "tests/product/bench.h"

namespace zimbrat::tests {
namespace {

std::vector<std::string> Texts(const platform::OrvList& list) {
  std::vector<std::string> texts;
  for (const auto& item : list.Items()) texts.push_back(Utf8(item.text));
  return texts;
}

TEST(ProgramList, ShowsProgramsWithTheirVersionsInTheFoldersOrder) {
  Bench bench;
  bench.WriteStructure(u"b/b.stb", "[HEADER]\nProgram=Kadry\nVerMajor=2\nVerMinor=3\n");
  bench.WriteStructure(u"b/A.STB", "[HEADER]\nProgram=Płace\nVerMajor=1\n");
  bench.WriteStructure(u"b/bez nazwy.stb", "[HEADER]\nProgram=\nVerMajor=1\n");
  bench.WriteStructure(u"b/opis.txt", "[HEADER]\nProgram=Tekst\n");
  bench.state.structureFolder = bench.PathOf(u"b");
  platform::OrvListCheck list(u',');
  suite::LoadProgramList(bench.state, list);
  EXPECT_EQ(Texts(list), (std::vector<std::string>{"Płace v.1.", "Kadry v.2.3"}));
  EXPECT_EQ(Utf8(list.Items()[1].value), Utf8(bench.PathOf(u"b/b.stb")));
}

TEST(ProgramList, FallsBackToTheProgramsOwnFolder) {
  Bench bench;
  platform::OrvListCheck list(u',');
  suite::LoadProgramList(bench.state, list);
  EXPECT_EQ(list.Count(), 0);
  bench.WriteStructure(u"k.stb", "[HEADER]\nProgram=Kadry\nVerMajor=2\nVerMinor=3\n");
  bench.folder.Write(u"pusty/x.txt", "");
  for (const std::u16string& folder :
       {std::u16string(), bench.PathOf(u"pusty"), bench.PathOf(u"nie ma")}) {
    list.Clear();
    bench.state.structureFolder = folder;
    suite::LoadProgramList(bench.state, list);
    EXPECT_EQ(Texts(list), std::vector<std::string>{"Kadry v.2.3"}) << Utf8(folder);
  }
}

TEST(DatabasesOfAFolder, AreShownWithoutTheirExtension) {
  Bench bench;
  for (const char16_t* name : {u"Firma.mdb", u"ABC.MDB", u"x.mdb.txt"})
    bench.folder.Write(name, "");
  platform::OrvList list;
  suite::ListDatabases(bench.state, list, bench.folder.Path());
  EXPECT_EQ(Texts(list), (std::vector<std::string>{"ABC", "Firma"}));
  EXPECT_EQ(Utf8(list.Items()[1].value), Utf8(bench.PathOf(u"Firma.mdb")));
}

TEST(Selection, TakesCheckedItemsThatAreNotUpToDate) {
  platform::OrvListCheck list(u';');
  list.Add(u"Kadry v.2.3 (struktura obecna)", u"k.stb");
  list.Add(u"Magazyn (brak)", u"m.stb");
  list.Add(u"Faktury v.1.0 (aktualizacja do wersji 2.0)", u"f.stb");
  list.Add(u"Płace obecna starsza wersja", u"p.stb");
  list.Add(u"Środki (brak)", u"s.stb");
  for (int i = 0; i < 4; ++i) list.SetChecked(i, true);
  std::u16string values, names;
  EXPECT_TRUE(suite::CollectSelection(list, values, names));
  EXPECT_EQ(Utf8(values), "m.stb;f.stb;p.stb;");
  EXPECT_EQ(Utf8(names),
            "Magazyn;Faktury v.1.0 (aktualizacja do wersji 2.0);Płace podniesienie wersji;");
  list.Clear();
  EXPECT_FALSE(suite::CollectSelection(list, values, names));
}

TEST(Comparison, RefusesAnEmptyPathWithAMessage) {
  Bench bench;
  platform::OrvListCheck list(u';');
  list.Add(u"stary", u"wpis");
  EXPECT_FALSE(suite::CompareWithDatabase(bench.state, u"", {}, list, false));
  EXPECT_EQ(list.Count(), 0);
  ASSERT_EQ(bench.host.messages.size(), 1u);
  EXPECT_EQ(Utf8(bench.host.messages[0]),
            "Wybierz bazę danych z listy lub wskaż lokalizację bazy.");
  EXPECT_EQ(bench.host.busyDepth, 0);
}

}  // namespace
}  // namespace zimbrat::tests
