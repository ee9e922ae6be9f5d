// Databases extended and copied as templates, and what the copy on the way owes to its owner.
#include "platform/error_numbers.h"
#include "platform/text.h"
#include "tests/product/database_bench.h"

#include <filesystem>
#include <numeric>
#include <set>

namespace zimbrat::tests {
namespace {

namespace fs = std::filesystem;

class CopyDriver : public testing::Test {
 protected:
  CopyDriver() {
    bench_.environment.temporaryFolder = bench_.PathOf(u"robocze");
    bench_.folder.Write(u"robocze/obcy plik", "");
    EXPECT_TRUE(generator::GenerujNowaBaze(bench_.state, bench_.folder.Path(), u"Firma",
                                           Program("AB"), {1, 2025, 12, 2025}, bar_));
  }
  std::u16string Program(const std::string& symbol, const std::string& more = {}) {
    return bench_.WriteStructure(platform::Utf16FromUtf8(symbol + ".stb"),
                                 SmallProgram(symbol, more));
  }
  bool Extend(std::u16string_view files) {
    return generator::RozbudujBaze(bench_.state, Path(), files, bar_);
  }
  bool FromTemplate(std::u16string_view name = u"Nowy rok") {
    return generator::UtworzZWzorca(bench_.state, Path(), bench_.folder.Path(), name,
                                    {2, 2026, 3, 2026}, bar_);
  }
  std::u16string Path() const { return bench_.PathOf(u"Firma.mdb"); }
  std::u16string CopyPath() const { return bench_.PathOf(u"robocze/Robocza Firma.mdb"); }
  // Names that are no structure files, in the folder and in the working folder.
  std::string Left() const {
    std::set<std::string> names;
    for (const auto& entry : fs::recursive_directory_iterator(fs::path(bench_.folder.Path()))) {
      const auto name = entry.path().filename().u16string();
      if (entry.is_regular_file() && !name.ends_with(u".stb")) names.insert(Utf8(name) + " ");
    }
    return std::accumulate(names.begin(), names.end(), std::string());
  }

  DatabaseBench bench_;
  platform::ProgressBar bar_;
};

TEST_F(CopyDriver, AddsTheStructuresOfEveryFile) {
  ASSERT_TRUE(Extend(Program("CD") + u";" + Program("EF") + u";")) << bench_.Summary();
  EXPECT_EQ(Rows(bench_.Open(u"Firma.mdb"), u"SELECT Indprg FROM dbprg ORDER BY Indprg"),
            "AB CD EF");
  EXPECT_EQ(Left(), "Firma.mdb obcy plik ");
}

TEST_F(CopyDriver, LeavesTheDatabaseAloneWhenAFileFails) {
  const std::string before = bench_.folder.Read(u"Firma.mdb");
  EXPECT_FALSE(Extend(Program("CD") + u";" + bench_.PathOf(u"brak.stb") + u";" + Program("EF")));
  EXPECT_NE(bench_.Summary().find("Brak pliku struktury: "), std::string::npos);
  EXPECT_EQ(bench_.folder.Read(u"Firma.mdb"), before);
  EXPECT_EQ(Left(), "Firma.mdb obcy plik ");
}

TEST_F(CopyDriver, ReplacesWhatAKilledRunLeft) {
  bench_.files.Open(CopyPath(), platform::OpenMode::CreatePrivate, platform::Sharing::None);
  bench_.folder.Write(u"Firma.mdb.zimbrat-nowa", "pozostałość");
  ASSERT_TRUE(Extend(Program("CD"))) << bench_.Summary();
  EXPECT_EQ(Rows(bench_.Open(u"Firma.mdb"), u"SELECT Indprg FROM dbprg"), "AB CD");
  EXPECT_EQ(Left(), "Firma.mdb obcy plik ");
}

// Windows tells by lists of rights who may open a file, not by what a file could be asked.
TEST_F(CopyDriver, LeavesAFileThatIsNoWorkingCopy) {
  bench_.folder.Write(u"robocze/Robocza Firma.mdb", "cudze księgi");
  if (!bench_.files.State(CopyPath())->isPrivate) GTEST_SKIP() << "not known here";
  EXPECT_FALSE(Extend(Program("CD")));
  EXPECT_NE(bench_.Summary().find(Utf8(CopyPath())), std::string::npos) << bench_.Summary();
  EXPECT_EQ(bench_.folder.Read(u"robocze/Robocza Firma.mdb"), "cudze księgi");
}

TEST_F(CopyDriver, RefusesWhatSomebodyElseWorksOn) {
  const std::string before = bench_.folder.Read(u"Firma.mdb");
  const std::tuple<const char*, std::function<std::shared_ptr<void>()>, std::int32_t> rows[] = {
      {"a run on a database of the same name",
       [&] { return std::shared_ptr<void>(bench_.files.TryHold(CopyPath())); },
       platform::kErrPermissionDenied},
      {"a run on the same database",
       [&] { return std::shared_ptr<void>(bench_.files.TryHold(Path() + u".zimbrat-nowa")); },
       platform::kErrPermissionDenied},
      {"a writer",
       [&] {
         return std::shared_ptr<void>(bench_.files.Open(Path(), platform::OpenMode::ReadWrite,
                                                        platform::Sharing::None));
       },
       platform::kErrPermissionDenied},
  };
  for (const auto& [name, hold, number] : rows) {
    const auto held = hold();
    ASSERT_TRUE(held) << name;
    EXPECT_FALSE(Extend(Program("CD"))) << name;
    EXPECT_EQ(bench_.state.context.Number, number) << name;
  }
  EXPECT_EQ(bench_.folder.Read(u"Firma.mdb"), before);
  EXPECT_EQ(Left(), "Firma.mdb obcy plik ");
}

TEST_F(CopyDriver, DoesNotPutBackWhatIsEqual) {
  ASSERT_TRUE(Extend(Program("AB")));
  const auto first = bench_.files.State(Path());
  ASSERT_TRUE(Extend(Program("AB"))) << bench_.Summary();
  EXPECT_TRUE(bench_.files.State(Path())->IsSameFile(*first));
  EXPECT_EQ(bench_.files.State(Path())->modified, first->modified);
}

TEST_F(CopyDriver, PutsBackBehindALink) {
  std::error_code error;
  fs::create_symlink(fs::path(Path()), fs::path(bench_.PathOf(u"Link.mdb")), error);
  if (error) GTEST_SKIP() << "no links here";
  EXPECT_TRUE(
      generator::RozbudujBaze(bench_.state, bench_.PathOf(u"Link.mdb"), Program("CD"), bar_));
  EXPECT_TRUE(fs::is_symlink(fs::path(bench_.PathOf(u"Link.mdb"))));
  EXPECT_EQ(Rows(bench_.Open(u"Firma.mdb"), u"SELECT Indprg FROM dbprg"), "AB CD");
}

TEST_F(CopyDriver, TellsThatTheCopyIsGone) {
  generator::NewDatabaseFile file(bench_.state.on);
  generator::WorkingCopy copy(bench_.state.on);
  ASSERT_TRUE(generator::KopiaRobocza(bench_.state, Path(), copy));
  file.Begin(Path());
  bench_.files.Delete(copy.Path());
  EXPECT_FALSE(generator::PrzywrocKopie(bench_.state, copy, file));
  EXPECT_EQ(Utf8(bench_.state.context.Description), "Brak pliku: " + Utf8(CopyPath()));
}

TEST_F(CopyDriver, WorksInTheConfiguredFolderFirst) {
  bench_.folder.Write(u"inny/obcy plik", "");
  EXPECT_EQ(generator::WorkingFolder(bench_.state), bench_.PathOf(u"robocze"));
  bench_.state.workFolder = bench_.PathOf(u"inny");
  EXPECT_EQ(generator::WorkingFolder(bench_.state), bench_.PathOf(u"inny"));
  bench_.state.workFolder.clear();
  bench_.environment.temporaryFolder.clear();
  EXPECT_EQ(generator::WorkingFolder(bench_.state), bench_.folder.Path());
}

TEST_F(CopyDriver, SaysThatTheWorkingFolderIsMissing) {
  bench_.environment.temporaryFolder = bench_.PathOf(u"nie ma");
  EXPECT_FALSE(Extend(Program("CD")));
  EXPECT_NE(bench_.Summary().find("Nie ma folderu roboczego, wskazanego zmienną TEMP: " +
                                  Utf8(bench_.PathOf(u"nie ma"))),
            std::string::npos)
      << bench_.Summary();
}

TEST_F(CopyDriver, MakesADatabaseWithTheTemplatesDictionaries) {
  const std::string before = bench_.folder.Read(u"Firma.mdb");
  ASSERT_TRUE(FromTemplate()) << bench_.Summary();
  EXPECT_EQ(bench_.folder.Read(u"Firma.mdb"), before);
  dao::Database& database = bench_.Open(u"Nowy rok.mdb");
  EXPECT_EQ(Rows(database, u"SELECT Miesiac, Rok FROM dboko ORDER BY Miesiac"), "2|2026 3|2026");
  EXPECT_EQ(Rows(database, u"SELECT Naglowek1 FROM dbfir"), "Nazwa firmy");
  bench_.Close();
  EXPECT_EQ(Left(), "Firma.mdb Nowy rok.mdb obcy plik ");
}

TEST_F(CopyDriver, NeverReplacesTheTemplateItself) {
  const std::string before = bench_.folder.Read(u"Firma.mdb");
  bench_.host.answer = platform::kAnswerYes;
  EXPECT_FALSE(FromTemplate(u"Firma"));
  EXPECT_TRUE(bench_.host.messages.empty()) << "there is nothing to ask";
  EXPECT_EQ(bench_.folder.Read(u"Firma.mdb"), before);
}

TEST_F(CopyDriver, AsksBeforeATemplateCopyTakesThePlaceOfAFile) {
  bench_.folder.Write(u"Nowy rok.mdb", "stara");
  bench_.host.answer = platform::kAnswerNo;
  EXPECT_FALSE(FromTemplate());
  EXPECT_EQ(bench_.folder.Read(u"Nowy rok.mdb"), "stara");
  ASSERT_EQ(bench_.host.messages.size(), 1u);
  EXPECT_NE(Utf8(bench_.host.messages[0]).find("istnieje. Wskazany plik może"), std::string::npos);
  bench_.host.answer = platform::kAnswerYes;
  EXPECT_TRUE(FromTemplate()) << bench_.Summary();
}

}  // namespace
}  // namespace zimbrat::tests
