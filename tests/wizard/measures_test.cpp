// What can be measured of the window: texts in their controls, controls on the window, the same at four
// resolutions.
#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <map>

#include "app/page_texts.h"
#include "app/win32/error_window.h"
#include "app/win32/password_window.h"
#include "platform/win32/wide_text.h"
#include "tests/wizard/person.h"
#include "tests/wizard/tour.h"

namespace zimbrat::tests {
namespace {

constexpr unsigned kResolutions[] = {96, 120, 144, 192};

int Scaled(int pixels, unsigned dpi) { return ::MulDiv(pixels, static_cast<int>(dpi), 96); }
int Width(const RECT& area) { return area.right - area.left; }
int Height(const RECT& area) { return area.bottom - area.top; }

// What the text takes, in the control's font, when it may be `width` wide.
SIZE Extent(HWND control, std::u16string_view text, int width, UINT flags) {
  const HDC dc = ::GetDC(control);
  const HGDIOBJ former =
      ::SelectObject(dc, reinterpret_cast<HFONT>(::SendMessageW(control, WM_GETFONT, 0, 0)));
  RECT area = {0, 0, width, 0};
  const std::u16string lent(text);
  ::DrawTextW(dc, platform::Lend(lent), static_cast<int>(lent.size()), &area, DT_CALCRECT | flags);
  ::SelectObject(dc, former);
  ::ReleaseDC(control, dc);
  return {area.right, area.bottom};
}

std::u16string WideTextOf(HWND control) { return platform::Utf16FromUtf8(TextOf(control)); }

void ExpectFits(HWND label, std::u16string_view text) {
  RECT client = {};
  ::GetClientRect(label, &client);
  const SIZE size = Extent(label, text, client.right, DT_WORDBREAK | DT_NOPREFIX);
  EXPECT_LE(size.cx, client.right) << Utf8(text);
  EXPECT_LE(size.cy, client.bottom) << Utf8(text);
}

// The caption, beside the mark of options and boxes, within the frame of buttons.
void ExpectCaptionFits(HWND button, unsigned dpi) {
  constexpr int kMark = 20, kFrame = 8;
  RECT client = {};
  ::GetClientRect(button, &client);
  const SIZE size = Extent(button, WideTextOf(button), client.right, DT_SINGLELINE);
  const LONG_PTR kind = ButtonKind(button);
  const bool isPush = kind == BS_PUSHBUTTON || kind == BS_DEFPUSHBUTTON;
  EXPECT_LE(size.cx + Scaled(isPush ? kFrame : kMark, dpi), client.right) << TextOf(button);
  EXPECT_LE(size.cy, client.bottom) << TextOf(button);
  EXPECT_GE(client.bottom, Scaled(isPush ? 21 : 16, dpi)) << TextOf(button);
}

void ExpectItemsFit(HWND combo, unsigned dpi) {
  constexpr int kArrow = 23;
  RECT client = {};
  ::GetClientRect(combo, &client);
  for (LRESULT i = 0, n = ::SendMessageW(combo, CB_GETCOUNT, 0, 0); i < n; ++i) {
    wchar_t text[300] = {};
    ::SendMessageW(combo, CB_GETLBTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text));
    const auto view = platform::ViewWide(text);
    EXPECT_LE(Extent(combo, view, 0, DT_SINGLELINE).cx + Scaled(kArrow, dpi), client.right) << Utf8(view);
  }
}

void ExpectTextsFit(const Stage& stage, unsigned dpi) {
  for (const HWND control : ControlsOf(stage)) {
    if (IsOfClass(control, WC_STATICW)) ExpectFits(control, WideTextOf(control));
    if (IsOfClass(control, WC_BUTTONW)) ExpectCaptionFits(control, dpi);
    if (IsOfClass(control, WC_COMBOBOXW)) ExpectItemsFit(control, dpi);
    if (!IsOfClass(control, WC_EDITW)) continue;
    RECT client = {};
    ::GetClientRect(control, &client);
    EXPECT_GE(client.bottom, Extent(control, u"Ąg", 0, DT_SINGLELINE).cy) << TextOf(control);
  }
}

void ExpectApart(const Stage& stage) {
  RECT client = {};
  ::GetClientRect(stage.Top(), &client);
  const std::vector<HWND> controls = ControlsOf(stage);
  for (const HWND one : controls) {
    const RECT place = PlaceOf(stage, one);
    RECT common = {};
    EXPECT_TRUE(place.left >= 0 && place.top >= 0 && place.right <= client.right &&
                place.bottom <= client.bottom)
        << "outside: " << TextOf(one);
    // The arrows of a number stand in its field.
    if (IsOfClass(one, UPDOWN_CLASSW)) continue;
    for (const HWND other : controls) {
      if (other == one || IsOfClass(other, UPDOWN_CLASSW)) continue;
      const RECT otherPlace = PlaceOf(stage, other);
      EXPECT_FALSE(::IntersectRect(&common, &place, &otherPlace))
          << TextOf(one) << " lies over " << TextOf(other);
    }
  }
}

void ExpectSizeOfWindow(const Stage& stage) {
  RECT outer = {};
  ::GetWindowRect(stage.Top(), &outer);
  EXPECT_LE(Width(outer), 800);
  EXPECT_LE(Height(outer), 600 - 48);
  EXPECT_LE(Width(outer) * 3, Height(outer) * 5);
  EXPECT_GE(Width(outer) * 5, Height(outer) * 3);
}

TEST(Measures, EveryTextFitsAndNothingLiesOverAnotherAtAnyResolution) {
  VisitAllPages([](Stage& stage) {
    for (const unsigned dpi : kResolutions) {
      SCOPED_TRACE(stage.Page() + " at " + std::to_string(dpi));
      stage.window->SetDpi(dpi);
      ExpectTextsFit(stage, dpi);
      ExpectApart(stage);
    }
    stage.window->SetDpi(96);
    ExpectSizeOfWindow(stage);
    EXPECT_EQ(TextOf(stage.Top()), Utf8(stage.form->Caption()));
  });
}

TEST(Measures, ButtonsStandAtTheSamePlaceOnEveryPage) {
  std::map<int, RECT> places;
  VisitAllPages([&](Stage& stage) {
    for (const int id : {100, IDOK, IDCANCEL}) {
      const RECT place = PlaceOf(stage, ::GetDlgItem(stage.Top(), id));
      const RECT& first = places.emplace(id, place).first->second;
      EXPECT_TRUE(::EqualRect(&first, &place)) << stage.Page() << " " << id;
    }
  });
  EXPECT_LE(places[100].right, places[IDOK].left);
  EXPECT_LT(places[IDOK].right, places[IDCANCEL].left);
}

// Texts that come and go: each must find room in the control that shows it.
TEST(Measures, DescriptionsAndNotesFit) {
  using suite::Task;
  constexpr std::u16string_view kPages[] = {u"Start",     u"NowaBaza", u"NazwaBazy", u"ProgBazy",
                                            u"Struktura", u"Okresy",   u"Generuj",   u"Koniec"};
  Stage stage;
  stage.Open();
  for (const unsigned dpi : kResolutions) {
    SCOPED_TRACE(dpi);
    stage.window->SetDpi(dpi);
    const HWND title = ControlsOf(stage).front();
    ASSERT_EQ(TextOf(title), Utf8(stage.form->labTytul.Caption()));
    for (const Task task : {Task::Nowa, Task::Dodaj, Task::Wzorzec, Task::Sprawdz}) {
      for (const std::u16string_view page : kPages) {
        ExpectFits(title, app::DescriptionOnNext(page, task));
        ExpectFits(title, app::DescriptionOnBack(page, task));
      }
    }
  }
  constexpr std::u16string_view kRefusal = u"Zaczekaj na koniec pracy, potem zamkniesz okno: 59:59";
  int notes = 0;
  VisitAllPages([&](Stage& other) {
    for (platform::Label* label : {&other.form->labBadanie, &other.form->labPostep}) {
      label->SetCaption(kRefusal);
      const HWND shown = other.FindCaption(Utf8(kRefusal));
      for (const unsigned dpi : kResolutions) {
        if (shown == nullptr) break;
        other.window->SetDpi(dpi);
        ExpectFits(shown, kRefusal);
        ++notes;
      }
      label->SetCaption(u"");
    }
  });
  EXPECT_EQ(notes, 8) << "of two pages at four resolutions";
}

// Of a window beside the wizard: its texts have room, and it fits on the smallest screen.
void ExpectRoom(app::FormWindow& window) {
  for (const unsigned dpi : kResolutions) {
    SCOPED_TRACE(dpi);
    window.SetDpi(dpi);
    RECT outer = {}, client = {};
    ::GetWindowRect(window.Window(), &outer);
    ::GetClientRect(window.Window(), &client);
    EXPECT_LE(Width(outer), Scaled(800, dpi));
    for (HWND child = ::GetWindow(window.Window(), GW_CHILD); child != nullptr;
         child = ::GetWindow(child, GW_HWNDNEXT)) {
      RECT place = {};
      ::GetWindowRect(child, &place);
      ::MapWindowPoints(nullptr, window.Window(), reinterpret_cast<POINT*>(&place), 2);
      EXPECT_TRUE(place.right <= client.right && place.bottom <= client.bottom) << TextOf(child);
      // Names for readers of the screen have no size.
      if (Width(place) == 0) continue;
      if (IsOfClass(child, WC_STATICW)) ExpectFits(child, WideTextOf(child));
      if (IsOfClass(child, WC_BUTTONW)) ExpectCaptionFits(child, dpi);
      if (!IsOfClass(child, WC_EDITW)) continue;
      EXPECT_GE(Height(place), Extent(child, u"Ąg", 0, DT_SINGLELINE).cy) << TextOf(child);
    }
  }
}

TEST(Measures, TheErrorWindowHasRoomForItsTexts) {
  Stage stage;
  stage.Open();
  errors::dlgError form(stage.state, stage.outside);
  form.txtErrorNumber.SetText(u"-2147467259");
  app::ErrorWindow window(form, stage.windows, stage.Top());
  form.cmdSzczegol.Click();
  ExpectRoom(window);
}

TEST(Measures, ThePasswordWindowHasRoomForItsTexts) {
  Stage stage;
  stage.Open();
  for (const bool isPrompt : {true, false}) {
    dialogs::dlgBazaHaslo form(stage.windows);
    form.NoweHaslo(isPrompt);
    app::PasswordWindow window(form, stage.windows, stage.Top());
    ExpectRoom(window);
  }
}

// Another monitor: the window stays where the system puts it and grows about there.
TEST(Measures, AnotherResolutionOfTheMonitorLaysTheWindowOutAnew) {
  Stage stage;
  stage.Open();
  RECT before = {}, after = {};
  ::GetWindowRect(stage.Top(), &before);
  const RECT proposed = {20, 30, 700, 700};
  ::SendMessageW(stage.Top(), WM_DPICHANGED, MAKEWPARAM(192, 192), reinterpret_cast<LPARAM>(&proposed));
  ::GetWindowRect(stage.Top(), &after);
  EXPECT_EQ(after.left, 20);
  EXPECT_EQ(after.top, 30);
  EXPECT_GT(Width(after) * 10, Width(before) * 17);
  EXPECT_GT(Height(after) * 10, Height(before) * 17);
}

}  // namespace
}  // namespace zimbrat::tests
