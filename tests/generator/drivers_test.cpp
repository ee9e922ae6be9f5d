#include "platform/error_numbers.h"
#include "platform/text.h"
#include "tests/product/database_bench.h"

#include <filesystem>

namespace zimbrat::tests {
namespace {

constexpr const char* kFailure =
    "Wystąpił bląd podczas generowania bazy danych. Baza nie została utworzona.\r\n";

class Driver : public testing::Test {
 protected:
  bool Run(std::u16string_view files, std::u16string_view name = u"Firma") {
    platform::ProgressBar bar;
    const bool done =
        generator::GenerujNowaBaze(bench_.state, bench_.folder.Path() + platform::kPathSeparator,
                                   name, files, {1, 2025, 12, 2025}, bar);
    EXPECT_TRUE(!done || bar.Value() == bar.Maximum());
    EXPECT_LT(bar.Fraction(), 1.0) << "the run is not over for who started it";
    return done;
  }
  std::u16string Program(const std::string& symbol) {
    return bench_.WriteStructure(platform::Utf16FromUtf8(symbol + ".stb"), SmallProgram(symbol));
  }
  // Names in the folder besides structure files.
  std::string Left() const {
    std::string names;
    for (const std::u16string& name : bench_.folder.Names()) {
      if (!name.ends_with(u".stb")) names += Utf8(name) + " ";
    }
    return names;
  }

  DatabaseBench bench_;
};

TEST_F(Driver, AppliesEveryFileOfTheList) {
  ASSERT_TRUE(Run(Program("AB") + u"," + Program("CD"))) << bench_.Summary();
  dao::Database& database = bench_.Open(u"Firma.mdb");
  EXPECT_EQ(Rows(database, u"SELECT * FROM dbprg"), "AB|Próba AB|1|3 CD|Próba CD|1|3");
  EXPECT_EQ(database.Relations()->Count(), 2);
  EXPECT_EQ(Left(), "Firma.mdb ");
}

TEST_F(Driver, LeavesOutALastFileOfOneCharacter) {
  ASSERT_TRUE(Run(Program("AB") + u",B"));
  EXPECT_EQ(Rows(bench_.Open(u"Firma.mdb"), u"SELECT * FROM dbprg"), "AB|Próba AB|1|3");
}

TEST_F(Driver, TellsWhatFailedAndLeavesWhatWasWritten) {
  const auto file = [&](const char16_t* name, const std::string& content) {
    return bench_.WriteStructure(name, content);
  };
  const std::string header = "[HEADER]\nProgram=X\nSymbol=X\nVerMajor=1\n";
  const std::string table = "[T]\nField=A,10,5,,False,False,2,\n";
  const std::string place = "\r\nIndeks: \r\nRelacja: ";
  const std::tuple<const char*, std::u16string, std::string> rows[] = {
      {"missing file", bench_.PathOf(u"brak.stb"),
       "Szczegóły:\r\nBrak pliku struktury: " + Utf8(bench_.PathOf(u"brak.stb")) +
           "\r\nTablica: " + place + "\r\nPole: \r\nLinia: \r\n"},
      {"no tables", file(u"t.stb", header + "[RELATIONS]\nR=a,b,0\n"), ""},
      {"no relations", file(u"r.stb", header + "[TABLES]\nT=1\n" + table), ""},
      {"cut required",
       file(u"f.stb", header + "[TABLES]\nT=1\n" + table + "Index=I,True,0,True,False\n"),
       "Szczegóły:\r\nBłąd nr 13; (Niezgodność typów)\r\nFunkcja: UtwórzTablice\r\nTablica: T" +
           place + "\r\nPole: A\r\nLinia: \r\n"},
      {"table without section", file(u"s.stb", header + "[TABLES]\nNie ma=1\n"),
       "Szczegóły:\r\nFunkcja: UtwórzTablice\r\nTablica: Nie ma" + place +
           "\r\nPole: \r\nLinia: \r\n"},
      {"one comma",
       file(u"c.stb", header + "[TABLES]\nT=1\n" + table + "[RELATIONS]\nR=T,T2\n[R]\nField=A,A\n"),
       "Szczegóły:\r\nBłąd nr 438; (Obiekt nie obsługuje tej właściwości lub metody)\r\n"
       "Błąd dekodowania relacji T,T2\r\nTablica: T\r\nIndeks: \r\nRelacja: R\r\nPole: \r\n"
       "Linia: T,T2\r\n"},
      {"too many steps", file(u"o.stb", header + "TabCount=32767\nRelCount=1\n"),
       "Szczegóły:\r\nBłąd nr 6; (Przepełnienie)\r\n"},
  };
  for (const auto& [name, path, details] : rows) {
    bench_.host.answer = platform::kAnswerYes;
    EXPECT_FALSE(Run(path)) << name;
    EXPECT_EQ(bench_.Summary(), kFailure + details) << name;
    EXPECT_EQ(Left(), "Firma.mdb ") << name;
    EXPECT_GE(bench_.Open(u"Firma.mdb").TableDefs()->Count(), 4) << name;
    bench_.Close();
  }
}

TEST_F(Driver, AsksBeforeItOverwrites) {
  bench_.folder.Write(u"Firma.mdb", "stara");
  bench_.host.answer = platform::kAnswerNo;
  EXPECT_FALSE(Run(Program("AB")));
  EXPECT_EQ(bench_.Summary(), kFailure);
  EXPECT_EQ(bench_.folder.Read(u"Firma.mdb"), "stara");
  ASSERT_EQ(bench_.host.messages.size(), 1u);
  EXPECT_EQ(Utf8(bench_.host.messages[0]),
            "Plik bazy: " + Utf8(bench_.PathOf(u"Firma.mdb")) +
                " istnieje. Wskazany plik może zawierać dane. Usunąć plik i utworzyć nowy plik "
                "bazy?");
  bench_.host.answer = platform::kAnswerYes;
  namespace fs = std::filesystem;
  const fs::path old(bench_.PathOf(u"Firma.mdb"));
  fs::permissions(old, fs::perms::owner_read | fs::perms::owner_write);
  const fs::perms rights = fs::status(old).permissions();
  EXPECT_TRUE(Run(Program("AB"))) << bench_.Summary();
  EXPECT_EQ(fs::status(old).permissions(), rights) << "nobody new may read the books";
  EXPECT_GT(bench_.folder.Read(u"Firma.mdb").size(), 4096u);
}

TEST_F(Driver, KeepsTheOldFileWhenTheNewOneIsNotSound) {
  bench_.folder.Write(u"Firma.mdb", "stara");
  bench_.host.answer = platform::kAnswerYes;
  bench_.host.verify = [](std::u16string_view, std::u16string_view) {
    throw platform::RunTimeError(platform::kErrCannotOpenDatabase, u"test", u"uszkodzona");
  };
  EXPECT_FALSE(Run(Program("AB")));
  EXPECT_EQ(bench_.state.context.Number, platform::kErrCannotOpenDatabase);
  EXPECT_EQ(bench_.folder.Read(u"Firma.mdb"), "stara");
  EXPECT_EQ(Left(), "Firma.mdb ");
}

TEST_F(Driver, RefusesAnOldFileThatSomebodyHolds) {
  bench_.folder.Write(u"Firma.mdb", "stara");
  bench_.host.answer = platform::kAnswerYes;
  const auto held = bench_.files.Open(bench_.PathOf(u"Firma.mdb"), platform::OpenMode::ReadWrite,
                                      platform::Sharing::None);
  EXPECT_FALSE(Run(Program("AB")));
  EXPECT_EQ(bench_.state.context.Number, platform::kErrPermissionDenied);
  EXPECT_EQ(Left(), "Firma.mdb ");
}

TEST_F(Driver, RemovesLeftoversThatNobodyHolds) {
  bench_.folder.Write(u"Inna.mdb.zimbrat-nowa", "pozostałość");
  bench_.folder.Write(u"Firma.mdb.zimbrat-nowa", "pozostałość");
  bench_.folder.Write(u"Trwa.mdb.zimbrat-nowa", "praca innego programu");
  {
    const auto hold = bench_.files.TryHold(bench_.PathOf(u"Trwa.mdb.zimbrat-nowa"));
    ASSERT_TRUE(hold);
    EXPECT_TRUE(Run(Program("AB"))) << bench_.Summary();
    EXPECT_TRUE(bench_.folder.Exists(u"Trwa.mdb.zimbrat-nowa"));
  }
  bench_.host.answer = platform::kAnswerYes;
  EXPECT_TRUE(Run(Program("AB")));
  EXPECT_EQ(Left(), "Firma.mdb ");
}

TEST_F(Driver, RefusesADatabaseThatAnotherRunIsWriting) {
  const auto hold = bench_.files.TryHold(bench_.PathOf(u"Firma.mdb.zimbrat-nowa"));
  EXPECT_FALSE(Run(Program("AB")));
  EXPECT_EQ(bench_.state.context.Number, platform::kErrPermissionDenied);
  EXPECT_FALSE(bench_.folder.Exists(u"Firma.mdb"));
}

TEST_F(Driver, RecordsWhatTheFileSystemHasAgainstThePlace) {
  EXPECT_FALSE(Run(Program("AB"), u"nie ma/Firma"));
  EXPECT_NE(bench_.state.context.Number, 0);
  bench_.folder.Write(u"Firma.mdb/plik", "");
  bench_.host.answer = platform::kAnswerYes;
  EXPECT_FALSE(Run(Program("AB")));
  EXPECT_NE(bench_.state.context.Number, 0);
  EXPECT_TRUE(bench_.folder.Exists(u"Firma.mdb/plik"));
}

}  // namespace
}  // namespace zimbrat::tests
