// The window while work holds its thread: what a person, the system and other programs do meanwhile.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <thread>

#include "tests/wizard/person.h"
#include "tests/wizard/stage.h"

namespace zimbrat::tests {
namespace {

bool CloseBoxIsGrey(HWND window) {
  return (::GetMenuState(::GetSystemMenu(window, FALSE), SC_CLOSE, MF_BYCOMMAND) & MF_GRAYED) != 0;
}

class Work : public testing::Test {
 protected:
  // Opens the window; `meanwhile` is done once, in the middle of the first work on a database.
  void Open(std::function<void()> meanwhile) {
    stage_.state.on.makeEngine = [this, meanwhile = std::move(meanwhile)](const suite::PasswordOf&) {
      meanwhile();
      stage_.windows.Pulse();
      return stage_.bench.choice.Engine();
    };
    stage_.Open();
  }

  // As far as the page on which Next creates the database.
  void GoToCreation() {
    stage_.Next();
    stage_.form->txtNBazaNazwa.SetText(u"Firma");
    stage_.form->txtNBazaFolder.SetText(stage_.bench.folder.Path());
    stage_.Next();
    stage_.form->lstProgramy.SetChecked(0, true);
    stage_.Next(2);
    ASSERT_EQ(stage_.Page(), "Generuj");
  }

  bool HasMadeAnything() {
    for (const auto& file : std::filesystem::directory_iterator(
             std::filesystem::path(stage_.bench.folder.Path()))) {
      if (file.path().filename().u8string().starts_with(u8"Firma")) return true;
    }
    return false;
  }

  Stage stage_;
};

constexpr UINT kInformation = 0x0010;

TEST_F(Work, TheTitleBarsMenuTellsTheEngine) {
  stage_.Open();
  const HMENU menu = ::GetSystemMenu(stage_.Top(), FALSE);
  wchar_t caption[64] = {};
  ::GetMenuStringW(menu, static_cast<UINT>(::GetMenuItemCount(menu) - 1), caption, 64, MF_BYPOSITION);
  EXPECT_STREQ(caption, L"&Informacje...");
  EXPECT_EQ(::GetMenuItemID(menu, ::GetMenuItemCount(menu) - 1), kInformation);
  Person person({Press(IDOK)});
  ::SendMessageW(stage_.Top(), WM_SYSCOMMAND, kInformation, 0);
  ASSERT_EQ(person.Seen().size(), 1u);
  EXPECT_THAT(person.Seen().front(), testing::EndsWith("Silnik baz danych: wbudowany (Jet 4.0)"));
}

TEST_F(Work, NothingThatIsClickedMeanwhileIsDone) {
  std::vector<LRESULT> answers;
  bool wasGrey = false;
  Open([&] {
    const HWND back = stage_.FindCaption("< Wstecz"), cancel = stage_.FindCaption("Anuluj");
    for (const HWND button : {back, cancel}) {
      ::PostMessageW(button, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
      ::PostMessageW(button, WM_LBUTTONUP, 0, MAKELPARAM(5, 5));
      ::PostMessageW(button, BM_CLICK, 0, 0);
      ::SendMessageW(button, BM_CLICK, 0, 0);
    }
    ::PostMessageW(stage_.Top(), WM_COMMAND, IDCANCEL, 0);
    ::PostMessageW(::GetFocus(), WM_KEYDOWN, VK_ESCAPE, 0);
    ::PostMessageW(stage_.Top(), WM_SYSCOMMAND, SC_MOVE, 0);
    ::PostMessageW(stage_.Top(), WM_SYSCOMMAND, SC_KEYMENU, 0);
    ::PostMessageW(stage_.Top(), WM_SYSCOMMAND, kInformation, 0);
    ::SendMessageW(stage_.Top(), WM_SYSCOMMAND, kInformation, 0);
    ::PostMessageW(stage_.Top(), WM_CLOSE, 0, 0);
    wasGrey = CloseBoxIsGrey(stage_.Top());
    answers.push_back(::SendMessageW(stage_.Top(), WM_QUERYENDSESSION, 0, 0));
  });
  GoToCreation();
  stage_.Next();
  EXPECT_EQ(stage_.Page(), "Koniec") << stage_.Texts();
  EXPECT_FALSE(stage_.form->IsUnloaded());
  EXPECT_TRUE(wasGrey);
  EXPECT_FALSE(CloseBoxIsGrey(stage_.Top()));
  answers.push_back(::SendMessageW(stage_.Top(), WM_QUERYENDSESSION, 0, 0));
  EXPECT_THAT(answers, testing::ElementsAre(0, 1));
}

TEST_F(Work, AControlThatAnotherProgramClickedShowsItsModelAgain) {
  stage_.MakeDatabase(u"Firma", {"AB"});
  HWND list = nullptr;
  Open([&] { ::SendMessageW(list, BM_CLICK, 0, 0); });
  stage_.Click("Aktualizować wersję,  naprawić strukturę bazy");
  stage_.Next();
  stage_.Click("Inna lokalizacja");
  stage_.form->txtBazaNazwa.SetText(stage_.bench.PathOf(u"Firma.mdb"));
  list = stage_.FindCaption("Podręczna lista baz");
  stage_.Next();
  ASSERT_EQ(stage_.Page(), "Struktura") << stage_.Texts();
  EXPECT_TRUE(stage_.form->obInnaLok.Value());
  stage_.Click("< Wstecz");
  EXPECT_EQ(::SendMessageW(list, BM_GETCHECK, 0, 0), BST_UNCHECKED);
  EXPECT_EQ(::SendMessageW(stage_.FindCaption("Inna lokalizacja"), BM_GETCHECK, 0, 0), BST_CHECKED);
}

TEST_F(Work, EndsWithNothingMadeWhenTheSystemEnds) {
  Open([&] { ::SendMessageW(stage_.Top(), WM_ENDSESSION, TRUE, 0); });
  GoToCreation();
  stage_.Next();
  EXPECT_EQ(stage_.Page(), "Generuj");
  EXPECT_FALSE(HasMadeAnything());
}

TEST_F(Work, LeavesTheDatabaseAsItWasWhenTheSystemEnds) {
  stage_.MakeDatabase(u"Firma", {"AB"});
  stage_.bench.WriteStructure(u"CD.stb", SmallProgram("CD"));
  Open([] {});
  stage_.Click("Rozbudować strukturę istniejącej bazy");
  stage_.Next();
  stage_.Click("Inna lokalizacja");
  stage_.form->txtBazaNazwa.SetText(stage_.bench.PathOf(u"Firma.mdb"));
  stage_.Next();
  stage_.form->lstProgDodaj.SetChecked(1, true);
  stage_.Next();
  ASSERT_EQ(stage_.Page(), "Generuj") << stage_.Texts();
  const std::string former = stage_.bench.folder.Read(u"Firma.mdb");
  ::PostMessageW(stage_.FindCaption("Rozbuduj"), BM_CLICK, 0, 0);
  ::PostMessageW(stage_.Top(), WM_ENDSESSION, TRUE, 0);
  stage_.Pump();
  EXPECT_EQ(stage_.Page(), "Generuj");
  EXPECT_FALSE(::IsWindowEnabled(stage_.FindCaption("Rozbuduj")));
  EXPECT_TRUE(stage_.bench.folder.Read(u"Firma.mdb") == former);
}

TEST_F(Work, ShowsHowLongItHasTaken) {
  std::string texts;
  HCURSOR cursor = nullptr;
  Open([&] {
    stage_.bench.clock.milliseconds += 61'000;
    stage_.windows.Pulse();
    texts = stage_.Texts();
    cursor = ::GetCursor();
  });
  GoToCreation();
  stage_.Next();
  EXPECT_NE(texts.find("Trwa tworzenie bazy danych: 1:01\n"), std::string::npos) << texts;
  EXPECT_EQ(cursor, ::LoadCursorW(nullptr, IDC_WAIT));
  EXPECT_EQ(::GetCursor(), ::LoadCursorW(nullptr, IDC_ARROW));
}

// Types into the password window and says what its message lies over.
class PasswordPerson {
 public:
  PasswordPerson() : thread_([this] { Live(); }) {}
  ~PasswordPerson() { thread_.join(); }

  std::string messageOwner;

 private:
  static HWND Wait(const wchar_t* type, const wchar_t* title) {
    for (int waited = 0; waited < 500; ++waited) {
      const HWND found = ::FindWindowW(type, title);
      if (found != nullptr && ::IsWindowVisible(found)) return found;
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return nullptr;
  }

  void Live() {
    const HWND window = Wait(L"ZimbratOkno", L"Podaj hasło");
    if (window == nullptr) return;
    ::PostMessageW(window, WM_COMMAND, IDOK, 0);
    const HWND message = Wait(L"#32770", L"Hasło bazy");
    messageOwner = TextOf(::GetWindow(message, GW_OWNER));
    ::PostMessageW(message, WM_COMMAND, IDOK, 0);
    while (::IsWindow(message)) std::this_thread::sleep_for(std::chrono::milliseconds(10));
    HWND field = nullptr;
    for (int i = 0; i < 2; ++i) field = ::FindWindowExW(window, field, WC_EDITW, nullptr);
    for (const wchar_t letter : std::wstring_view(L"Łódź")) ::PostMessageW(field, WM_CHAR, letter, 0);
    ::PostMessageW(window, WM_COMMAND, IDOK, 0);
  }

  std::thread thread_;
};

TEST_F(Work, GoesOnAfterAPassword) {
  std::optional<platform::Secret> password;
  std::string owner;
  bool isBusy = false;
  Open([&] {
    PasswordPerson person;
    password = stage_.windows.AskPassword(u"C:\\Bazy\\Firma.mdb");
    owner = person.messageOwner;
    isBusy = CloseBoxIsGrey(stage_.Top()) && ::IsWindowEnabled(stage_.Top());
  });
  GoToCreation();
  stage_.Next();
  ASSERT_TRUE(password.has_value());
  EXPECT_EQ(Utf8(password->View()), "Łódź");
  EXPECT_EQ(owner, "Podaj hasło");
  EXPECT_TRUE(isBusy);
  EXPECT_EQ(stage_.Page(), "Koniec");
  EXPECT_FALSE(CloseBoxIsGrey(stage_.Top()));
}

TEST(CheckList, StaysWhereItIsWhenAMessageLiesOverIt) {
  Stage stage({"AB", "CD"});
  stage.Open();
  stage.Next();
  stage.form->txtNBazaNazwa.SetText(u"Firma");
  stage.form->txtNBazaFolder.SetText(stage.bench.folder.Path());
  stage.Next();
  stage.Key(VK_DOWN);
  {
    const Person person({Press(IDOK)});
    stage.Next();
  }
  const HWND list = stage.TheOne(WC_LISTVIEWW);
  EXPECT_EQ(::SendMessageW(list, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_FOCUSED), 1);
}

TEST(Combo, ForgetsTheTextOfNoItemOnceOneIsPicked) {
  Stage stage;
  stage.form->cmbBazaNazwa.Add(u"Firma", u"C:\\Firma.mdb");
  stage.Open();
  stage.form->cmbBazaNazwa.Clear();
  stage.form->cmbBazaNazwa.Add(u"Firma", u"C:\\Firma.mdb");
  stage.Click("Rozbudować strukturę istniejącej bazy");
  stage.Next();
  stage.Click("Inna lokalizacja");
  stage.Click("Podręczna lista baz");
  const HWND combo = stage.TheOne(WC_COMBOBOXW);
  EXPECT_EQ(TextOf(combo), "(brak)");
  ::SetFocus(combo);
  stage.Key(VK_HOME);
  EXPECT_EQ(TextOf(combo), "Firma");
  EXPECT_EQ(Utf8(stage.form->cmbBazaNazwa.HiddenValue()), "C:\\Firma.mdb");
  EXPECT_EQ(::SendMessageW(combo, CB_GETCOUNT, 0, 0), 1);
}

}  // namespace
}  // namespace zimbrat::tests
