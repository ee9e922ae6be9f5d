// zimbratc from words to exit status, over real files, with a terminal that the test looks at.
#include <gtest/gtest.h>

#include <filesystem>

#include "console/run.h"
#include "fake_console.h"
#include "tests/product/bench.h"

namespace zimbrat::tests {
namespace {

class Zimbratc : public testing::Test {
 protected:
  // The exit status; what was written stands in output_ and error_ as UTF-8.
  int Run(std::vector<std::u16string> words) {
    platform::System system = platform::MakeSystem(0, nullptr);
    auto terminal = std::make_unique<FakeConsole>();
    FakeConsole& console = *terminal;
    console.words = std::move(words);
    console.isTerminal = isTerminal_;
    console.isInterrupted = isInterrupted_;
    system.console = std::move(terminal);
    auto environment = std::make_unique<FakeEnvironment>();
    environment->programFolder = folder_.PathOf(u"program");
    environment->temporaryFolder = folder_.PathOf(u"robocze");
    environment->variables[u"ZIMBRAT_SILNIK"] = engineVariable_;
    system.environment = std::move(environment);
    system.registry = std::make_unique<platform::PortableRegistry>(
        *system.files, folder_.PathOf(u"rejestr/rejestr.reg"));
    const int status = console::Run(system);
    output_ = Utf8(console.output);
    error_ = Utf8(console.error);
    EXPECT_EQ(console.passwordsAsked, 0);
    return status;
  }
  int Nowa(std::u16string_view name, std::u16string_view structures,
           std::vector<std::u16string> more = {}) {
    std::vector<std::u16string> words = {u"nowa",
                                         u"--folder",
                                         folder_.Path(),
                                         u"--nazwa",
                                         std::u16string(name),
                                         u"--struktury",
                                         std::u16string(structures)};
    words.insert(words.end(), more.begin(), more.end());
    return Run(words);
  }
  static std::u16string Example(std::u16string_view name) {
    return platform::JoinPath(platform::Utf16FromUtf8(ZIMBRAT_STRUKTURY), name);
  }
  std::string Path(std::u16string_view name) const { return Utf8(folder_.PathOf(name)); }

  TempFolder folder_;
  bool isTerminal_ = false;
  bool isInterrupted_ = false;
  std::u16string engineVariable_ = u"wbudowany";
  std::string output_, error_;
};

TEST_F(Zimbratc, CreatesADatabaseAndShowsItsState) {
  ASSERT_EQ(Nowa(u"Żółw", Example(u"faktury.stb") + u";" + Example(u"magazyn.stb"),
                 {u"--od", u"11/2024", u"--do=2/2025", u"--do-listy"}),
            0)
      << error_;
  EXPECT_EQ(output_, "Baza danych: Żółw\nFolder: " + Utf8(folder_.Path()) +
                         "\nzostała poprawnie utworzona.\n");
  EXPECT_EQ(error_, "");
  ASSERT_EQ(Run({u"stan", u"--baza", folder_.PathOf(u"Żółw.mdb"), u"--folder-struktur",
                 platform::Utf16FromUtf8(ZIMBRAT_STRUKTURY)}),
            0)
      << error_;
  EXPECT_EQ(output_,
            "Faktury i rozliczenia v.2.4 (struktura obecna)\nKadry i płace (brak)\n"
            "Magazyn v.1.7 (struktura obecna)\n");
  ASSERT_EQ(Run({u"lista", u"--json"}), 0);
  EXPECT_NE(output_.find("\"bazy\":[{\"nazwa\":\"Żółw\",\"plik\":"), std::string::npos) << output_;
}

TEST_F(Zimbratc, ExtendsChecksAndCopiesADatabase) {
  folder_.Write(u"robocze/obcy plik", "");
  const std::u16string database = folder_.PathOf(u"Firma.mdb");
  ASSERT_EQ(Nowa(u"Firma", Example(u"faktury.stb")), 0) << error_;
  ASSERT_EQ(Run({u"dodaj", u"--baza", database, u"--struktury",
                 Example(u"faktury.stb") + u";" + Example(u"kadry.stb")}),
            0)
      << error_;
  EXPECT_EQ(output_, "Struktura bazy danych: Firma\nFolder: " + Utf8(folder_.Path()) +
                         "\nzostała poprawnie rozbudowana dla programu(ów): Kadry i płace;\n");
  EXPECT_EQ(Run({u"dodaj", u"--baza", database, u"--struktury", Example(u"kadry.stb"), u"--json"}),
            1);
  EXPECT_EQ(error_.rfind("Zaznacz programy i spróbuj ponownie. Jeżeli lista jest pusta", 0), 0u);
  ASSERT_EQ(Run({u"sprawdz", u"--baza", database, u"--struktury",
                 Example(u"magazyn.stb") + u"," + Example(u"faktury.stb"), u"--json"}),
            0)
      << error_;
  EXPECT_NE(output_.find("posiadają poprawną strukturę."), std::string::npos) << output_;
  EXPECT_NE(output_.find("\"symbol\":\"FAK\""), std::string::npos);
  EXPECT_EQ(output_.find("\"symbol\":\"MAG\""), std::string::npos) << "it is not in the database";
  ASSERT_EQ(Run({u"wzorzec", u"--wzorzec", database, u"--folder", folder_.Path(), u"--nazwa",
                 u"Rok", u"--do-listy"}),
            0)
      << error_;
  EXPECT_EQ(output_, "Baza danych: Rok\nFolder: " + Utf8(folder_.Path()) +
                         "\nzostała poprawnie utworzona.\n");
  EXPECT_TRUE(folder_.Exists(u"Rok.mdb"));
  ASSERT_EQ(Run({u"lista"}), 0);
  EXPECT_EQ(output_, "Rok: " + Path(u"Rok.mdb") + "\n");
}

TEST_F(Zimbratc, PassesOverNoStructureFileThatWasNamed) {
  folder_.Write(u"robocze/obcy plik", "");
  ASSERT_EQ(Nowa(u"Firma", Example(u"faktury.stb")), 0) << error_;
  const std::string before = folder_.Read(u"Firma.mdb");
  folder_.Write(u"bez wersji.stb", "[HEADER]\r\nProgram=P\r\nSymbol=P\r\n");
  folder_.Write(u"symbol.stb", "[HEADER]\r\nProgram=P\r\nSymbol=a'b\r\nVerMajor=1\r\n");
  for (const char16_t* bad : {u"bez wersji.stb", u"symbol.stb"}) {
    for (const char16_t* command : {u"dodaj", u"sprawdz"}) {
      EXPECT_EQ(Run({command, u"--baza", folder_.PathOf(u"Firma.mdb"), u"--struktury",
                     Example(u"kadry.stb") + u";" + folder_.PathOf(bad)}),
                1);
      EXPECT_NE(error_.find(Path(bad)), std::string::npos) << error_;
      EXPECT_EQ(folder_.Read(u"Firma.mdb"), before);
    }
  }
}

TEST_F(Zimbratc, StopsWhenAskedToAndLeavesNothing) {
  folder_.Write(u"robocze/obcy plik", "");
  ASSERT_EQ(Nowa(u"Firma", Example(u"faktury.stb")), 0) << error_;
  const std::string before = folder_.Read(u"Firma.mdb");
  const std::vector<std::u16string> names = folder_.Names();
  const std::u16string database = folder_.PathOf(u"Firma.mdb");
  isInterrupted_ = true;
  const std::vector<std::u16string> commands[] = {
      {u"nowa", u"--folder", folder_.Path(), u"--nazwa", u"Firma", u"--struktury",
       Example(u"kadry.stb"), u"--nadpisz"},
      {u"dodaj", u"--baza", database, u"--struktury", Example(u"kadry.stb")},
      {u"sprawdz", u"--baza", database, u"--struktury", Example(u"faktury.stb")},
      {u"wzorzec", u"--wzorzec", database, u"--folder", folder_.Path(), u"--nazwa", u"Rok"},
  };
  for (const auto& words : commands) {
    EXPECT_EQ(Run(words), 1) << Utf8(words[0]);
    EXPECT_NE(error_.find("(Przerwano na żądanie użytkownika)"), std::string::npos) << error_;
    EXPECT_EQ(folder_.Names(), names) << Utf8(words[0]);
    EXPECT_EQ(folder_.Read(u"Firma.mdb"), before) << Utf8(words[0]);
    EXPECT_FALSE(folder_.Exists(u"robocze/Robocza Firma.mdb"));
  }
}

TEST_F(Zimbratc, LeavesAnExistingFileUntouchedUnlessToldOtherwise) {
  folder_.Write(u"Firma.mdb", "stara");
  EXPECT_EQ(Nowa(u"Firma.MDB", Example(u"kadry.stb"), {u"--json"}), 1);
  EXPECT_NE(error_.find("istnieje. Wskazany plik może zawierać dane."), std::string::npos);
  EXPECT_NE(error_.find("--nadpisz"), std::string::npos);
  EXPECT_EQ(output_.find("poprawnie utworzona"), std::string::npos);
  EXPECT_EQ(output_.rfind("{\"wynik\":\"blad\",\"status\":1,\"polecenie\":\"nowa\",", 0), 0u);
  EXPECT_EQ(folder_.Read(u"Firma.mdb"), "stara");
  EXPECT_EQ(Nowa(u"Firma", Example(u"kadry.stb"), {u"--nadpisz"}), 0) << error_;
  EXPECT_NE(folder_.Read(u"Firma.mdb"), "stara");
}

TEST_F(Zimbratc, RefusesNamesThatNoFileShouldHave) {
  for (const std::u16string& name :
       {std::u16string(u""), std::u16string(u".mdb"), std::u16string(u"../Firma"),
        std::u16string(u"a\\b"), std::u16string(u"a:b"), std::u16string(u"a*"),
        std::u16string(u"CON"), std::u16string(u"nul.txt"), std::u16string(u"Com1"),
        std::u16string(u"LPT²"), std::u16string(u"kropka."), std::u16string(u"spacja "),
        std::u16string(u" "), std::u16string(u"a\u0001b"), std::u16string(u"a\0b", 3),
        std::u16string(240, u'x'), std::u16string(1, char16_t{0xD800}), std::u16string(u"..")}) {
    EXPECT_EQ(Nowa(name, Example(u"kadry.stb")), 2) << Utf8(name);
    EXPECT_NE(error_, "");
    EXPECT_TRUE(folder_.Names().empty()) << Utf8(name);
  }
}

TEST_F(Zimbratc, TouchesNothingWhenItsWordsAreWrong) {
  const std::tuple<std::vector<std::u16string>, int, const char*> rows[] = {
      {{u"--od", u"13/2025"}, 2, "opcji --od nie jest okresem M/RRRR"},
      {{u"--do", u"1/2999", u"--od", u"1/1900"}, 2, "Zakres okresów obliczeniowych obejmuje ponad 100 lat."},
      {{u"--nadpis"}, 2, "Czy chodziło o --nadpisz?"},
  };
  for (const auto& [more, status, text] : rows) {
    EXPECT_EQ(Nowa(u"Firma", Example(u"kadry.stb"), more), status);
    EXPECT_NE(error_.find(text), std::string::npos) << error_;
    EXPECT_TRUE(folder_.Names().empty());
  }
  EXPECT_EQ(Nowa(u"Firma", u" , ;"), 2);
  EXPECT_TRUE(folder_.Names().empty());
}

TEST_F(Zimbratc, NamesAMissingStructureFileBeforeItTouchesAnything) {
  EXPECT_EQ(Nowa(u"Firma", Example(u"kadyr.stb")), 1);
  EXPECT_EQ(error_,
            "Wystąpił bląd podczas generowania bazy danych. Baza nie została utworzona.\n"
            "Szczegóły:\nBrak pliku struktury: " +
                Utf8(platform::MakeSystem(0, nullptr).files->RealPath(Example(u"kadyr.stb"))) +
                "\nTablica: \nIndeks: \nRelacja: \nPole: \nLinia: \nCzy chodziło o kadry.stb?\n");
  EXPECT_EQ(output_, "");
  EXPECT_EQ(Nowa(u"Firma", Example(u"kadry.stb") + u",B"), 1);
  EXPECT_NE(error_.find("Brak pliku struktury: "), std::string::npos);
  EXPECT_TRUE(folder_.Names().empty());
}

TEST_F(Zimbratc, NamesAFolderThatDoesNotExist) {
  EXPECT_EQ(Run({u"nowa", u"--folder", folder_.PathOf(u"nie ma"), u"--nazwa", u"F", u"--struktury",
                 Example(u"kadry.stb")}),
            1);
  EXPECT_EQ(error_,
            "Folder: " + Path(u"nie ma") + " nie istnieje. Wprowadź nazwę istniejącego folderu.\n");
}

TEST_F(Zimbratc, TellsAFailedRunAndNeverSuccess) {
  folder_.Write(u"zla.stb", "[HEADER]\r\nSymbol=Z\r\n[TABLES]\r\nT=1\r\n");
  EXPECT_EQ(Nowa(u"Firma", folder_.PathOf(u"zla.stb"), {u"--json"}), 1);
  EXPECT_NE(error_.find("Funkcja: UtwórzTablice\nTablica: T\n"), std::string::npos) << error_;
  EXPECT_EQ(output_.find("poprawnie utworzona"), std::string::npos);
}

TEST_F(Zimbratc, DrawsTheBarOnATerminalOnly) {
  ASSERT_EQ(Nowa(u"A", Example(u"magazyn.stb")), 0);
  EXPECT_EQ(error_, "");
  isTerminal_ = true;
  ASSERT_EQ(Nowa(u"B", Example(u"magazyn.stb")), 0);
  EXPECT_NE(error_.find("100%"), std::string::npos);
  ASSERT_EQ(Nowa(u"C", Example(u"magazyn.stb"), {u"--cicho"}), 0);
  EXPECT_EQ(error_, "");
}

TEST_F(Zimbratc, RefusesWhatIsNoDatabaseOfTheSuite) {
  folder_.Write(u"tekst.mdb", "nie baza");
  EXPECT_EQ(Run({u"stan", u"--baza", folder_.PathOf(u"tekst.mdb")}), 1);
  EXPECT_EQ(error_.rfind("Baza nie może zostać otwarta. Błąd Nr 3343 - ", 0), 0u) << error_;
  EXPECT_EQ(Run({u"stan", u"--baza", folder_.PathOf(u"brak.mdb"), u"--json"}), 1);
  EXPECT_EQ(output_.rfind("{\"wynik\":\"blad\",\"status\":1,\"polecenie\":\"stan\",", 0), 0u);
  EXPECT_EQ(Run({u"stan", u"--baza", u""}), 1);
}

TEST_F(Zimbratc, ListsProgramsOfAFolder) {
  EXPECT_EQ(Run({u"programy", u"--folder-struktur", platform::Utf16FromUtf8(ZIMBRAT_STRUKTURY)}),
            0);
  EXPECT_EQ(output_, "Faktury i rozliczenia v.2.4\nKadry i płace v.3.1\nMagazyn v.1.7\n");
  EXPECT_EQ(Run({u"programy", u"--folder-struktur", folder_.PathOf(u"nie ma")}), 1);
  EXPECT_EQ(Run({u"programy"}), 0);
  EXPECT_NE(output_.find("Brak plików struktur *.stb w folderze: "), std::string::npos);
}

TEST_F(Zimbratc, RunsTheAutomaticCheck) {
  for (const char16_t* folder : {u"program", u"robocze"}) {
    std::filesystem::create_directories(folder_.PathOf(folder));
  }
  std::filesystem::copy(Example(u"faktury.stb"), folder_.PathOf(u"program/faktury.stb"));
  ASSERT_EQ(Nowa(u"Firma 1", Example(u"faktury.stb"), {u"--do-listy"}), 0) << error_;
  for (const std::u16string& line : {std::u16string(u"auto|Firma 1"), u"x|" + folder_.PathOf(u"Firma 1.mdb")}) {
    EXPECT_EQ(Run({u"auto", line, u"--json"}), 0) << error_;
    EXPECT_NE(output_.find("posiadają poprawną strukturę"), std::string::npos) << output_;
    EXPECT_NE(output_.find("Firma 1.mdb\",\"programy\""), std::string::npos) << output_;
  }
  // Words of one text without quotes.
  EXPECT_EQ(Run({u"auto", u"auto|Firma", u"1"}), 0) << error_;
  EXPECT_EQ(Run({u"auto", u"auto|Inna"}), 1);
  EXPECT_EQ(error_.rfind("Sprawdzenie, naprawa bazy nie powiodły się.", 0), 0u) << error_;
  // A status that cannot be written is no success, and a former one is not this one's.
  EXPECT_EQ(Run({u"auto", u"auto|Firma 1"}), 0);
  std::filesystem::create_directories(folder_.PathOf(u"rejestr/rejestr.reg.new/x"));
  EXPECT_EQ(Run({u"auto", u"auto|Inna"}), 1);
  EXPECT_NE(error_.find("Stanu pracy nie udało się zapisać"), std::string::npos) << error_;
  for (const std::vector<std::u16string>& words :
       {std::vector<std::u16string>{u"auto"}, {u"auto", u""}, {u"auto", u"||Firma 1"}}) {
    EXPECT_EQ(Run(words), 2) << error_;
  }
}

TEST_F(Zimbratc, TellsAndTakesTheEngine) {
  const std::string own = "wbudowany (Jet 4.0)\n";
  const std::string inOption = "Nieznany silnik w opcji --silnik: ";
  const struct {
    const char16_t* variable;
    std::vector<std::u16string> words;
    int status;
    std::string text;  // the output of success, the beginning of an error
  } rows[] = {
      {u"wbudowany", {u"silnik"}, 0, own},
      {u"zainstalowan", {u"silnik", u"--silnik", u"wbudowany"}, 0, own},
      {u"", {u"--silnik=wbudowany", u"silnik"}, 0, own},
      {u"", {u"silnik", u"--silnik=zainstalowan"}, 2, inOption + "zainstalowan. Czy chodziło o zainstalowany?\n"},
      {u"", {u"lista", u"--silnik", u"WBUD"}, 2, inOption + "WBUD. Czy chodziło o wbudowany?\n"},
      {u"", {u"lista", u"--silnik="}, 2, "W opcji --silnik brakuje słowa: zainstalowany albo wbudowany.\n"},
      {u"jet", {u"lista"}, 2, "Nieznany silnik w zmiennej ZIMBRAT_SILNIK: jet. Czy chodziło o wbudowany?\n"},
      {u"jet", {u"auto", u"--silnik", u"wbudowany", u"||Firma"}, 2, "Pierwszy człon jest pusty"},
  };
  for (const auto& row : rows) {
    engineVariable_ = row.variable;
    EXPECT_EQ(Run(row.words), row.status) << error_;
    EXPECT_EQ(output_, row.status == 0 ? row.text : "");
    EXPECT_TRUE(row.status == 0 || error_.starts_with(row.text)) << error_;
  }
  engineVariable_ = u"wbudowany";
  EXPECT_EQ(Run({u"silnik", u"--json"}), 0);
  EXPECT_NE(output_.find("\"opis\":\"wbudowany (Jet 4.0)\""), std::string::npos) << output_;
}

TEST_F(Zimbratc, ShowsHelpVersionAndAnEmptyList) {
  EXPECT_EQ(Run({u"--wersja"}), 0);
  EXPECT_NE(output_.find('.'), std::string::npos);
  EXPECT_EQ(Run({u"nowa", u"--help"}), 0);
  EXPECT_NE(output_.find("--nadpisz"), std::string::npos);
  EXPECT_EQ(Run({}), 2);
  EXPECT_NE(error_.find("zimbratc nowa --folder F"), std::string::npos);
  EXPECT_EQ(Run({u"lista"}), 0);
  EXPECT_EQ(output_, "Lista baz pakietu jest pusta.\n");
}

}  // namespace
}  // namespace zimbrat::tests
