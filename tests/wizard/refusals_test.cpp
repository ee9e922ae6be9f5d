// What the real window says to wrong inputs, before it overwrites and when it is closed, and how it
// goes on from a run that failed.
#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include "tests/wizard/driver.h"
#include "tests/wizard/person.h"

namespace zimbrat::tests {
namespace {

TEST_F(Driver, TellsWhatIsWrongWithNameAndFolder) {
  stage_.Open();
  stage_.Next();
  TypeNameAndFolder(u"", stage_.bench.folder.Path());
  EXPECT_EQ(Answered(IDOK, [&] { stage_.Next(); }), ": Wprowadź nazwę bazy danych i spróbuj ponownie.");
  const std::u16string longPath = stage_.bench.folder.Path() + u"\\" + std::u16string(260, u'x');
  for (const std::u16string& folder : {stage_.bench.PathOf(u"brak"), longPath}) {
    TypeNameAndFolder(u"Firma", folder);
    EXPECT_EQ(Answered(IDOK, [&] { stage_.Next(); }),
              ": Folder: " + Utf8(folder) + " nie istnieje. Wprowadź nazwę istniejącego folderu.");
  }
  EXPECT_EQ(stage_.Page(), "NowaBaza");
}

TEST_F(Driver, TellsThatAPathIsTooLong) {
  stage_.Open();
  const std::u16string path = stage_.bench.folder.Path() + u"\\" + std::u16string(270, u'x') + u".mdb";
  GoToDatabase("Rozbudować strukturę istniejącej bazy", path);
  const std::string told = Answered(IDOK, [&] { stage_.Next(); });
  EXPECT_EQ(told.rfind(": Baza nie może zostać otwarta. Błąd Nr 3005 - „", 0), 0u) << told;
  EXPECT_TRUE(told.ends_with("…” nie jest prawidłową nazwą bazy danych.")) << told;
  EXPECT_EQ(stage_.Page(), "NazwaBazy");
}

TEST_F(Driver, AsksBeforeItOverwritesAndShowsTheWayBackFromAFailure) {
  stage_.MakeDatabase(u"Firma", {"AB"});
  const std::string former = stage_.bench.folder.Read(u"Firma.mdb");
  GoToCreation();
  {
    bool isNoDefault = false;
    const Person person({Then(
        [&](HWND box) {
          const LRESULT code = ::SendMessageW(::GetDlgItem(box, IDNO), WM_GETDLGCODE, 0, 0);
          isNoDefault = (code & DLGC_DEFPUSHBUTTON) != 0;
        },
        Press(IDNO))});
    stage_.Click("Utwórz");
    EXPECT_TRUE(isNoDefault);
    EXPECT_NE(person.Seen().front().find("istnieje. Wskazany plik może zawierać dane. Usunąć plik i "
                                         "utworzyć nowy plik bazy?"), std::string::npos);
  }
  EXPECT_EQ(stage_.bench.folder.Read(u"Firma.mdb"), former);
  EXPECT_EQ(stage_.Page(), "Generuj");
  EXPECT_FALSE(::IsWindowEnabled(stage_.FindCaption("Utwórz")));
  stage_.Click("< Wstecz");
  EXPECT_TRUE(::IsWindowEnabled(stage_.FindCaption("Dalej >")));
  stage_.Next();
  Answered(IDYES, [&] { stage_.Click("Utwórz"); });
  EXPECT_EQ(stage_.Page(), "Koniec") << stage_.Texts();
  EXPECT_NE(stage_.bench.folder.Read(u"Firma.mdb"), former);
}

TEST_F(Driver, TellsWhereAStructureFileBreaksOff) {
  GoToCreation();
  const std::string whole = stage_.bench.folder.Read(u"CD.stb");
  stage_.bench.folder.Write(u"CD.stb", whole.substr(0, whole.find("[CDDok]")));
  stage_.Click("Utwórz");
  EXPECT_EQ(stage_.Page(), "Generuj");
  const std::string told = TextOf(stage_.TheOne(WC_EDITW));
  EXPECT_EQ(told.rfind("Wystąpił bląd podczas generowania bazy danych. Baza nie została utworzona.\r\n"
                       "Szczegóły:\r\nFunkcja: UtwórzTablice\r\nTablica: CDDok\r\n", 0), 0u) << told;
  stage_.bench.folder.Write(u"CD.stb", whole);
  stage_.Click("< Wstecz");
  stage_.Next();
  // What was written before the file broke off has stayed.
  EXPECT_NE(Answered(IDYES, [&] { stage_.Click("Utwórz"); }).find("Firma.mdb istnieje."),
            std::string::npos);
  EXPECT_EQ(stage_.Page(), "Koniec") << stage_.Texts();
}

// Each run fails after the page checks let it pass; the box to read says why.
TEST_F(Driver, TellsWhyARunFailedAndStartsAgainWithAnotherName) {
  const std::u16string folder = stage_.bench.folder.Path();
  const std::u16string deep(100, u'ł');
  stage_.bench.folder.Write(deep + u"/Inna.mdb", "x");
  const struct {
    std::u16string name, folder;
    const char* why;
  } rows[] = {{u"CON", folder, "Nazwa „CON” jest zastrzeżona dla urządzenia. Wpisz inną nazwę."},
              {u"a:b", folder, "Nazwa bazy danych nie może zawierać znaku „:”. Wpisz inną nazwę."},
              {std::u16string(130, u'x'), stage_.bench.PathOf(deep),
               "Ścieżka bazy danych jest zbyt długa: ma "}};
  stage_.Open();
  stage_.Next();
  TypeNameAndFolder(u"Firma", folder);
  stage_.Next();
  CheckAll();
  stage_.Next(2);
  for (const auto& [name, place, why] : rows) {
    for (int i = 0; i < 3; ++i) stage_.Click("< Wstecz");
    EXPECT_EQ(stage_.Page(), "NowaBaza");
    EXPECT_NE(stage_.Texts().find("Podaj nazwę bazy danych oraz folder w którym zostanie utworzona "
                                  "baza."), std::string::npos);
    TypeNameAndFolder(name, place);
    stage_.Next(3);
    stage_.Click("Utwórz");
    EXPECT_EQ(stage_.Page(), "Generuj");
    EXPECT_NE(TextOf(stage_.TheOne(WC_EDITW)).find(why), std::string::npos)
        << TextOf(stage_.TheOne(WC_EDITW));
    EXPECT_FALSE(::IsWindowEnabled(stage_.FindCaption("Utwórz")));
    EXPECT_EQ(::SendMessageW(stage_.TheOne(PROGRESS_CLASSW), PBM_GETPOS, 0, 0), 0);
  }
  EXPECT_EQ(stage_.bench.folder.Names(),
            (std::vector<std::u16string>{u"AB.stb", u"CD.stb", deep}));
  stage_.Click("< Wstecz");
  EXPECT_NE(stage_.Texts().find("dla wystawianych dokumentów."), std::string::npos);
  stage_.Click("< Wstecz");
  EXPECT_NE(stage_.Texts().find("Zaznacz programy Pakietu,"), std::string::npos);
  EXPECT_EQ(CheckItems(stage_.TheOne(WC_LISTVIEWW)), "[x] Próba AB v.1.3;[x] Próba CD v.1.3;");
  stage_.Click("< Wstecz");
  TypeNameAndFolder(u"Firma", folder);
  stage_.Next(3);
  stage_.Click("Utwórz");
  EXPECT_EQ(stage_.Page(), "Koniec") << stage_.Texts();
}

// A structure file that names a table and does not describe it leaves the database as it was.
TEST_F(Driver, LeavesADatabaseAsItWasWhenAStructureFails) {
  stage_.MakeDatabase(u"Firma", {"AB"});
  const std::string former = stage_.bench.folder.Read(u"Firma.mdb");
  std::string broken = SmallProgram("CD");
  broken.replace(broken.find("[CDPoz]"), 7, "[CDInne]");
  stage_.bench.WriteStructure(u"CD.stb", broken);
  stage_.Open();
  GoToDatabase("Rozbudować strukturę istniejącej bazy", stage_.bench.PathOf(u"Firma.mdb"));
  stage_.Next();
  CheckAll();
  stage_.Next();
  stage_.Click("Rozbuduj");
  EXPECT_EQ(stage_.Page(), "Generuj");
  EXPECT_NE(TextOf(stage_.TheOne(WC_EDITW)).find("CDPoz"), std::string::npos)
      << TextOf(stage_.TheOne(WC_EDITW));
  EXPECT_TRUE(stage_.bench.folder.Read(u"Firma.mdb") == former);
  EXPECT_FALSE(::IsWindowEnabled(stage_.FindCaption("Rozbuduj")));
  stage_.Click("< Wstecz");
  EXPECT_EQ(stage_.Page(), "Struktura");
  EXPECT_TRUE(::IsWindowEnabled(stage_.FindCaption("Dalej >")));
}

TEST_F(Driver, ClosesWithAQuestionInTheMiddleAndWithoutAtTheEnds) {
  const std::function<void(Stage&)> ways[] = {
      [](Stage& stage) { stage.Click(Utf8(stage.form->cmdAnuluj.Caption())); },
      [](Stage& stage) {
        ::PostMessageW(stage.Top(), WM_SYSCOMMAND, SC_CLOSE, 0);
        stage.Pump();
      },
      [](Stage& stage) { stage.Key(VK_ESCAPE); }};
  for (const auto& close : ways) {
    Stage stage({"AB"});
    stage.Open();
    stage.Next();
    const std::vector<HWND> fields = stage.Seen(WC_EDITW);
    stage.Type(fields[0], u"Firma");
    stage.Type(fields[1], stage.bench.folder.Path());
    for (int page = 0; page < 4; ++page) {
      EXPECT_EQ(Answered(IDNO, [&] { close(stage); }),
                "Zimbrat bazy: Chcesz zakończyć pracę zimbrata?") << stage.Page();
      EXPECT_FALSE(stage.form->IsUnloaded());
      if (stage.Page() == "ProgBazy") {
        ::SetFocus(stage.TheOne(WC_LISTVIEWW));
        stage.Key(VK_SPACE);
      }
      if (page < 3) stage.Next();
    }
    stage.Next();
    EXPECT_EQ(stage.Page(), "Koniec") << stage.Texts();
    close(stage);
    EXPECT_TRUE(stage.form->IsUnloaded());
    Stage inTheMiddle({"AB"});
    inTheMiddle.Open();
    inTheMiddle.Next();
    Answered(IDYES, [&] { close(inTheMiddle); });
    EXPECT_TRUE(inTheMiddle.form->IsUnloaded());
    Stage atStart({"AB"});
    atStart.Open();
    close(atStart);
    EXPECT_TRUE(atStart.form->IsUnloaded());
  }
}

}  // namespace
}  // namespace zimbrat::tests
