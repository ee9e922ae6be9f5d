// The fields, lists and dialogs that collect what a task needs, used as a person would.
#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>
#include <shlobj.h>

#include "suite/ModSysReg.h"
#include "platform/win32/wide_text.h"
#include "tests/wizard/driver.h"
#include "tests/wizard/person.h"

namespace zimbrat::tests {
namespace {

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

// The folder that the browser's tree stands on.
std::string ChosenIn(HWND browser) {
  constexpr int kFolderTree = 14145;
  const HWND tree = ::GetDlgItem(browser, kFolderTree);
  wchar_t text[100] = {};
  TVITEMW item = {};
  item.mask = TVIF_TEXT;
  item.hItem = reinterpret_cast<HTREEITEM>(::SendMessageW(tree, TVM_GETNEXTITEM, TVGN_CARET, 0));
  item.pszText = text;
  item.cchTextMax = 100;
  ::SendMessageW(tree, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item));
  return platform::Utf8FromUtf16(platform::FromWide(text));
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
  stage_.bench.folder.Write(u"Bazy łódź 1/Stara ąę.mdb", "x");
  const std::u16string folder = stage_.bench.PathOf(u"Bazy łódź 1");
  {
    const Act choose = [&](HWND browser) {
      // The tree fills itself for a while, and goes back to its root when it is done.
      for (int i = 0; i < 50 && ChosenIn(browser) != "Bazy łódź 1"; ++i) {
        ::SendMessageW(browser, BFFM_SETSELECTIONW, TRUE, reinterpret_cast<LPARAM>(folder.c_str()));
        ::Sleep(100);
      }
    };
    const Person person({Then(choose, Press(IDOK))});
    stage_.Click("Wybierz folder");
  }
  EXPECT_EQ(TextOf(stage_.Seen(WC_EDITW)[1]), Utf8(folder));
  EXPECT_EQ(ListItems(stage_.TheOne(WC_LISTBOXW)), "Stara ąę;");
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
