// The form's pages: where Next and Back lead, what they write, what they check.
#include <gmock/gmock.h>

#include "app/version.h"
#include "suite/ModSysReg.h"
#include "tests/product/wizard_bench.h"

namespace zimbrat::tests {
namespace {

class Wizard : public testing::Test {
 protected:
  void Load() { wizard_.form.Form_Load(); }
  // With a program and a database that is in the suite's list.
  void LoadWithDatabase() {
    wizard_.WriteProgram("AB");
    wizard_.MakeDatabase(u"Firma", wizard_.bench.PathOf(u"AB.stb"));
    suite::RegBaseKeySave(wizard_.bench.state, u"Firma", wizard_.bench.PathOf(u"Firma.mdb"));
    Load();
    form_.cmbBazaNazwa.SetValue(u"Firma");
  }
  void FillNewDatabase(std::u16string_view name) {
    form_.txtNBazaNazwa.SetText(name);
    form_.txtNBazaFolder.SetText(wizard_.bench.folder.Path());
    for (int i = 0; i < form_.lstProgramy.Count(); ++i) form_.lstProgramy.SetChecked(i, true);
  }
  void Next(int presses = 1) {
    for (int i = 0; i < presses; ++i) form_.cmdDalej.Click();
  }
  std::string Page() const { return Utf8(form_.akt_plansza); }
  // The pages that can be seen: always the one of akt_plansza.
  std::string VisiblePages() {
    const std::pair<const platform::Panel*, const char*> pages[] = {
        {&form_.pboxStart, "Start"},         {&form_.pboxNowaBaza, "NowaBaza"},
        {&form_.pboxNazwaBazy, "NazwaBazy"}, {&form_.pboxProgBazy, "ProgBazy"},
        {&form_.pboxStruktura, "Struktura"}, {&form_.pboxOkresy, "Okresy"},
        {&form_.pboxGeneruj, "Generuj"},     {&form_.pboxKoniec, "Koniec"}};
    std::string visible;
    for (const auto& [page, name] : pages) {
      if (page->Visible()) visible += name;
    }
    return visible;
  }

  WizardBench wizard_;
  app::mdiMenu& form_ = wizard_.form;
};

constexpr const char* kForward = " Kliknij Dalej > aby przejść do następnej planszy.";

// Title line, the three buttons as they stand on a page.
struct PageView {
  const char* page;
  std::string title;
  const char* next;
  bool hasBack = true;
};

#define EXPECT_PAGE(expected)                                     \
  EXPECT_EQ(Page(), (expected).page);                             \
  EXPECT_EQ(VisiblePages(), (expected).page);                     \
  EXPECT_EQ(Utf8(form_.labTytul.Caption()), (expected).title);    \
  EXPECT_EQ(Utf8(form_.cmdDalej.Caption()), (expected).next);     \
  EXPECT_EQ(form_.cmdWstecz.Visible(), (expected).hasBack)

const PageView kStart = {"Start",
                         std::string("Ten zimbrat pomoże Ci utworzyć nową lub rozbudować istniejącą "
                                     "bazę danych. Wybierz co chcesz zrobić.") +
                             kForward,
                         "Dalej >", false};

TEST_F(Wizard, StandsOnItsFirstPage) {
  Load();
  EXPECT_PAGE(kStart);
  EXPECT_EQ(Utf8(form_.Caption()), "Zimbrat baz danych pakietu Kalmix v. " +
                                       Utf8(app::ProgramVersion()));
  EXPECT_EQ(form_.pboxKoniec.Top, 1100);
  EXPECT_EQ(form_.pboxKoniec.Left, 2100);
  EXPECT_EQ(Utf8(form_.cmbOdMiesiac.ShownText()) + " " + Utf8(form_.txtOdRok.Text()),
            "Styczeń 2003");
  EXPECT_EQ(Utf8(form_.cmbDoMiesiac.ShownText()) + " " + Utf8(form_.txtDoRok.Text()),
            "Grudzień 2003");
}

TEST_F(Wizard, GoesForwardAndBackThroughANewDatabase) {
  wizard_.WriteProgram("AB");
  Load();
  FillNewDatabase(u"Nowa.Mdb");
  const PageView forward[] = {
      {"NowaBaza",
       std::string("Utworzona zostanie nowa baza danych. Podaj nazwę bazy oraz folder w którym "
                   "zostanie utworzona.") + kForward, "Dalej >"},
      {"ProgBazy",
       std::string("Zaznacz programy pakietu, które będą korzystały z bazy danych.") + kForward,
       "Dalej >"},
      {"Okresy",
       std::string("Zdefiniuj okresy obliczeniowe (miesiące) bazy. Okresy obliczeniowe możesz dodać "
                   "później w utworzonej bazie.") + kForward, "Dalej >"},
      {"Generuj",
       "Sprawdź ustawione wcześniej właściwości nowej bazy. Kliknij Utwórz aby utworzyć bazę danych.",
       "Utwórz"}};
  for (const PageView& page : forward) {
    Next();
    EXPECT_PAGE(page);
  }
  EXPECT_EQ(Utf8(form_.txtNBazaNazwa.Text()), "Nowa");
  const PageView back[] = {
      {"Okresy",
       std::string("Zdefiniuj okresy obliczeniowe (miesiące) dla wystawianych dokumentów.") + kForward,
       "Dalej >"},
      {"ProgBazy",
       std::string("Zaznacz programy Pakietu, które będą korzystały z bazy danych.") + kForward,
       "Dalej >"},
      {"NowaBaza",
       std::string("Utworzona zostanie nowa baza danych. Podaj nazwę bazy danych oraz folder w którym "
                   "zostanie utworzona baza.") + kForward, "Dalej >"},
      kStart};
  for (const PageView& page : back) {
    form_.cmdWstecz.Click();
    EXPECT_PAGE(page);
  }
  EXPECT_TRUE(form_.lstProgramy.IsChecked(0)) << "Back keeps the inputs";
}

TEST_F(Wizard, GoesForwardAndBackThroughAnExistingDatabase) {
  wizard_.WriteProgram("CD");
  LoadWithDatabase();
  const struct {
    platform::OptionButton& option;
    std::string database, structures, run;
    const char *heading, *next;
  } tasks[] = {
      {form_.obStartDodaj, "Wybierz bazę danych, której struktura ma zostać rozbudowana.",
       "Zaznacz programy, dla których ma zostać rozbudowana struktura bazy.",
       "Sprawdź wybrane wcześniej ustawienia zimbrata. Kliknij Rozbuduj aby utworzyć bazę danych.",
       "Dodać strukturę dla programów", "Rozbuduj"},
      {form_.obStartSprawdz, "Wybierz bazę danych, która zostanie poddana weryfikacji.",
       "Sprawdź struktury zainstalowane w bazie.",
       "Kliknij Sprawdź aby skontrolować strukturę bazy danych.", "Struktury bazy", "Aktualizuj"}};
  for (const auto& task : tasks) {
    task.option.Select();
    const PageView database = {"NazwaBazy", task.database + kForward, "Dalej >"};
    const PageView structures = {"Struktura", task.structures + kForward, "Dalej >"};
    const PageView run = {"Generuj", task.run, task.next};
    Next();
    EXPECT_PAGE(database);
    Next();
    EXPECT_PAGE(structures);
    EXPECT_EQ(Utf8(form_.labProgDodaj.Caption()), task.heading);
    for (int i = 0; i < form_.lstProgDodaj.Count(); ++i) form_.lstProgDodaj.SetChecked(i, true);
    Next();
    EXPECT_PAGE(run);
    for (const PageView* page : {&structures, &database, &kStart}) {
      form_.cmdWstecz.Click();
      EXPECT_PAGE(*page);
    }
  }
  EXPECT_EQ(wizard_.TakeMessages(), "");
}

TEST_F(Wizard, GoesForwardAndBackThroughATemplate) {
  LoadWithDatabase();
  FillNewDatabase(u"Kopia");
  form_.obStartWzorzec.Select();
  const PageView choice = {
      "NazwaBazy",
      std::string("Wybierz bazę danych, która posłuży jako wzorzec do utworzenia nowej bazy.") + kForward,
      "Dalej >"};
  Next();
  EXPECT_PAGE(choice);
  Next();
  const PageView place = {"NowaBaza",
                          std::string("Podaj nazwę bazy danych oraz folder w którym zostanie "
                                      "utworzona.") + kForward, "Dalej >"};
  EXPECT_PAGE(place);
  Next();
  EXPECT_EQ(Page(), "Okresy");
  form_.cmdWstecz.Click();
  const PageView again = {"NowaBaza",
                          std::string("Podaj nazwę bazy danych oraz folder w którym zostanie "
                                      "utworzona baza.") + kForward, "Dalej >"};
  EXPECT_PAGE(again);
  form_.cmdWstecz.Click();
  EXPECT_PAGE(choice);
}

TEST_F(Wizard, StaysOnAPageWhoseInputIsWrong) {
  wizard_.WriteProgram("AB");
  Load();
  Next();
  const std::u16string missing = wizard_.bench.PathOf(u"brak takiego");
  const struct {
    std::u16string_view name, folder;
    std::string message;
  } places[] = {
      {u"", u"", "Wprowadź nazwę bazy danych i spróbuj ponownie.\n"},
      {u".mdb", u"", "Wprowadź nazwę bazy danych i spróbuj ponownie.\n"},
      {u" ", u"", "Folder:  nie istnieje. Wprowadź nazwę istniejącego folderu.\n"},
      {u"Firma", missing,
       "Folder: " + Utf8(missing) + " nie istnieje. Wprowadź nazwę istniejącego folderu.\n"}};
  for (const auto& place : places) {
    form_.txtNBazaNazwa.SetText(place.name);
    form_.txtNBazaFolder.SetText(place.folder);
    Next();
    EXPECT_EQ(Page(), "NowaBaza");
    EXPECT_EQ(wizard_.TakeMessages(), place.message);
  }
  FillNewDatabase(u"Firma");
  form_.lstProgramy.SetChecked(0, false);
  Next(2);
  EXPECT_EQ(Page(), "ProgBazy");
  EXPECT_EQ(wizard_.TakeMessages(),
            "Zaznacz programy, dla których ma zostać utworzona struktura w bazie danych.\n");
}

TEST_F(Wizard, StaysOnTheDatabasePageWithoutADatabase) {
  Load();
  form_.obStartSprawdz.Select();
  Next(2);
  EXPECT_EQ(Page(), "NazwaBazy");
  EXPECT_EQ(wizard_.TakeMessages(), "Wskaż bazę danych i spróbuj ponownie.\n");
  EXPECT_EQ(Utf8(form_.cmbBazaNazwa.ShownText()), "(brak)") << "no database is recorded";
}

TEST_F(Wizard, RunsANewDatabase) {
  wizard_.WriteProgram("AB");
  wizard_.WriteProgram("CD");
  Load();
  FillNewDatabase(u"Firma ABC");
  Next(4);
  const std::string folder = Utf8(wizard_.bench.folder.Path());
  EXPECT_EQ(Utf8(form_.txtOpisGen.Text()),
            "Tryb zimbrata: Utwórz nową, pustą bazę danych\r\nNazwa bazy: Firma ABC\r\nFolder: " + folder +
                "\r\nDla programu(ów): Próba AB v.1.3;Próba CD v.1.3;\r\n"
                "Utwórz okresy obliczeniowe: 1/2003 - 12/2003\r\n");
  Next();
  EXPECT_EQ(Page(), "Koniec") << Utf8(form_.txtOpisGen.Text());
  EXPECT_EQ(Utf8(form_.txtOpisKon.Text()),
            "Baza danych: Firma ABC\r\nFolder: " + folder + "\r\nzostała poprawnie utworzona.\r\n");
  EXPECT_EQ(Utf8(form_.labTytul.Caption()),
            "Zimbrat bazy zakończył tworzenie bazy danych. Kliknij Zakończ aby zamknąć okno zimbrata.");
  EXPECT_EQ(Utf8(form_.cmdAnuluj.Caption()), "Zakończ");
  EXPECT_FALSE(form_.cmdDalej.Visible() || form_.cmdWstecz.Visible());
  EXPECT_TRUE(form_.cbListabaz.Visible());
  EXPECT_EQ(form_.progBar.Fraction(), 1.0);
  form_.cbListabaz.SetValue(1);
  form_.cmdAnuluj.Click();
  EXPECT_TRUE(form_.IsUnloaded());
  EXPECT_EQ(wizard_.TakeMessages(), "");
  platform::OrvCombo list;
  suite::RegBaseListLoad(wizard_.state, list);
  EXPECT_EQ(list.FindValue(wizard_.bench.PathOf(u"Firma ABC.mdb")), 1);
}

TEST_F(Wizard, OffersTheFolderOfTheLastDatabaseWhereTheSuiteNamesNone) {
  wizard_.WriteProgram("AB");
  Load();
  FillNewDatabase(u"Firma");
  Next(5);
  ASSERT_EQ(Page(), "Koniec");
  app::mdiMenu later(wizard_.state, wizard_.shell);
  later.Form_Load();
  EXPECT_EQ(Utf8(later.txtNBazaFolder.Text()), Utf8(wizard_.bench.folder.Path()));
  EXPECT_EQ(later.lstBazy.FindValue(wizard_.bench.PathOf(u"Firma.mdb")), 0);
  suite::RegStringSave(wizard_.bench.registry, suite::kSuiteKey, u"Folder baza", u"/bazy");
  app::mdiMenu latest(wizard_.state, wizard_.shell);
  latest.Form_Load();
  EXPECT_EQ(Utf8(latest.txtNBazaFolder.Text()), "/bazy");
}

TEST_F(Wizard, AsksBeforeADatabaseIsOverwritten) {
  LoadWithDatabase();
  const std::string former = wizard_.bench.folder.Read(u"Firma.mdb");
  FillNewDatabase(u"Firma");
  wizard_.bench.host.answer = platform::kAnswerNo;
  Next(5);
  EXPECT_EQ(Page(), "Generuj");
  EXPECT_FALSE(form_.cmdDalej.Enabled());
  EXPECT_EQ(wizard_.bench.folder.Read(u"Firma.mdb"), former);
  EXPECT_NE(wizard_.TakeMessages().find("istnieje. Wskazany plik może zawierać dane."),
            std::string::npos);
  form_.cmdWstecz.Click();
  EXPECT_TRUE(form_.cmdDalej.Enabled());
  EXPECT_EQ(Utf8(form_.cmdDalej.Caption()), "Dalej >");
  wizard_.bench.host.answer = platform::kAnswerYes;
  Next(2);
  EXPECT_EQ(Page(), "Koniec");
  EXPECT_NE(wizard_.bench.folder.Read(u"Firma.mdb"), former);
}

TEST_F(Wizard, ShowsWhyARunFailed) {
  wizard_.WriteProgram("AB");
  Load();
  const std::tuple<const char16_t*, const char16_t*, const char*> rows[] = {
      {u"a:b", u"2003", "Nazwa bazy danych nie może zawierać znaku „:”. Wpisz inną nazwę.\r\n"},
      {u"CON", u"2003", "Nazwa „CON” jest zastrzeżona dla urządzenia. Wpisz inną nazwę.\r\n"},
      {u"Firma", u"", "Rok okresu obliczeniowego „” nie jest liczbą. Popraw okresy.\r\n"},
      {u"Firma", u"9999", "Zakres okresów obliczeniowych obejmuje ponad 100 lat. Popraw "
                          "okresy.\r\n"}};
  FillNewDatabase(u"");
  for (const auto& [name, lastYear, text] : rows) {
    form_.txtNBazaNazwa.SetText(name);
    form_.txtDoRok.SetText(lastYear);
    Next(5);
    EXPECT_EQ(Page(), "Generuj");
    EXPECT_EQ(Utf8(form_.txtOpisGen.Text()), text);
    EXPECT_FALSE(form_.cmdDalej.Enabled());
    EXPECT_EQ(form_.progBar.Fraction(), 0.0);
    for (int i = 0; i < 4; ++i) form_.cmdWstecz.Click();
    EXPECT_PAGE(kStart);
  }
  EXPECT_EQ(wizard_.bench.files.List(wizard_.bench.folder.Path(), u"*.mdb").size(), 0u);
}

TEST_F(Wizard, AddsAndChecksStructures) {
  wizard_.WriteProgram("CD");
  LoadWithDatabase();
  form_.obStartDodaj.Select();
  Next(2);
  Next();  // the program that is there is up to date, the other one not checked
  EXPECT_EQ(wizard_.TakeMessages().rfind("Zaznacz programy i spróbuj ponownie.", 0), 0u);
  form_.lstProgDodaj.SetChecked(1, true);
  Next();
  const std::string place =
      "Nazwa bazy: Firma\r\nFolder: " + Utf8(wizard_.bench.folder.Path()) + "\r\n";
  EXPECT_EQ(Utf8(form_.txtOpisGen.Text()), "Tryb zimbrata: Rozbuduj strukturę bazy\r\n" + place +
                                               "Dodaj strukturę dla programu(ów): Próba CD;\r\n");
  Next();
  EXPECT_NE(Utf8(form_.txtOpisKon.Text()).find("rozbudowana dla programu(ów): Próba CD;"),
            std::string::npos)
      << Utf8(form_.txtOpisGen.Text());
  EXPECT_FALSE(form_.cbListabaz.Visible());

  app::mdiMenu check(wizard_.state, wizard_.shell);
  check.Form_Load();
  check.cmbBazaNazwa.SetValue(u"Firma");
  check.obStartSprawdz.Select();
  for (int i = 0; i < 3; ++i) check.cmdDalej.Click();
  EXPECT_EQ(Utf8(check.txtOpisGen.Text()),
            "Tryb zimbrata: Aktualizować, naprawić bazę danych\r\n" + place);
  check.cmdDalej.Click();
  EXPECT_NE(Utf8(check.txtOpisKon.Text()).find("posiadają poprawną strukturę"), std::string::npos);
}

TEST_F(Wizard, SaysThatAListOfStructuresIsNotWhole) {
  wizard_.WriteProgram("CD");
  wizard_.bench.WriteStructure(u"ABZ.stb",
                               "[HEADER]\nProgram=Zły\nSymbol=O'X\nVerMajor=1\nVerMinor=0\n");
  LoadWithDatabase();
  form_.obStartSprawdz.Select();
  Next(2);
  EXPECT_EQ(Page(), "Struktura");
  EXPECT_EQ(Utf8(form_.labUwaga.Caption())
                .rfind("Lista nie jest pełna. Plik struktury: " +
                       Utf8(wizard_.bench.PathOf(u"ABZ.stb")) + ". ", 0),
            0u)
      << Utf8(form_.labUwaga.Caption());
}

TEST_F(Wizard, TakesADatabaseFromTheListOrFromAnywhere) {
  LoadWithDatabase();
  form_.obInnaLok.Select();
  EXPECT_FALSE(form_.cmbBazaNazwa.Enabled());
  EXPECT_EQ(Utf8(form_.cmbBazaNazwa.ShownText()), "(brak)");
  EXPECT_TRUE(form_.txtBazaNazwa.Enabled());
  wizard_.shell.file = wizard_.bench.PathOf(u"Firma.mdb");
  form_.txtBazaNazwa.Click();
  EXPECT_EQ(Utf8(form_.txtBazaNazwa.Text()), Utf8(wizard_.shell.file));
  for (const char16_t* nothing : {u"", u"*.mdb"}) {
    wizard_.shell.file = nothing;
    form_.txtBazaNazwa.Click();
    EXPECT_EQ(Utf8(form_.txtBazaNazwa.Text()), Utf8(wizard_.bench.PathOf(u"Firma.mdb")));
  }
  EXPECT_EQ(Utf8(wizard_.shell.dialog.filter), "Baza danych MS Access (*.mdb)|Pakiet.mdb");
  EXPECT_EQ(Utf8(wizard_.shell.dialog.folder), Utf8(wizard_.bench.folder.Path()));
  EXPECT_EQ(wizard_.shell.dialog.flags, 40964u);

  // As a path copied out of the file manager.
  form_.txtBazaNazwa.SetText(u" \"" + wizard_.bench.PathOf(u"Firma.mdb") + u"\"");
  form_.obStartDodaj.Select();
  Next(2);
  EXPECT_EQ(Page(), "Struktura") << wizard_.TakeMessages();
  form_.obListaBaz.Select();
  EXPECT_TRUE(form_.cmbBazaNazwa.Enabled());
  EXPECT_FALSE(form_.txtBazaNazwa.Enabled());
  EXPECT_TRUE(form_.txtBazaNazwa.Text().empty());
}

TEST_F(Wizard, TakesAFolderFromTheBrowserUnlessItIsCancelled) {
  wizard_.bench.environment.currentFolder = u"/tu";
  Load();
  form_.txtNBazaFolder.SetText(u"/dawny");
  form_.txtNBazaFolder.Click();
  EXPECT_EQ(Utf8(form_.txtNBazaFolder.Text()), "/dawny");
  wizard_.bench.folder.Write(u"Stara.mdb", "x");
  wizard_.shell.folder = wizard_.bench.folder.Path();
  form_.txtNBazaFolder.Click();
  EXPECT_EQ(Utf8(form_.txtNBazaFolder.Text()), Utf8(wizard_.bench.folder.Path()));
  ASSERT_EQ(form_.lstBazy.Count(), 1);
  form_.lstBazy.ClickItem(0);
  EXPECT_EQ(Utf8(form_.txtNBazaNazwa.Text()), "Stara");
  EXPECT_EQ(Utf8(wizard_.bench.environment.currentFolder), "/tu");
}

TEST_F(Wizard, LooksIntoATypedFolderOnceItIsLeft) {
  wizard_.bench.folder.Write(u"bazy/Stara.mdb", "x");
  Load();
  form_.txtNBazaFolder.SetText(wizard_.bench.PathOf(u"bazy"));
  EXPECT_EQ(form_.lstBazy.Count(), 0);
  form_.txtNBazaFolder.Leave();
  EXPECT_EQ(form_.lstBazy.Count(), 1);
  form_.txtNBazaFolder.SetText(u"");
  form_.txtNBazaFolder.Leave();
  EXPECT_EQ(form_.lstBazy.Count(), 0);
}

TEST_F(Wizard, AsksBeforeItClosesInTheMiddle) {
  LoadWithDatabase();
  Next();
  wizard_.bench.host.answer = platform::kAnswerNo;
  form_.cmdAnuluj.Click();
  EXPECT_FALSE(form_.IsUnloaded());
  EXPECT_EQ(wizard_.TakeMessages(), "Chcesz zakończyć pracę zimbrata?\n");
  form_.cmdWstecz.Click();
  form_.Unload();
  EXPECT_TRUE(form_.IsUnloaded());
  EXPECT_EQ(wizard_.TakeMessages(), "");
}

TEST_F(Wizard, TakesADroppedDatabaseOnItsPageAlone) {
  LoadWithDatabase();
  EXPECT_FALSE(form_.TakesDrop(u"/bazy/Inna.mdb"));
  form_.obStartDodaj.Select();
  Next();
  EXPECT_FALSE(form_.TakesDrop(u"/bazy/Inna.txt"));
  form_.Drop(u"/bazy/Inna.MDB");
  EXPECT_TRUE(form_.obInnaLok.Value());
  EXPECT_EQ(Utf8(form_.txtBazaNazwa.Text()), "/bazy/Inna.MDB");
}

// A run in which something is tried each time a finished copy is verified.
TEST_F(Wizard, DoesNothingButShowLifeWhileItRuns) {
  LoadWithDatabase();
  FillNewDatabase(u"Druga");
  std::vector<std::string> shown;
  wizard_.bench.host.verify = [&](std::u16string_view, std::u16string_view) {
    shown.push_back(Utf8(form_.labPostep.Caption()));
    wizard_.bench.clock.milliseconds += 61'000;
    form_.Pulse();
    shown.push_back(Utf8(form_.labPostep.Caption()));
    form_.cmdDalej.Click();
    form_.cmdWstecz.Click();
    form_.cmdAnuluj.Click();
    form_.Unload();
    shown.push_back(Utf8(form_.labPostep.Caption()));
    EXPECT_FALSE(form_.TakesDrop(u"/bazy/Inna.mdb"));
  };
  Next(5);
  EXPECT_EQ(Page(), "Koniec");
  EXPECT_FALSE(form_.IsUnloaded());
  EXPECT_THAT(shown, testing::ElementsAre("Trwa tworzenie bazy danych: 0:00",
                                          "Trwa tworzenie bazy danych: 1:01",
                                          "Zaczekaj na koniec pracy, potem zamkniesz okno: 1:01"));
  EXPECT_EQ(Utf8(form_.labPostep.Caption()), "");
  EXPECT_EQ(wizard_.bench.host.busyDepth, 0);
  EXPECT_EQ(wizard_.TakeMessages(), "");
}

TEST_F(Wizard, ShowsItsHelpOrThatThereIsNone) {
  app::Main(wizard_.state, form_, u"", [] {});
  form_.ShowHelp();
  EXPECT_EQ(wizard_.TakeMessages(),
            "Brak pliku pomocy: " + Utf8(wizard_.bench.PathOf(u"Zimbrat.chm")) + "\n");
  wizard_.bench.folder.Write(u"Zimbrat.chm", "x");
  form_.ShowHelp();
  EXPECT_EQ(wizard_.shell.opened.size(), 1u);
}

}  // namespace
}  // namespace zimbrat::tests
