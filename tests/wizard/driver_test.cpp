// The real window, walked as a person would: what it shows on each page of each task, what it says to
// wrong inputs, what stands on the disk and in the registry afterwards.
#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include "app/database_list.h"
#include "suite/ModSysReg.h"
#include "tests/wizard/person.h"
#include "tests/wizard/stage.h"

namespace zimbrat::tests {
namespace {

// Texts of a list box or a combo box, separated by semicolons.
std::string ItemsOf(HWND list, UINT count, UINT length, UINT get) {
  std::string items;
  for (LRESULT i = 0, n = ::SendMessageW(list, count, 0, 0); i < n; ++i) {
    const auto index = static_cast<WPARAM>(i);
    std::wstring text(static_cast<std::size_t>(::SendMessageW(list, length, index, 0)) + 1, L'\0');
    ::SendMessageW(list, get, index, reinterpret_cast<LPARAM>(text.data()));
    text.pop_back();
    items += platform::Utf8FromUtf16({reinterpret_cast<const char16_t*>(text.data()), text.size()}) + ";";
  }
  return items;
}
std::string ComboItems(HWND combo) {
  return ItemsOf(combo, CB_GETCOUNT, CB_GETLBTEXTLEN, CB_GETLBTEXT);
}
std::string ListItems(HWND list) { return ItemsOf(list, LB_GETCOUNT, LB_GETTEXTLEN, LB_GETTEXT); }

// "[x] text" for each row.
std::string CheckItems(HWND list) {
  std::string items;
  for (LRESULT i = 0, n = ::SendMessageW(list, LVM_GETITEMCOUNT, 0, 0); i < n; ++i) {
    wchar_t text[300] = {};
    LVITEMW item = {};
    item.iItem = static_cast<int>(i);
    item.pszText = text;
    item.cchTextMax = 300;
    ::SendMessageW(list, LVM_GETITEMTEXTW, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&item));
    const LRESULT state =
        ::SendMessageW(list, LVM_GETITEMSTATE, static_cast<WPARAM>(i), LVIS_STATEIMAGEMASK);
    items += state == INDEXTOSTATEIMAGEMASK(2) ? "[x] " : "[ ] ";
    items += platform::Utf8FromUtf16(reinterpret_cast<const char16_t*>(text)) + ";";
  }
  return items;
}

constexpr const char* kForward = " Kliknij Dalej > aby przejść do następnej planszy.\n";

class Driver : public testing::Test {
 protected:
  std::string Folder() const { return Utf8(stage_.bench.folder.Path()); }
  void TypeNameAndFolder(std::u16string_view name, const std::u16string& folder) {
    const std::vector<HWND> fields = stage_.Seen(WC_EDITW);
    ASSERT_EQ(fields.size(), 2u);
    stage_.Type(fields[0], name);
    stage_.Type(fields[1], folder);
  }
  void CheckAll() {
    const HWND list = stage_.TheOne(WC_LISTVIEWW);
    ::SetFocus(list);
    for (LRESULT i = 0; i < ::SendMessageW(list, LVM_GETITEMCOUNT, 0, 0); ++i) {
      if (!stage_.form->lstProgDodaj.IsChecked(static_cast<int>(i)) || stage_.Page() == "ProgBazy") {
        stage_.Key(VK_SPACE);
      }
      stage_.Key(VK_DOWN);
    }
  }
  // Answers one message box while `act` runs; what stood in it.
  std::string Answered(int button, const std::function<void()>& act) {
    const Person person({Press(button)});
    act();
    return person.Seen().empty() ? "" : person.Seen().front();
  }
  // The task's option chosen, and the database's page with that path in the field.
  void GoToDatabase(std::string_view task, const std::u16string& path) {
    stage_.Click(task);
    stage_.Next();
    stage_.Click("Inna lokalizacja");
    stage_.Type(stage_.TheOne(WC_EDITW), path);
  }

  Stage stage_{{"AB", "CD"}};
};

TEST_F(Driver, MakesANewDatabase) {
  stage_.Open();
  EXPECT_EQ(stage_.Texts(),
            std::string("Ten zimbrat pomoże Ci utworzyć nową lub rozbudować istniejącą bazę danych. "
                        "Wybierz co chcesz zrobić.") + kForward +
                "Utworzyć &nową, pustą bazę danych\n&Rozbudować strukturę istniejącej bazy\n"
                "Utworzyć nową bazę danych, używając jako &wzorca istniejącą bazę\n"
                "Aktualizować wersję,  naprawić strukturę bazy\nDalej >\nAnuluj\n");
  stage_.Next();
  const std::u16string folder = stage_.bench.PathOf(u"Bazy łódź 1");
  stage_.bench.folder.Write(u"Bazy łódź 1/Stara ąę.mdb", "x");
  TypeNameAndFolder(u"Żółta Firma.MDB", folder);
  const std::string page =
      "Nazwa nowej bazy danych (np. Firma ABC)\nŻółta Firma.MDB\nFolder nowej bazy danych\n" +
      Utf8(folder) + "\nWybierz folder\nBazy danych, które są już w\u00A0tym folderze\n"
                     "< &Wstecz\nDalej >\nAnuluj\n";
  EXPECT_EQ(stage_.Texts(), std::string("Utworzona zostanie nowa baza danych. Podaj nazwę bazy oraz "
                                        "folder w którym zostanie utworzona.") + kForward + page);
  stage_.Next();
  EXPECT_EQ(CheckItems(stage_.TheOne(WC_LISTVIEWW)), "[ ] Próba AB v.1.3;[ ] Próba CD v.1.3;");
  EXPECT_EQ(Answered(IDOK, [&] { stage_.Next(); }),
            ": Zaznacz programy, dla których ma zostać utworzona struktura w bazie danych.");
  CheckAll();
  EXPECT_EQ(CheckItems(stage_.TheOne(WC_LISTVIEWW)), "[x] Próba AB v.1.3;[x] Próba CD v.1.3;");
  stage_.Next();
  EXPECT_NE(stage_.Texts().find("Okresy obliczeniowe\nOd\nMiesiąc\nStyczeń\nRok\n2003\nDo\nMiesiąc\n"
                                "Grudzień\nRok\n2003\n"),
            std::string::npos)
      << stage_.Texts();
  stage_.Next();
  EXPECT_EQ(TextOf(stage_.TheOne(WC_EDITW)),
            "Tryb zimbrata: Utwórz nową, pustą bazę danych\r\nNazwa bazy: Żółta Firma\r\nFolder: " +
                Utf8(folder) + "\r\nDla programu(ów): Próba AB v.1.3;Próba CD v.1.3;\r\n"
                               "Utwórz okresy obliczeniowe: 1/2003 - 12/2003\r\n");
  stage_.Click("Utwórz");
  EXPECT_EQ(stage_.Texts(),
            "Zimbrat bazy zakończył tworzenie bazy danych. Kliknij Zakończ aby zamknąć okno "
            "zimbrata.\nWynik pracy zimbrata\nBaza danych: Żółta Firma\r\nFolder: " + Utf8(folder) +
                "\r\nzostała poprawnie utworzona.\r\n\nDodaj bazę do podręcznej listy baz pakietu\n"
                "Zakończ\n");
  EXPECT_NO_THROW(engines::VerifyDatabase(
      stage_.bench.files, stage_.bench.PathOf(u"Bazy łódź 1/Żółta Firma.mdb"), u"", {}));
}

// The rest of the house: the real registry, under a key of the test.
class DriverWithRegistry : public Driver {
 protected:
  static constexpr const wchar_t* kKey = L"Software\\Zimbrat driver test";

  void SetUp() override {
    HKEY key = nullptr;
    ASSERT_EQ(::RegCreateKeyExW(HKEY_CURRENT_USER, kKey, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                                &key, nullptr), 0);
    key_ = platform::KeyHandle(key);
    ASSERT_EQ(::RegOverridePredefKey(HKEY_CURRENT_USER, key), 0);
  }
  void TearDown() override {
    ::RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
    ::RegDeleteTreeW(HKEY_CURRENT_USER, kKey);
  }

  platform::KeyHandle key_;
};

TEST_F(DriverWithRegistry, FinishRecordsTheDatabaseAndTheNextWindowOffersIt) {
  Stage first({"AB"}, Stage::Registry::Real);
  first.Open();
  first.Next();
  const std::vector<HWND> fields = first.Seen(WC_EDITW);
  first.Type(fields[0], u"Firma ąę");
  first.Type(fields[1], first.bench.folder.Path());
  first.Next();
  ::SetFocus(first.TheOne(WC_LISTVIEWW));
  first.Key(VK_SPACE);
  first.Next(2);
  first.Click("Utwórz");
  first.Click("Dodaj bazę do podręcznej listy baz pakietu");
  first.Click("Zakończ");
  EXPECT_TRUE(first.form->IsUnloaded());
  const std::u16string key = std::u16string(suite::kDatabaseListKey) + u"\\Firma ąę";
  EXPECT_EQ(Utf8(suite::RegStringRead(first.state.on.registry, key, u"Folder", u"")),
            Utf8(first.bench.PathOf(u"Firma ąę.mdb")));
  EXPECT_EQ(Utf8(suite::RegStringRead(first.state.on.registry, key, u"Kopia co dni", u"")), "3");

  Stage second({"AB"}, Stage::Registry::Real);
  second.Open();
  second.Click("Rozbudować strukturę istniejącej bazy");
  second.Next();
  const HWND list = second.TheOne(WC_COMBOBOXW);
  EXPECT_EQ(ComboItems(list), "(brak);Firma ąę;");
  ::SetFocus(list);
  second.Key(VK_DOWN);
  EXPECT_EQ(TextOf(list), "Firma ąę");
  second.Click("Inna lokalizacja");
  EXPECT_EQ(TextOf(list), "(brak)");
  EXPECT_FALSE(::IsWindowEnabled(list));
  EXPECT_TRUE(::IsWindowEnabled(second.TheOne(WC_EDITW)));
  second.Click("Podręczna lista baz");
  EXPECT_TRUE(::IsWindowEnabled(list));
  EXPECT_FALSE(::IsWindowEnabled(second.TheOne(WC_EDITW)));
  EXPECT_FALSE(::IsWindowEnabled(second.FindCaption("Wskaż plik bazy")));
  ::SetFocus(list);
  second.Key(VK_DOWN);
  second.Next();
  EXPECT_EQ(second.Page(), "Struktura");
}

TEST_F(Driver, AddsStructures) {
  stage_.MakeDatabase(u"Firma", {"AB"});
  stage_.Open();
  GoToDatabase("Rozbudować strukturę istniejącej bazy", stage_.bench.PathOf(u"Firma.mdb"));
  EXPECT_NE(stage_.Texts().find("Wybierz bazę danych, której struktura ma zostać rozbudowana."),
            std::string::npos);
  stage_.Next();
  EXPECT_EQ(stage_.Texts(),
            std::string("Zaznacz programy, dla których ma zostać rozbudowana struktura bazy.") +
                kForward + "Dodać strukturę dla programów\n< &Wstecz\nDalej >\nAnuluj\n");
  EXPECT_EQ(CheckItems(stage_.TheOne(WC_LISTVIEWW)),
            "[x] Próba AB v.1.3 (struktura obecna);[ ] Próba CD (brak);");
  EXPECT_EQ(Answered(IDOK, [&] { stage_.Next(); }),
            ": Zaznacz programy i spróbuj ponownie. Jeżeli lista jest pusta lub brakuje nazw "
            "zainstalowanych programów, sprawdź czy pliki definicji struktur *.stb znajdują się w "
            "katalogu Zimbrata.");
  CheckAll();
  stage_.Next();
  EXPECT_NE(stage_.Texts().find("Sprawdź wybrane wcześniej ustawienia zimbrata. Kliknij Rozbuduj aby "
                                "utworzyć bazę danych.\n"), std::string::npos) << stage_.Texts();
  stage_.Click("Rozbuduj");
  EXPECT_EQ(stage_.Page(), "Koniec") << stage_.Texts();
  EXPECT_EQ(TextOf(stage_.TheOne(WC_EDITW)),
            "Struktura bazy danych: Firma\r\nFolder: " + Folder() +
                "\r\nzostała poprawnie rozbudowana dla programu(ów): Próba CD;\r\n");
  EXPECT_EQ(stage_.FindCaption("Dodaj bazę do podręcznej listy baz pakietu"), nullptr);
}

TEST_F(Driver, ChecksADatabase) {
  stage_.MakeDatabase(u"Firma", {"AB", "CD"});
  stage_.Open();
  GoToDatabase("Aktualizować wersję,  naprawić strukturę bazy", u"");
  EXPECT_EQ(Answered(IDOK, [&] { stage_.Next(); }), ": Wskaż bazę danych i spróbuj ponownie.");
  stage_.bench.folder.Write(u"tekst.mdb", "to nie jest baza");
  stage_.Type(stage_.TheOne(WC_EDITW), stage_.bench.PathOf(u"tekst.mdb"));
  EXPECT_EQ(Answered(IDOK, [&] { stage_.Next(); }),
            ": Sprawdzenie, naprawa bazy nie powiodły się. Zimbrat nie może sprawdzić struktury bazy. "
            "Zakończ działanie innych programów korzystających z bazy i spróbuj ponownie.");
  stage_.Type(stage_.TheOne(WC_EDITW), stage_.bench.PathOf(u"Firma.mdb"));
  stage_.Next();
  EXPECT_NE(stage_.Texts().find("Sprawdź struktury zainstalowane w bazie."), std::string::npos);
  EXPECT_NE(stage_.FindCaption("Struktury bazy"), nullptr);
  stage_.Next();
  EXPECT_NE(stage_.Texts().find("Kliknij Sprawdź aby skontrolować strukturę bazy danych.\n"),
            std::string::npos);
  EXPECT_EQ(TextOf(stage_.TheOne(WC_EDITW)),
            "Tryb zimbrata: Aktualizować, naprawić bazę danych\r\nNazwa bazy: Firma\r\nFolder: " +
                Folder() + "\r\n");
  stage_.Click("Aktualizuj");
  EXPECT_NE(TextOf(stage_.TheOne(WC_EDITW)).find("posiadają poprawną strukturę"), std::string::npos);
}

TEST_F(Driver, CopiesATemplateForwardAndBack) {
  stage_.MakeDatabase(u"Wzór", {"AB"});
  stage_.Open();
  GoToDatabase("Utworzyć nową bazę danych, używając jako wzorca istniejącą bazę",
               stage_.bench.PathOf(u"Wzór.mdb"));
  stage_.Next();
  TypeNameAndFolder(u"Kopia", stage_.bench.folder.Path());
  stage_.Next();
  EXPECT_NE(stage_.Texts().find("(miesiące) bazy."), std::string::npos);
  stage_.Next();
  EXPECT_EQ(TextOf(stage_.TheOne(WC_EDITW)),
            "Tryb zimbrata: Utwórz nową bazę danych\r\nużywając jako wzorca bazę: " + Folder() +
                "\\Wzór.mdb\r\nNazwa nowej bazy: Kopia\r\nFolder nowej bazy: " + Folder() +
                "\r\nUtwórz okresy obliczeniowe: 1/2003 - 12/2003\r\n");
  stage_.Click("< Wstecz");
  EXPECT_NE(stage_.Texts().find("dla wystawianych dokumentów."), std::string::npos);
  stage_.Click("< Wstecz");
  EXPECT_NE(stage_.Texts().find("Podaj nazwę bazy danych oraz folder w którym zostanie utworzona "
                                "baza."), std::string::npos);
  stage_.Click("< Wstecz");
  stage_.Click("< Wstecz");
  EXPECT_EQ(stage_.Page(), "Start");
  EXPECT_EQ(stage_.FindCaption("< Wstecz"), nullptr);
  stage_.Next(4);
  stage_.Click("Utwórz");
  EXPECT_NE(TextOf(stage_.TheOne(WC_EDITW)).find("została poprawnie utworzona."), std::string::npos)
      << stage_.Texts();
}

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
  EXPECT_EQ(told.rfind(": Baza nie może zostać otwarta. Błąd Nr ", 0), 0u) << told;
  EXPECT_EQ(stage_.Page(), "NazwaBazy");
}

TEST_F(Driver, AsksBeforeItOverwritesAndShowsTheWayBackFromAFailure) {
  stage_.MakeDatabase(u"Firma", {"AB"});
  const std::string former = stage_.bench.folder.Read(u"Firma.mdb");
  stage_.Open();
  stage_.Next();
  TypeNameAndFolder(u"Firma", stage_.bench.folder.Path());
  stage_.Next();
  CheckAll();
  stage_.Next(2);
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

TEST_F(Driver, ClosesWithAQuestionInTheMiddleAndWithoutAtTheEnds) {
  const std::function<void(Stage&)> ways[] = {
      [](Stage& stage) { stage.Click("Anuluj"); },
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
    EXPECT_EQ(stage.Page(), "Generuj");
    Answered(IDYES, [&] { close(stage); });
    EXPECT_TRUE(stage.form->IsUnloaded());
    Stage atStart({"AB"});
    atStart.Open();
    close(atStart);
    EXPECT_TRUE(atStart.form->IsUnloaded());
  }
}

TEST_F(Driver, PicksMonthsAndYears) {
  stage_.Open();
  stage_.Next();
  TypeNameAndFolder(u"Firma", stage_.bench.folder.Path());
  stage_.Next();
  CheckAll();
  stage_.Next();
  const std::vector<HWND> months = stage_.Seen(WC_COMBOBOXW), years = stage_.Seen(WC_EDITW);
  ASSERT_EQ(months.size(), 2u);
  ASSERT_EQ(years.size(), 2u);
  EXPECT_EQ(ComboItems(months[0]), "Styczeń;Luty;Marzec;Kwiecień;Maj;Czerwiec;Lipiec;Sierpień;"
                                   "Wrzesień;Październik;Listopad;Grudzień;");
  ::SetFocus(months[0]);
  for (int i = 0; i < 9; ++i) stage_.Key(VK_DOWN);
  EXPECT_EQ(TextOf(months[0]), "Październik");
  ::SetFocus(years[0]);
  stage_.Key(VK_UP);
  stage_.Key(VK_UP);
  stage_.Key(VK_DOWN);
  EXPECT_EQ(TextOf(years[0]), "2004");
  stage_.Type(years[1], u"20251");
  EXPECT_EQ(TextOf(years[1]), "2025");
  stage_.Next();
  EXPECT_NE(TextOf(stage_.TheOne(WC_EDITW)).find("Utwórz okresy obliczeniowe: 10/2004 - 12/2025\r\n"),
            std::string::npos);
}

TEST_F(Driver, OpensTheBrowserAndTheFileDialog) {
  stage_.Open();
  stage_.Next();
  TypeNameAndFolder(u"Firma", u"C:\\dawny");
  {
    const Person person({Press(IDCANCEL)});
    stage_.Click("Wybierz folder");
  }
  EXPECT_EQ(TextOf(stage_.Seen(WC_EDITW)[1]), "C:\\dawny");
  stage_.Click("< Wstecz");
  GoToDatabase("Rozbudować strukturę istniejącej bazy", u"");
  stage_.bench.folder.Write(u"Wybrana ąę.mdb", "x");
  const std::u16string path = stage_.bench.PathOf(u"Wybrana ąę.mdb");
  {
    constexpr int kFileName = 1148;
    const Person person({Then(
        [&](HWND dialog) {
          HWND name = ::GetDlgItem(dialog, kFileName);
          if (name == nullptr) {
            name = ::GetDlgItem(::FindWindowExW(dialog, nullptr, L"#32770", nullptr), kFileName);
          }
          ::SendMessageW(name, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(path.c_str()));
        },
        Press(IDOK))});
    stage_.Click("Wskaż plik bazy");
  }
  EXPECT_EQ(TextOf(stage_.TheOne(WC_EDITW)), Utf8(path));
}

TEST_F(Driver, CopiesAClickedNameFromTheList) {
  stage_.bench.folder.Write(u"Stara.mdb", "x");
  suite::RegStringSave(stage_.bench.registry, suite::kSuiteKey, u"Folder baza",
                       stage_.bench.folder.Path());
  stage_.Open();
  stage_.Next();
  const HWND list = stage_.TheOne(WC_LISTBOXW);
  EXPECT_EQ(ListItems(list), "Stara;");
  ::PostMessageW(list, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
  ::PostMessageW(list, WM_LBUTTONUP, 0, MAKELPARAM(5, 5));
  stage_.Pump();
  EXPECT_EQ(TextOf(stage_.Seen(WC_EDITW)[0]), "Stara");
}

TEST_F(Driver, AsksForThePasswordOfAProtectedDatabase) {
  stage_.MakeDatabase(u"Firma", {"AB"});
  stage_.bench.Open(u"Firma.mdb").NewPassword(u"", u"tajneŁ");
  stage_.bench.Close();
  stage_.Open();
  GoToDatabase("Rozbudować strukturę istniejącej bazy", stage_.bench.PathOf(u"Firma.mdb"));
  HWND asking = nullptr;
  const auto type = [&](const std::u16string& typed, int button) -> Act {
    return [&asking, typed, button](HWND window) {
      if (asking == nullptr) asking = window;
      const HWND field = ::GetWindow(::GetDlgItem(asking, IDOK), GW_HWNDPREV);
      for (const char16_t unit : typed) ::SendMessageW(field, WM_CHAR, unit, 0);
      ::PostMessageW(::GetDlgItem(asking, button), BM_CLICK, 0, 0);
    };
  };
  {
    // Nothing typed; then cancelled.
    const Person person({type(u"", IDOK), Then(Press(IDOK), type(u"", IDCANCEL)), Press(IDOK)},
                        L"ZimbratOkno");
    stage_.Next();
    ASSERT_EQ(person.Seen().size(), 3u);
    EXPECT_EQ(person.Seen()[0], "Podaj hasło: ");
    EXPECT_EQ(person.Seen()[1], "Hasło bazy: Wprowadź haslo dostępu do bazy lub naciśnij Anuluj.");
    EXPECT_EQ(person.Seen()[2].rfind(": Baza nie może zostać otwarta. Błąd Nr 3031", 0), 0u);
  }
  asking = nullptr;
  EXPECT_EQ(stage_.Page(), "NazwaBazy");
  {
    const Person person({type(u"tajneŁ", IDOK)}, L"ZimbratOkno");
    stage_.Next();
  }
  EXPECT_EQ(stage_.Page(), "Struktura");
}

}  // namespace
}  // namespace zimbrat::tests
