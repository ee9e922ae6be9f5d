// The form's runs: summaries, results, failures and the way back from them.
#include <gmock/gmock.h>

#include "wizard_form.h"

namespace zimbrat::tests {
namespace {

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
    EXPECT_EQ(Page(), "Start");
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

}  // namespace
}  // namespace zimbrat::tests
