// The error dialog on the screen, over the wizard.
#include <gtest/gtest.h>

#include <windows.h>

#include "suite/ModSysReg.h"
#include "suite/product.h"
#include "tests/product/raising_registry.h"
#include "tests/wizard/error_driver.h"
#include "tests/wizard/outlook_stand_in.h"
#include "tests/wizard/tour.h"

namespace zimbrat::tests {
namespace {

using ErrorWindow = ErrorDriver;

TEST_F(ErrorWindow, StandsOverTheWizardAndLogsWhereThatIsChecked) {
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

TEST_F(ErrorWindow, ShowsDetailsAtTheGivenHeight) {
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

TEST_F(ErrorWindow, ClosesByEscEnterAndTheCloseBox) {
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

TEST_F(ErrorWindow, AsksBeforeItEndsTheProgram) {
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
      WaitUntilGone(box);
      Close()(dialog);
    };
    const auto seen = Report({start, decide});
    EXPECT_EQ(seen.at(1), question);
    EXPECT_EQ(stage_.ends, answer == IDYES ? 1 : 0);
  }
}

// A failure of Send opens a second dialog over the first, which waits for it.
TEST_F(ErrorWindow, StandsOverItselfWhenSendingFails) {
  OutlookStandIn outlook;
  outlook.refused = "Display";
  HWND first = nullptr;
  const Act send = Then([&](HWND dialog) { first = dialog; }, Start("Wyślij"));
  const Act closeBoth = [&](HWND second) {
    EXPECT_FALSE(::IsWindowEnabled(first));
    EXPECT_FALSE(::IsWindowEnabled(stage_.Top()));
    EXPECT_EQ(::GetWindow(second, GW_OWNER), stage_.Top());
    Close()(second);
    WaitUntilGone(second);
    EXPECT_TRUE(::IsWindowEnabled(first));
    EXPECT_FALSE(::IsWindowEnabled(stage_.Top()));
    Click("OK")(first);
  };
  Report({send, closeBoth});
  EXPECT_TRUE(::IsWindowEnabled(stage_.Top()));
}

// The person's own registry: an interactive run keeps the choice directly under its root.
TEST(ErrorWindowAndRegistry, KeepsTheChoiceUnderTheUsersRoot) {
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

TEST_F(ErrorWindow, IsWhereAFailureOfTheRegistryEnds) {
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
TEST_F(ErrorWindow, StopsAtAFewDialogsOfItsOwnFailures) {
  OutlookStandIn outlook;
  outlook.refused = "Display";
  std::vector<HWND> dialogs;
  std::vector<Act> acts(4, Then([&](HWND dialog) { dialogs.push_back(dialog); }, Start("Wyślij")));
  acts.push_back([&](HWND box) {
    EXPECT_EQ(MessageOf(box).find("Błąd programu: Błąd inicjowania okna obsługi błędów.\r\n\r\nBłąd nr 287; "), 0u);
    Press(IDOK)(box);
    for (; !dialogs.empty(); dialogs.pop_back()) {
      WaitUntilGone(box);
      box = dialogs.back();
      Close()(box);
    }
  });
  Report(std::move(acts));
  EXPECT_TRUE(dialogs.empty());
  EXPECT_TRUE(::IsWindowEnabled(stage_.Top()));
}

TEST_F(ErrorWindow, GivesTheFocusBack) {
  const HWND before = ::GetFocus();
  ASSERT_NE(before, nullptr);
  Report({Then(
      [](HWND dialog) {
        const LONG_PTR style = ::GetWindowLongPtrW(FindIn(dialog, "OK"), GWL_STYLE);
        EXPECT_EQ(style & BS_TYPEMASK, BS_DEFPUSHBUTTON);
      },
      Close())});
  stage_.Pump();
  EXPECT_EQ(::GetFocus(), before);
}

}  // namespace
}  // namespace zimbrat::tests
