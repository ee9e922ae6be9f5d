// The window by keyboard, and for those who hear it: focus, order, Enter, Esc, access keys, names.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <string>

#include "app/win32/view.h"
#include "tests/wizard/person.h"
#include "tests/wizard/tour.h"

namespace zimbrat::tests {
namespace {

// What can have the focus, from top to bottom and from left to right; of options the chosen one.
std::vector<HWND> ReadingOrder(const Stage& stage) {
  std::vector<HWND> stops;
  for (const HWND control : ControlsOf(stage)) {
    const bool isOption = IsOfClass(control, WC_BUTTONW) && ButtonKind(control) == BS_AUTORADIOBUTTON;
    const bool isMute = IsOfClass(control, WC_STATICW) || IsOfClass(control, PROGRESS_CLASSW) ||
                        IsOfClass(control, UPDOWN_CLASSW) || !::IsWindowEnabled(control);
    const bool isLeft = isOption && ::SendMessageW(control, BM_GETCHECK, 0, 0) != BST_CHECKED;
    if (!isMute && !isLeft) stops.push_back(control);
  }
  std::ranges::stable_sort(stops, [&](HWND one, HWND other) {
    const RECT a = PlaceOf(stage, one), b = PlaceOf(stage, other);
    return a.bottom <= b.top || (b.bottom > a.top && a.left < b.left);
  });
  return stops;
}

std::vector<std::string> NamesOf(const std::vector<HWND>& controls) {
  std::vector<std::string> names;
  for (const HWND control : controls) {
    wchar_t type[64] = {};
    ::GetClassNameW(control, type, 64);
    const std::string text = TextOf(control);
    names.push_back(Utf8(reinterpret_cast<const char16_t*>(type)) + " " + text.substr(0, text.find('\r')));
  }
  return names;
}

// While it lives, Shift is held.
class Shift {
 public:
  Shift() { Set(0x80); }
  ~Shift() { Set(0); }
  Shift(const Shift&) = delete;
  Shift& operator=(const Shift&) = delete;

 private:
  static void Set(BYTE state) {
    BYTE keys[256] = {};
    keys[VK_SHIFT] = state;
    ::SetKeyboardState(keys);
  }
};

// Where the focus is after each of as many presses of the key as there are stops.
std::vector<HWND> Walk(Stage& stage, std::size_t count) {
  std::vector<HWND> visited;
  for (std::size_t i = 0; i < count; ++i) {
    stage.Key(VK_TAB);
    visited.push_back(::GetFocus());
  }
  return visited;
}

TEST(Keys, TabWalksInReadingOrderRoundBothWays) {
  VisitAllPages([](Stage& stage) {
    SCOPED_TRACE(stage.Page());
    std::vector<HWND> order = ReadingOrder(stage);
    const HWND start = ::GetFocus();
    const auto at = std::ranges::find(order, start);
    ASSERT_NE(at, order.end()) << "the focus is nowhere";
    std::rotate(order.begin(), at + 1, order.end());
    EXPECT_EQ(NamesOf(Walk(stage, order.size())), NamesOf(order));
    EXPECT_EQ(::GetFocus(), start);
    std::ranges::reverse(order);
    std::rotate(order.begin(), order.begin() + 1, order.end());
    const Shift shift;
    EXPECT_EQ(NamesOf(Walk(stage, order.size())), NamesOf(order));
  });
}

TEST(Keys, ThePageStartsWhereItIsUsedFirst) {
  std::string starts;
  VisitAllPages([&](Stage& stage) {
    const HWND focus = ::GetFocus();
    EXPECT_TRUE(::IsWindowVisible(focus) && ::IsWindowEnabled(focus)) << stage.Page();
    starts += stage.Page() + ": " + NamesOf({focus}).front() + "\n";
  });
  EXPECT_THAT(starts, testing::StartsWith("Start: Button Utworzyć &nową, pustą bazę danych\n"
                                          "NowaBaza: Edit Firma\n"
                                          "ProgBazy: SysListView32 \n"
                                          "Okresy: ComboBox Styczeń\n"
                                          "Generuj: Edit "));
  EXPECT_THAT(starts, testing::HasSubstr("Koniec: Button Zakończ\n"
                                         "NazwaBazy: ComboBox (brak)\n"
                                         "Struktura: SysListView32 \n"));
}

// What the buttons are asked for, instead of what they do.
struct Asked {
  int next = 0, back = 0, cancel = 0, browse = 0;

  explicit Asked(app::mdiMenu& form) {
    form.cmdDalej.SetOnClick([this] { ++next; });
    form.cmdWstecz.SetOnClick([this] { ++back; });
    form.cmdAnuluj.SetOnClick([this] { ++cancel; });
    for (platform::OrvClick* field : {&form.txtNBazaFolder, &form.txtBazaNazwa}) {
      field->SetOnClick([this] { ++browse; });
    }
  }
  std::vector<int> All() const { return {next, back, cancel, browse}; }
};

// Puts the handlers back that `Asked` has taken.
void Restore(app::mdiMenu& form) {
  form.cmdDalej.SetOnClick([&form] { form.cmdDalej_Click(); });
  form.cmdWstecz.SetOnClick([&form] { form.cmdWstecz_Click(); });
  form.cmdAnuluj.SetOnClick([&form] { form.cmdAnuluj_Click(); });
}

// What Enter asks for in a control: the button itself, else the default one.
std::vector<int> EnterMeans(const Stage& stage, HWND control) {
  const HWND top = stage.Top();
  if (control == ::GetDlgItem(top, 100)) return {0, 1, 0, 0};
  if (control == ::GetDlgItem(top, IDCANCEL) || stage.Page() == "Koniec") return {0, 0, 1, 0};
  const bool isOnPage = ::GetParent(control) != top;
  const bool isPush = IsOfClass(control, WC_BUTTONW) &&
                      (ButtonKind(control) == BS_PUSHBUTTON || ButtonKind(control) == BS_DEFPUSHBUTTON);
  if (isOnPage && isPush) return {0, 0, 0, 1};
  return {1, 0, 0, 0};
}

TEST(Keys, EnterAndEscMeanTheSameInEveryControl) {
  VisitAllPages([](Stage& stage) {
    for (const HWND control : ReadingOrder(stage)) {
      SCOPED_TRACE(stage.Page() + ": " + NamesOf({control}).front());
      app::MoveFocus(control);
      const Asked enter(*stage.form);
      stage.Key(VK_RETURN);
      EXPECT_EQ(enter.All(), EnterMeans(stage, control));
      const Asked escape(*stage.form);
      stage.Key(VK_ESCAPE);
      EXPECT_EQ(escape.All(), (std::vector<int>{0, 0, 1, 0}));
    }
    Restore(*stage.form);
    const HWND first = ReadingOrder(stage).front();
    app::MoveFocus(first);
  });
}

TEST(Keys, EnterDoesNothingWhileNextIsDisabled) {
  Stage stage;
  stage.Open();
  const Asked asked(*stage.form);
  stage.form->cmdDalej.SetEnabled(false);
  stage.Key(VK_RETURN);
  EXPECT_EQ(asked.All(), (std::vector<int>{0, 0, 0, 0}));
}

// Alt and a letter, as the system hands it to the window that has the focus.
void AltLetter(Stage& stage, wchar_t letter) {
  constexpr LPARAM kAltIsDown = LPARAM{1} << 29;
  ::PostMessageW(::GetFocus(), WM_SYSCHAR, letter, kAltIsDown);
  stage.Pump();
}

TEST(Keys, AccessKeysOfHiddenPagesAreDeaf) {
  Stage stage({"AB"});
  stage.Open();
  const std::pair<wchar_t, platform::OptionButton*> keys[] = {{L'r', &stage.form->obStartDodaj},
                                                              {L'w', &stage.form->obStartWzorzec},
                                                              {L'n', &stage.form->obStartNowa}};
  for (const auto& [letter, option] : keys) {
    AltLetter(stage, letter);
    EXPECT_TRUE(option->Value()) << static_cast<char>(letter);
  }
  EXPECT_EQ(stage.Page(), "Start");
  stage.Next();
  for (const wchar_t letter : {L'r', L'n'}) AltLetter(stage, letter);
  EXPECT_TRUE(stage.form->obStartNowa.Value());
  EXPECT_EQ(stage.Page(), "NowaBaza");
  AltLetter(stage, L'w');
  EXPECT_EQ(stage.Page(), "Start");
  EXPECT_TRUE(stage.form->obStartNowa.Value());
  EXPECT_TRUE(::IsWindowVisible(::GetFocus()));
}

TEST(Keys, ArrowsChooseAmongTheOptionsAlone) {
  Stage stage;
  stage.Open();
  std::string chosen;
  for (int i = 0; i < 5; ++i) {
    stage.Key(i == 4 ? VK_UP : VK_DOWN);
    const platform::OptionButton* options[] = {&stage.form->obStartNowa, &stage.form->obStartDodaj,
                                               &stage.form->obStartWzorzec, &stage.form->obStartSprawdz};
    for (int k = 0; k < 4; ++k) {
      if (options[k]->Value()) chosen += static_cast<char>('1' + k);
    }
  }
  EXPECT_EQ(chosen, "23414");
  stage.Next();
  app::MoveFocus(stage.FindCaption("Podręczna lista baz"));
  chosen.clear();
  for (int i = 0; i < 3; ++i) {
    stage.Key(VK_DOWN);
    chosen += stage.form->obListaBaz.Value() ? 'l' : 'i';
  }
  EXPECT_EQ(chosen, "ili");
}

TEST(Keys, SpaceChecksAnItemAndLettersFindOne) {
  Stage stage({"AB", "CD"});
  stage.bench.WriteStructure(u"ZZ.stb", "[HEADER]\nProgram=Żółty\nSymbol=ZZ\nVerMajor=1\nVerMinor=0\n");
  stage.Open();
  stage.Next();
  stage.form->txtNBazaNazwa.SetText(u"Firma");
  stage.form->txtNBazaFolder.SetText(stage.bench.folder.Path());
  stage.Next();
  stage.Key(VK_SPACE);
  EXPECT_TRUE(stage.form->lstProgramy.IsChecked(0));
  stage.Key(VK_SPACE);
  EXPECT_FALSE(stage.form->lstProgramy.IsChecked(0));
  ::SendMessageW(::GetFocus(), WM_CHAR, u'Ż', 1);
  stage.Key(VK_SPACE);
  EXPECT_EQ(Utf8(stage.form->lstProgramy.CheckedTexts()), "Żółty v.1.0");
}

TEST(Keys, F1OpensTheHelpOrSaysThatThereIsNone) {
  Stage stage;
  stage.state.helpFile = u"C:\\brak\\Zimbrat.chm";
  stage.Open();
  const Person person({Press(IDOK)});
  // The system makes the request of a key that was really pressed, and hands it to the focus.
  HELPINFO help = {};
  help.cbSize = sizeof help;
  help.iContextType = HELPINFO_WINDOW;
  ::SendMessageW(::GetFocus(), WM_HELP, 0, reinterpret_cast<LPARAM>(&help));
  EXPECT_THAT(person.Seen(),
              testing::ElementsAre("Zimbrat bazy: Brak pliku pomocy: C:\\brak\\Zimbrat.chm"));
}

// The marked part of a box.
std::pair<DWORD, DWORD> Marked(HWND box) {
  DWORD from = 0, to = 0;
  ::SendMessageW(box, EM_GETSEL, reinterpret_cast<WPARAM>(&from), reinterpret_cast<LPARAM>(&to));
  return {from, to};
}

TEST(Keys, BoxesToReadStartAtTheirBeginningAndCanBeMarkedWhole) {
  constexpr WPARAM kCtrlA = 1;
  VisitAllPages([](Stage& stage) {
    if (stage.Page() != "Generuj" && stage.Page() != "Koniec") return;
    const HWND box = stage.TheOne(WC_EDITW);
    EXPECT_EQ(Marked(box), std::pair(DWORD{0}, DWORD{0})) << stage.Page();
    const HWND former = ::GetFocus();
    app::MoveFocus(::GetDlgItem(stage.Top(), IDCANCEL));
    while (::GetFocus() != box) stage.Key(VK_TAB);
    EXPECT_EQ(Marked(box), std::pair(DWORD{0}, DWORD{0})) << stage.Page();
    ::SendMessageW(box, WM_CHAR, kCtrlA, 0);
    const auto length = static_cast<DWORD>(::GetWindowTextLengthW(box));
    EXPECT_EQ(Marked(box), std::pair(DWORD{0}, length)) << stage.Page();
    app::MoveFocus(former);
  });
}

// A control is heard by its own caption or by that of the label directly before it.
TEST(Names, EveryControlHasOneAndThePageHasItsDescription) {
  VisitAllPages([](Stage& stage) {
    SCOPED_TRACE(stage.Page());
    for (const HWND control : ReadingOrder(stage)) {
      if (IsOfClass(control, WC_BUTTONW)) {
        EXPECT_NE(TextOf(control), "");
        continue;
      }
      const HWND before = ::GetWindow(control, GW_HWNDPREV);
      ASSERT_TRUE(before != nullptr && IsOfClass(before, WC_STATICW)) << NamesOf({control}).front();
      EXPECT_NE(TextOf(before), "") << NamesOf({control}).front();
    }
    int seen = 0;
    for (HWND page = nullptr;
         (page = ::FindWindowExW(stage.Top(), page, L"ZimbratPlansza", nullptr)) != nullptr;) {
      EXPECT_EQ(::IsWindowVisible(page), ::IsWindowEnabled(page));
      if (!::IsWindowVisible(page)) continue;
      ++seen;
      EXPECT_EQ(TextOf(page), Utf8(stage.form->labTytul.Caption()));
    }
    EXPECT_EQ(seen, 1);
  });
}

}  // namespace
}  // namespace zimbrat::tests
