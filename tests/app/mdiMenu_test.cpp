// The form's pages: where Next and Back lead, what they write, what they check.
#include "suite/product.h"
#include "wizard_form.h"

namespace zimbrat::tests {
namespace {

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
                                       Utf8(suite::ProductVersion()));
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

TEST_F(Wizard, ShowsItsHelpOrThatThereIsNone) {
  app::Main(wizard_.state, form_, u"", [] {});
  form_.ShowHelp();
  EXPECT_EQ(wizard_.TakeMessages(),
            "Brak pliku pomocy: " + Utf8(wizard_.bench.PathOf(u"Zimbrat.chm")) + "\n");
  wizard_.bench.folder.Write(u"Zimbrat.chm", "x");
  form_.ShowHelp();
  EXPECT_EQ(wizard_.shell.opened.size(), 1u);
}

TEST_F(Wizard, TellsWhichEngineItWorksWith) {
  const std::string product = Utf8(suite::ProductTitle()) + "\r\nWersja: " + Utf8(suite::ProductVersion()) +
                              "\r\nSilnik baz danych: ";
  const auto makeEngine = wizard_.state.on.makeEngine;
  wizard_.state.on.makeEngine = [](const suite::PasswordOf&) -> std::shared_ptr<dao::Engine> {
    throw platform::RunTimeError(429, u"Zimbrat", u"Zainstaluj go.");
  };
  form_.ShowInformation();
  EXPECT_EQ(wizard_.TakeMessages(), product + "brak. Zainstaluj go.\n");
  wizard_.state.on.makeEngine = makeEngine;
  form_.ShowInformation();
  EXPECT_EQ(wizard_.TakeMessages(), product + "wbudowany (Jet 4.0)\n");
  EXPECT_EQ(wizard_.bench.host.busyDepth, 0);
}

}  // namespace
}  // namespace zimbrat::tests
