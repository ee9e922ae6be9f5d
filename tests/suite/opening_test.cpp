// Opening, identifying and comparing real databases.
#include "platform/error_numbers.h"
#include "suite/ModPrgFun.h"
#include "tests/product/database_bench.h"

namespace zimbrat::tests {
namespace {

class Opening : public testing::Test {
 protected:
  // A database of those tables, closed.
  void Make(std::initializer_list<const char16_t*> tables) {
    bench_.Create(u"baza.mdb");
    const auto file = bench_.WriteStructure(u"katalog/k.stb", kCatalogueSections);
    for (const char16_t* table : tables) EXPECT_TRUE(bench_.Table(table, file));
    bench_.Close();
  }
  bool Open() {
    platform::Secret password(bench_.state.databasePassword.View());
    return suite::OpenAndIdentify(bench_.state, bench_.PathOf(u"baza.mdb"), password);
  }
  std::string Message() const {
    EXPECT_EQ(bench_.host.messages.size(), 1u);
    return bench_.host.messages.empty() ? "" : Utf8(bench_.host.messages[0]);
  }
  std::string Path() const { return Utf8(bench_.PathOf(u"baza.mdb")); }

  DatabaseBench bench_;
};

TEST_F(Opening, TakesADatabaseWithBothCatalogueTables) {
  Make({u"dbprg", u"dboso"});
  EXPECT_TRUE(Open());
  EXPECT_TRUE(bench_.host.messages.empty());
  // Nothing was left open.
  EXPECT_NO_THROW(bench_.files.Open(bench_.PathOf(u"baza.mdb"), platform::OpenMode::ReadWrite,
                                    platform::Sharing::None));
}

TEST_F(Opening, TellsWhichCatalogueTableIsMissing) {
  Make({u"dboso"});
  EXPECT_FALSE(Open());
  EXPECT_EQ(Message(), "Baza: " + Path() +
                           " nie posiada struktury danych dla programów pakietu Kalmix. Baza nie "
                           "może zostać otwarta.");
}

TEST_F(Opening, NamesTheProgramZrWhenTheUsersAreMissing) {
  Make({u"dbprg"});
  EXPECT_FALSE(Open());
  EXPECT_EQ(Message(),
            "Baza: " + Path() +
                " nie posiada struktury danych dla programu: ZR. Baza nie może zostać otwarta. "
                "Program może otworzyć tylko bazy utworzone przez Zimbrat bazy.");
}

TEST_F(Opening, RefusesADatabaseThatSomebodyHolds) {
  Make({u"dbprg", u"dboso"});
  bench_.Open(u"baza.mdb");
  EXPECT_FALSE(Open());
  EXPECT_EQ(Message(), "Baza: " + Path() +
                           " została otwarta w trybie wyłączności przez innego użytkownika. "
                           "Zamknij bazę danych i spróbuj ponownie.");
}

TEST_F(Opening, AsksOnceForThePasswordAndKeepsIt) {
  Make({u"dbprg", u"dboso"});
  bench_.Open(u"baza.mdb").NewPassword(u"", u"Tajne");
  bench_.Close();
  EXPECT_FALSE(Open());
  EXPECT_EQ(Message().rfind("Baza nie może zostać otwarta. Błąd Nr 3031 - ", 0), 0u);
  bench_.host.password = u"tajne";
  EXPECT_FALSE(Open());
  bench_.host.password = u"Tajne";
  EXPECT_TRUE(Open());
  EXPECT_EQ(Utf8(bench_.state.databasePassword), "Tajne");
  bench_.host.password.reset();
  EXPECT_TRUE(Open());
}

TEST_F(Opening, DoesNotOpenTheBareFilterOrNothing) {
  for (const char16_t* path : {u"*.mdb", u""}) {
    bench_.host.messages.clear();
    platform::Secret password;
    EXPECT_FALSE(suite::OpenAndIdentify(bench_.state, path, password));
    EXPECT_EQ(Message().rfind("Baza nie może zostać otwarta. Błąd Nr ", 0), 0u) << Message();
  }
}

class ComparedDatabase : public Opening {
 protected:
  std::vector<std::string> Compare(bool leaveOutAbsent) {
    platform::OrvListCheck list(u';');
    bench_.state.structureFolder = bench_.PathOf(u"stb");
    lookedUp_ =
        suite::CompareWithDatabase(bench_.state, bench_.PathOf(u"baza.mdb"),
                                   suite::StructureFiles(bench_.state), list, leaveOutAbsent)
            .lookedUp;
    std::vector<std::string> items;
    for (const auto& item : list.Items()) {
      items.push_back((item.isChecked ? "+" : "") + Utf8(item.text));
    }
    EXPECT_EQ(bench_.host.busyDepth, 0);
    return items;
  }
  void Program(const char16_t* name, const std::string& header) {
    bench_.WriteStructure(std::u16string(u"stb/") + name, "[HEADER]\n" + header);
  }

  bool lookedUp_ = false;
};

TEST_F(ComparedDatabase, TellsTheStateOfEachProgram) {
  Make({u"dbprg", u"dboso"});
  bench_.Open(u"baza.mdb")
      .Execute(u"INSERT INTO dbprg (Indprg, VerMajor, VerMinor) VALUES ('K', 2, 0)");
  bench_.Close();
  Program(u"a.stb", "Program=Starszy\nSymbol=K\nVerMajor=2\nVerMinor=1\n");
  Program(u"b.stb", "Program=Równy\nSymbol=K\nVerMajor=1\nVerMinor=10\n");
  Program(u"c.stb", "Program=Brakujący\nSymbol=X\nVerMajor=1\nVerMinor=0\n");
  Program(u"d.stb", "Program=Bez wersji\nSymbol=K\n");
  Program(u"e.stb", "Symbol=K\nVerMajor=1\n");
  Program(u"f.stb", "Program=Wersja słowna\nSymbol=K\nVerMajor=trzy\n");
  EXPECT_EQ(Compare(false),
            (std::vector<std::string>{"+Starszy v.2.0 (aktualizacja do wersji 2.1)",
                                      "+Równy v.1.10 (struktura obecna)", "Brakujący (brak)",
                                      "+Wersja słowna v.trzy. (struktura obecna)"}));
  EXPECT_TRUE(lookedUp_);
  EXPECT_EQ(Compare(true).size(), 3u);
}

TEST_F(ComparedDatabase, EndsQuietlyAtAnErrorWithWhatItReached) {
  Make({u"dbprg", u"dboso"});
  Program(u"a.stb", "Program=Pierwszy\nSymbol=X\nVerMajor=1\n");
  Program(u"b.stb", "Program=Cudzysłów\nSymbol=X'Y\nVerMajor=1\n");
  Program(u"c.stb", "Program=Ostatni\nSymbol=Z\nVerMajor=1\n");
  EXPECT_EQ(Compare(false), std::vector<std::string>{"Pierwszy (brak)"});
  EXPECT_TRUE(lookedUp_);
  EXPECT_TRUE(bench_.host.messages.empty());
}

TEST_F(ComparedDatabase, IsFalseForADatabaseWithoutACatalogue) {
  Make({});
  Program(u"a.stb", "Program=Pierwszy\nSymbol=X\nVerMajor=1\n");
  EXPECT_TRUE(Compare(false).empty());
  EXPECT_FALSE(lookedUp_);
}

}  // namespace
}  // namespace zimbrat::tests
