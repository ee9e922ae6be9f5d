// The error dialog on the screen, over the wizard, and the mail programs of the system behind its button.
#include <gtest/gtest.h>

#include <windows.h>

#include <chrono>
#include <thread>

#include "app/win32/error_window.h"
#include "errors/ModOutlook.h"
#include "suite/ModSysReg.h"
#include "suite/product.h"
#include "tests/wizard/outlook_stand_in.h"
#include "tests/wizard/person.h"
#include "tests/wizard/stage.h"
#include "tests/wizard/tour.h"
#include "platform/win32/wide_text.h"

namespace zimbrat::tests {
namespace {

constexpr const wchar_t* kFormClass = L"ZimbratOkno";

HWND FindIn(HWND dialog, std::string_view caption) {
  for (HWND child = ::GetWindow(dialog, GW_CHILD); child != nullptr; child = ::GetWindow(child, GW_HWNDNEXT)) {
    std::string text = TextOf(child);
    std::erase(text, '&');
    if (text == caption && ::IsWindowVisible(child)) return child;
  }
  return nullptr;
}

// Returns when the click has been dealt with.
Act Click(std::string_view caption) {
  return [caption](HWND dialog) {
    const HWND button = FindIn(dialog, caption);
    ASSERT_NE(button, nullptr) << caption;
    ::SendMessageW(button, BM_CLICK, 0, 0);
  };
}

// Does not wait: something modal may open.
Act Start(std::string_view caption) {
  return [caption](HWND dialog) { ::PostMessageW(FindIn(dialog, caption), BM_CLICK, 0, 0); };
}

Act Close() {
  return [](HWND dialog) { ::PostMessageW(dialog, WM_CLOSE, 0, 0); };
}

std::string SeenIn(HWND dialog) {
  std::string texts;
  for (HWND child = ::GetWindow(dialog, GW_CHILD); child != nullptr; child = ::GetWindow(child, GW_HWNDNEXT)) {
    if (::IsWindowVisible(child)) texts += TextOf(child) + "\n";
  }
  return texts;
}

std::string Subject() {
  return "Błąd programu " + Utf8(suite::ProductTitle()) + " wersja " + Utf8(suite::ProductVersion());
}
std::string Address() { return Utf8(suite::SupportAddress()); }

const std::string kBody =
    "Proszę nie kasować poniższego tekstu\r\n-----------------------------------------\r\nNumer: 3022\r\n"
    "Źródło: DAO.Field\r\nOpis1: Wyjaśnienie żółci.\r\nOpis2: Powtórzenie [RegBaseKeySave]";

class ErrorWindowTest : public testing::Test {
 protected:
  ErrorWindowTest() {
    stage_.bench.folder.Write(u"Errormsg.txt",
                              platform::Ansi1250FromUtf16(u"[DAO]\r\n3022=Wyjaśnienie żółci.\r\n"));
    stage_.Open();
  }

  // Reports one error while a person does that with the dialogs that open.
  std::vector<std::string> Report(std::vector<Act> acts, std::u16string_view description = u"Powtórzenie") {
    const Person person(std::move(acts), kFormClass);
    stage_.host.ReportError({3022, u"DAO.Field", std::u16string(description)}, u"RegBaseKeySave");
    return person.Seen();
  }
  std::string Log() {
    return stage_.bench.folder.Exists(u"Error.log")
               ? Utf8(platform::Utf16FromAnsi1250(stage_.bench.folder.Read(u"Error.log")))
               : std::string();
  }

  Stage stage_;
};

TEST_F(ErrorWindowTest, StandsOverTheWizardAndLogsWhereThatIsChecked) {
  const Act look = [&](HWND dialog) {
    EXPECT_EQ(TextOf(dialog), "Błąd programu");
    EXPECT_EQ(::GetWindow(dialog, GW_OWNER), stage_.Top());
    EXPECT_FALSE(::IsWindowEnabled(stage_.Top()));
    EXPECT_EQ(SeenIn(dialog),
              "Wyjaśnienie żółci.\nOK\n&Szczegóły\n&Wyślij\n&Przerwij\n&Zapisuj błędy w\u00A0dzienniku Error.log\n");
  };
  Report({Then(Then(look, Click("Zapisuj błędy w\u00A0dzienniku Error.log")), Click("OK"))});
  EXPECT_TRUE(::IsWindowEnabled(stage_.Top()));
  EXPECT_EQ(Log(), "[05.02.2003 06:00]\r\nProgram=" + Utf8(suite::ProductTitle()) + " ver. " +
                       Utf8(suite::ProductVersion()) +
                       "\r\nŹródło=DAO.Field\r\nNumer=3022\r\nObiekt=RegBaseKeySave\r\n"
                       "Opis=Powtórzenie [RegBaseKeySave]\r\n");
  // The choice is the next error's default.
  Report({Then([](HWND dialog) {
                 const HWND box = FindIn(dialog, "Zapisuj błędy w\u00A0dzienniku Error.log");
                 EXPECT_EQ(::SendMessageW(box, BM_GETCHECK, 0, 0), BST_CHECKED);
               },
               Close())});
}

TEST_F(ErrorWindowTest, ShowsDetailsAtTheGivenHeight) {
  const Act look = [&](HWND dialog) {
    RECT closed = {}, open = {};
    ::GetWindowRect(dialog, &closed);
    Click("Szczegóły")(dialog);
    ::GetWindowRect(dialog, &open);
    const auto dpi = static_cast<int>(app::DpiOf(dialog));
    EXPECT_EQ(open.bottom - open.top, ::MulDiv(4740, dpi, 1440));
    EXPECT_LT(closed.bottom - closed.top, open.bottom - open.top);
    EXPECT_EQ(open.right - open.left, closed.right - closed.left);
    EXPECT_FALSE(::IsWindowEnabled(FindIn(dialog, "Szczegóły")));
    EXPECT_EQ(SeenIn(dialog).substr(SeenIn(dialog).find("Numer")),
              "Numer\n3022\nŹródło\nDAO.Field\nPowtórzenie [RegBaseKeySave]\n");
  };
  Report({Then(look, Click("OK"))});
  // The keyboard is not lost with the button that has become disabled.
  HWND focus = nullptr;
  const DWORD thread = ::GetCurrentThreadId();
  const Act askFocus = [&](HWND) {
    GUITHREADINFO info = {};
    info.cbSize = sizeof info;
    ::GetGUIThreadInfo(thread, &info);
    focus = info.hwndFocus;
  };
  std::string focused;
  Report({Then(Then(Then(Click("Szczegóły"), askFocus), [&](HWND) { focused = TextOf(focus); }), Click("OK"))});
  EXPECT_EQ(focused, "Powtórzenie [RegBaseKeySave]");
}

TEST_F(ErrorWindowTest, ClosesByEscEnterAndTheCloseBox) {
  const auto key = [](WPARAM code) {
    return [code](HWND dialog) {
      const HWND focus = FindIn(dialog, "OK");
      ::PostMessageW(focus, WM_KEYDOWN, code, 0);
      ::PostMessageW(focus, WM_KEYUP, code, 0);
    };
  };
  suite::RegStringSave(stage_.bench.registry, u"", errors::kSaveErrorsValue, u"1");
  for (const Act& act : {Act(key(VK_ESCAPE)), Act(key(VK_RETURN)), Close()}) {
    std::filesystem::remove(std::filesystem::path(stage_.bench.PathOf(u"Error.log")));
    Report({act});
    EXPECT_NE(Log(), "") << "every way of closing runs the same steps";
    EXPECT_TRUE(::IsWindowEnabled(stage_.Top()));
  }
}

TEST_F(ErrorWindowTest, AsksBeforeItEndsTheProgram) {
  const std::string question =
      Utf8(suite::ProductTitle()) +
      ": Nastąpi przerwanie działania programu. Wszystkie niezapisane dane zostaną utracone. Kontynuować?";
  for (const int answer : {IDNO, IDYES}) {
    stage_.ends = 0;
    HWND dialog = nullptr;
    const Act start = Then([&](HWND shown) { dialog = shown; }, Start("Przerwij"));
    const Act decide = [&, answer](HWND box) {
      EXPECT_EQ(::GetWindow(box, GW_OWNER), dialog);
      const HWND no = ::GetDlgItem(box, IDNO);
      EXPECT_NE(::GetWindowLongPtrW(no, GWL_STYLE) & BS_DEFPUSHBUTTON, 0) << "No is the default";
      Press(answer)(box);
      while (::IsWindow(box)) std::this_thread::sleep_for(std::chrono::milliseconds(10));
      Close()(dialog);
    };
    const auto seen = Report({start, decide});
    EXPECT_EQ(seen.at(1), question);
    EXPECT_EQ(stage_.ends, answer == IDYES ? 1 : 0);
  }
}

TEST_F(ErrorWindowTest, LaysAMailBeforeTheUserInOutlook) {
  OutlookStandIn outlook;
  Report({Then(Click("Wyślij"), Click("OK"))});
  const std::vector<std::string> expected = {"CreateItem(0)", "Subject=" + Subject(), "To=" + Address(),
                                             "Body=" + kBody, "Display()"};
  EXPECT_EQ(outlook.done, expected);
  outlook.done.clear();
  Report({Then(Click("Wyślij"), Click("OK"))}, u"<html><b>Żółć</b></html>");
  ASSERT_EQ(outlook.done.size(), 5u);
  EXPECT_EQ(outlook.done[3].substr(0, 9), "HTMLBody=");
  EXPECT_NE(outlook.done[3].find("<html><b>Żółć</b></html>"), std::string::npos);
  EXPECT_EQ(outlook.References(), 0);
}

TEST_F(ErrorWindowTest, AttachesFilesInOutlook) {
  OutlookStandIn outlook;
  errors::SendOutlookMail(stage_.state, stage_.automation, u"Temat ł", u"a@b", u"Treść", u"C:\\Dziennik błędów.log");
  const std::vector<std::string> one = {"CreateItem(0)",  "Subject=Temat ł", "To=a@b",
                                        "Body=Treść",     "Attachments()",   "Add(C:\\Dziennik błędów.log)",
                                        "Display()"};
  EXPECT_EQ(outlook.done, one);
  outlook.done.clear();
  errors::SendOutlookMail(stage_.state, stage_.automation, u"", u"", u"", u"a;b");
  const std::vector<std::string> two = {"CreateItem(0)", "Subject=", "To=", "Body=", "Attachments()", "Add(a)",
                                        "Attachments()", "Add(b)",   "Display()"};
  EXPECT_EQ(outlook.done, two);
  EXPECT_EQ(outlook.References(), 0);
}

TEST_F(ErrorWindowTest, ReportsAnAttachmentThatIsRefused) {
  OutlookStandIn outlook;
  outlook.refused = "Add";
  suite::RegStringSave(stage_.bench.registry, u"", errors::kSaveErrorsValue, u"1");
  {
    const Person person({Then(
                            [](HWND dialog) {
                              Click("Szczegóły")(dialog);
                              EXPECT_NE(SeenIn(dialog).find("287\nŹródło\nMicrosoft Outlook\nOdmowa: żółć [SendOutlookMail]"),
                                        std::string::npos)
                                  << SeenIn(dialog);
                            },
                            Click("OK"))},
                        kFormClass);
    errors::SendOutlookMail(stage_.state, stage_.automation, u"T", u"a@b", u"Treść", u"brak.log");
  }
  EXPECT_NE(Log().find("Numer=287\r\nObiekt=SendOutlookMail\r\nOpis=Odmowa: żółć [SendOutlookMail]\r\n"),
            std::string::npos)
      << Log();
  EXPECT_EQ(outlook.References(), 0);
}

// A failure of Send opens a second dialog over the first, which waits for it.
TEST_F(ErrorWindowTest, StandsOverItselfWhenSendingFails) {
  OutlookStandIn outlook;
  outlook.refused = "Display";
  HWND first = nullptr;
  const Act send = Then([&](HWND dialog) { first = dialog; }, Start("Wyślij"));
  const Act closeBoth = [&](HWND second) {
    EXPECT_FALSE(::IsWindowEnabled(first));
    EXPECT_FALSE(::IsWindowEnabled(stage_.Top()));
    EXPECT_EQ(::GetWindow(second, GW_OWNER), stage_.Top());
    Close()(second);
    while (::IsWindow(second)) std::this_thread::sleep_for(std::chrono::milliseconds(10));
    EXPECT_TRUE(::IsWindowEnabled(first));
    EXPECT_FALSE(::IsWindowEnabled(stage_.Top()));
    Click("OK")(first);
  };
  Report({send, closeBoth});
  EXPECT_TRUE(::IsWindowEnabled(stage_.Top()));
}

TEST_F(ErrorWindowTest, SaysThatThereIsNoOutlook) {
  HWND dialog = nullptr;
  const Act send = Then([&](HWND shown) { dialog = shown; }, Start("Wyślij"));
  const Act answer = [&](HWND box) {
    EXPECT_EQ(::GetWindow(box, GW_OWNER), dialog);
    Press(IDOK)(box);
    while (::IsWindow(box)) std::this_thread::sleep_for(std::chrono::milliseconds(10));
    Close()(dialog);
  };
  const auto seen = Report({send, answer});
  EXPECT_EQ(seen.at(1), Utf8(suite::ProductTitle()) +
                            ": Błąd nr 429. Program nie może wysłać pocztę elektroniczną stosująć aplikację MS Outlook. "
                            "Zmień ustawienia programu: menu Narzędzia, polecenie Parametry programu, zakładka "
                            "Aplikacja i spróbuj ponownie.");
}

std::wstring FolderOfThisProgram() {
  wchar_t path[MAX_PATH] = {};
  ::GetModuleFileNameW(nullptr, path, MAX_PATH);
  return std::filesystem::path(path).parent_path().wstring();
}

class MapiTest : public ErrorWindowTest {
 protected:
  MapiTest() {
    stage_.state.mailMethod = u"3";
    ::SetEnvironmentVariableW(L"ZIMBRAT_MAPI_RECORD", platform::Lend(record_));
  }
  void Refuse(const wchar_t* call) { ::SetEnvironmentVariableW(L"ZIMBRAT_MAPI_REFUSES", call); }
  // As UTF-8.
  std::string Record() {
    return Utf8(platform::Utf16FromAnsi1250(stage_.bench.folder.Read(u"mapi.txt")));
  }

  std::u16string record_ = stage_.bench.PathOf(u"mapi.txt");
  RegistryChange client_{L"SOFTWARE\\Clients\\Mail", L"", L"ZimbratPoczta"};
  RegistryChange library_{L"SOFTWARE\\Clients\\Mail\\ZimbratPoczta", L"DLLPath",
                          FolderOfThisProgram() + L"\\mapi_stand_in.dll"};
};

TEST_F(MapiTest, SendsThroughTheMailProgramOfTheSystem) {
  Refuse(nullptr);
  Report({Then(Click("Wyślij"), Click("OK"))});
  EXPECT_EQ(Record(), "MAPILogon 1\nMAPISendMail 77 8 to 1 " + Address() + " SMTP:" + Address() + ": " + Subject() +
                          "\n(>tutaj wpisz okoliczności wystąpienia błędu<)\r\n\r\n\r\n" + kBody +
                          "\r\n\nMAPILogoff 77\n");
}

TEST_F(MapiTest, SaysNothingWhenTheMailProgramRefuses) {
  const std::pair<const wchar_t*, std::string> rows[] = {{L"MAPILogon", ""},
                                                         {L"MAPISendMail", "MAPILogon 1\nMAPILogoff 77\n"}};
  for (const auto& [refused, record] : rows) {
    stage_.bench.folder.Write(u"mapi.txt", "");
    Refuse(refused);
    const auto seen = Report({Then(Click("Wyślij"), Click("OK"))});
    EXPECT_EQ(seen.size(), 1u) << "no other dialog";
    EXPECT_EQ(Record(), record);
  }
}

TEST_F(ErrorWindowTest, OpensALinkOfTheMailProgram) {
  const std::u16string caught = stage_.bench.PathOf(u"link.txt");
  const RegistryChange command(L"SOFTWARE\\Classes\\mailto\\shell\\open\\command", L"",
                               L"\"" + FolderOfThisProgram() + L"\\link_catcher.exe\" \"" + platform::Lend(caught) +
                                   L"\" \"%1\"");
  stage_.state.mailMethod = u"1";
  Report({Then(Click("Wyślij"), Click("OK"))}, u"żółć & #1");
  for (int i = 0; i < 500 && !stage_.bench.folder.Exists(u"link.txt"); ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  EXPECT_EQ(stage_.bench.folder.Read(u"link.txt"),
            "mailto:" + Address() + "?subject=" + Subject() +
                "&Body=(Nie kasować) :     Numer: 3022   Źródło: DAO.Field   Opis1: Wyjaśnienie żółci.   Opis2: "
                "żółć & #1 [RegBaseKeySave]");
}

// The person's own registry: an interactive run keeps the choice directly under its root.
TEST(ErrorWindow, KeepsTheChoiceUnderTheUsersRoot) {
  const auto choice = [] {
    wchar_t text[16] = L"<none>";
    DWORD size = sizeof text;
    ::RegGetValueW(HKEY_CURRENT_USER, nullptr, L"Zapisz błędy", RRF_RT_REG_SZ, nullptr, text, &size);
    return std::wstring(text);
  };
  const auto forget = [] { ::RegDeleteKeyValueW(HKEY_CURRENT_USER, nullptr, L"Zapisz błędy"); };
  forget();
  Stage stage({"AB"}, Stage::Registry::Real);
  stage.Open();
  const Person person({Then([&](HWND) { EXPECT_EQ(choice(), L"0") << "the default is written back"; },
                            Then(Click("Zapisuj błędy w\u00A0dzienniku Error.log"), Click("OK")))},
                      kFormClass);
  stage.host.ReportError({3022, u"DAO", u"x"}, u"RegBaseKeySave");
  EXPECT_EQ(choice(), L"1");
  forget();
}

class RaisingRegistry : public platform::Registry {
 public:
  std::int32_t CreateKey(platform::RegistryRoot, std::u16string_view, std::unique_ptr<platform::RegistryKey>&) override {
    throw platform::OwnError(7);
  }
  std::int32_t OpenKey(platform::RegistryRoot, std::u16string_view, platform::RegistryAccess,
                       std::unique_ptr<platform::RegistryKey>&) override {
    throw platform::OwnError(7);
  }
};

TEST_F(ErrorWindowTest, IsWhereAFailureOfTheRegistryEnds) {
  RaisingRegistry registry;
  const suite::Surroundings& on = stage_.state.on;
  suite::ProgramState state({on.files, registry, on.profile, on.clock, on.environment, on.host, nullptr});
  suite::RegStringSave(stage_.bench.registry, u"", errors::kSaveErrorsValue, u"1");
  {
    const Person person({Close()}, kFormClass);
    suite::RegBaseKeySave(state, u"Firma", u"C:\\Firma.mdb");
  }
  EXPECT_NE(Log().find("Numer=7\r\nObiekt=RegBaseKeySave\r\nOpis=Brak pamięci [RegBaseKeySave]\r\n"), std::string::npos)
      << Log();
}

// Errors while the dialog itself is shown open no endless row of dialogs.
TEST_F(ErrorWindowTest, StopsAtAFewDialogsOfItsOwnFailures) {
  int open = 0;
  stage_.outside.endProgram = [&] {};
  std::vector<Act> acts;
  const Act reportAnother = [](HWND dialog) { Start("Wyślij")(dialog); };
  OutlookStandIn outlook;
  outlook.refused = "Display";
  for (int i = 0; i < 4; ++i) acts.push_back(Then([&](HWND) { ++open; }, reportAnother));
  std::vector<HWND> dialogs;
  const Act closeAll = [&](HWND box) {
    EXPECT_EQ(MessageOf(box), "Błąd programu: Błąd inicjowania okna obsługi błędów.");
    Press(IDOK)(box);
    for (int i = 0; i < 4; ++i) {
      std::this_thread::sleep_for(std::chrono::milliseconds(200));
      for (HWND dialog = nullptr; (dialog = ::FindWindowExW(nullptr, dialog, kFormClass, L"Błąd programu")) != nullptr;) {
        DWORD process = 0;
        ::GetWindowThreadProcessId(dialog, &process);
        if (process == ::GetCurrentProcessId() && ::IsWindowEnabled(dialog) && ::IsWindowVisible(dialog)) Close()(dialog);
      }
    }
  };
  acts.push_back(closeAll);
  Report(std::move(acts));
  EXPECT_EQ(open, 4);
  EXPECT_TRUE(::IsWindowEnabled(stage_.Top()));
}

}  // namespace
}  // namespace zimbrat::tests
