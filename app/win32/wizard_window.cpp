// The window's life: messages, work that holds the thread, closing.
#include "wizard_window.h"

#include "picture.h"
#include "platform/error_numbers.h"
#include "platform/run_time_error.h"
#include "platform/win32/wide_text.h"

namespace zimbrat::app {
namespace {

// Whether the notification tells that its control shows something else than before.
bool TellsChange(UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_NOTIFY) {
    return reinterpret_cast<const NMHDR*>(lParam)->code == static_cast<UINT>(LVN_ITEMCHANGED);
  }
  const WORD code = HIWORD(wParam);
  static_assert(LBN_SELCHANGE == CBN_SELCHANGE);
  return code == BN_CLICKED || code == LBN_SELCHANGE || code == EN_CHANGE;
}

constexpr UINT kCheckFocus = WM_APP;

// Of the title bar's menu: the system uses the low four bits, and what is above 0xF000.
constexpr UINT_PTR kInformation = 0x0010;
constexpr WPARAM kCommandBits = 0xFFF0;

constexpr DWORD kStyle = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX | WS_CLIPCHILDREN;

}  // namespace

WizardWindow::WizardWindow(mdiMenu& form, platform::Host& host)
    : FormWindow(form, host, nullptr, kStyle),
      wizard_(form),
      drop_([this](const std::u16string& path) { return !IsDeaf() && wizard_.TakesDrop(path); },
            [&form](const std::u16string& path) { form.Drop(path); }) {
  MakeFrame();
  AddToMenu();
  Settle();
  OnHandled();
  ::RegisterDragDrop(Window(), &drop_);
}

WizardWindow::~WizardWindow() { ::RevokeDragDrop(Window()); }

void WizardWindow::AddToMenu() {
  const HMENU menu = ::GetSystemMenu(Window(), FALSE);
  const std::u16string caption(kInformationCaption);
  ::AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
  ::AppendMenuW(menu, MF_STRING, kInformation, platform::Lend(caption));
}

void WizardWindow::Show(int showCommand) {
  wizard_.SetVisible(true);
  ::ShowWindow(Window(), showCommand);
  ::UpdateWindow(Window());
  wizard_.obStartNowa.SetFocus();
}

void WizardWindow::RunUntilClosed() {
  MSG message = {};
  while (!wizard_.IsUnloaded() && ::GetMessageW(&message, nullptr, 0, 0) > 0) {
    if (TakesKey(message)) continue;
    ::TranslateMessage(&message);
    ::DispatchMessageW(&message);
  }
  ::ShowWindow(Window(), SW_HIDE);
}

void WizardWindow::SetBusy(bool busy) {
  if (busy) {
    busy_.Begin(Window());
  } else {
    busy_.End(Window());
  }
}

// While the thread is held, or a window over this one asks something. Programs that click for people
// need no mouse, so that dropping input is not enough.
bool WizardWindow::IsDeaf() const { return busy_.IsBusy() || !::IsWindowEnabled(Window()); }

void WizardWindow::Pulse() {
  if (!busy_.IsBusy()) return;
  wizard_.Pulse();
  busy_.ShowProgress(Window(), wizard_.progBar.Fraction());
  busy_.Pump();
  if (busy_.MustEnd()) throw platform::OwnError(platform::kErrUserInterrupt);
}

platform::Button* WizardWindow::DefaultButton() {
  if (!wizard_.cmdDalej.Visible()) return &wizard_.cmdAnuluj;
  return wizard_.cmdDalej.Enabled() ? &wizard_.cmdDalej : nullptr;
}

void WizardWindow::OnCancel() { wizard_.cmdAnuluj.Click(); }

void WizardWindow::OnClose() { wizard_.Unload(); }

bool WizardWindow::OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& answer) {
  if (busy_.Answer(message, wParam, answer)) return true;
  answer = 0;
  switch (message) {
    case WM_COMMAND:
    case WM_NOTIFY:
      hasMissed_ = hasMissed_ || (IsDeaf() && TellsChange(message, wParam, lParam));
      return IsDeaf();
    case WM_CLOSE:
      return !busy_.IsBusy() && IsDeaf();
    case WM_ACTIVATE:
      // After the system has given the focus back, which may have been to a page that is gone by now.
      if (LOWORD(wParam) != WA_INACTIVE) ::PostMessageW(Window(), kCheckFocus, 0, 0);
      return false;
    case kCheckFocus:
      if (!busy_.IsBusy() && !::IsIconic(Window()) && !::IsWindowVisible(::GetFocus())) {
        wizard_.FocusPage();
      }
      return true;
    case WM_PAINT:
      Paint();
      return true;
    case WM_SYSCOMMAND:
      if ((wParam & kCommandBits) != kInformation) return false;
      if (!IsDeaf()) wizard_.ShowInformation();
      return true;
    case WM_HELP:
      wizard_.ShowHelp();
      return true;
    case WM_QUERYENDSESSION:
      answer = TRUE;
      return true;
    default:
      return false;
  }
}

void WizardWindow::Paint() {
  PAINTSTRUCT paint = {};
  const HDC dc = ::BeginPaint(Window(), &paint);
  RECT client = {};
  ::GetClientRect(Window(), &client);
  const RECT strip = {0, stripTop_, client.right, client.bottom};
  ::FillRect(dc, &strip, ::GetSysColorBrush(COLOR_3DFACE));
  const RECT line = {0, stripTop_, client.right, stripTop_ + 1};
  ::FillRect(dc, &line, ::GetSysColorBrush(COLOR_3DLIGHT));
  if (::RectVisible(dc, &picture_)) DrawPicture(dc, picture_, dpi_);
  ::EndPaint(Window(), &paint);
}

void WizardWindow::OnHandled() {
  if (wizard_.IsUnloaded()) return ::PostQuitMessage(0);
  if (hasMissed_ && !IsDeaf()) {
    hasMissed_ = false;  // before the controls answer that they have changed
    ShowViews();
  }
  ShowDefaultButton();
}

}  // namespace zimbrat::app
