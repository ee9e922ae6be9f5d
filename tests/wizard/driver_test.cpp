// The real window, walked through each task as a person would: what it shows on each page, and what
// stands on the disk and in the registry afterwards.
#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include "app/database_list.h"
#include "suite/ModSysReg.h"
#include "tests/wizard/driver.h"
#include "tests/wizard/person.h"

namespace zimbrat::tests {
namespace {

constexpr const char* kForward = " Kliknij Dalej > aby przejść do następnej planszy.\n";

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
  EXPECT_NO_THROW(stage_.bench.choice.Verify(stage_.bench.PathOf(u"Bazy łódź 1/Żółta Firma.mdb"), u""));
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

}  // namespace
}  // namespace zimbrat::tests
