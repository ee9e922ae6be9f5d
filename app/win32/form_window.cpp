#include "form_window.h"

#include "platform/error_numbers.h"
#include "platform/run_time_error.h"
#include "platform/win32/wide_text.h"
#include "resources.h"
#include "suite/manners.h"

#include <algorithm>
#include <string>

namespace zimbrat::app {
namespace {

constexpr const wchar_t* kClass = L"ZimbratOkno";

// The system's dialogs under a name of our own, with our icon.
void RegisterFormClass() {
  WNDCLASSEXW type = {};
  type.cbSize = sizeof type;
  ::GetClassInfoExW(nullptr, L"#32770", &type);
  type.hInstance = ::GetModuleHandleW(nullptr);
  type.lpszClassName = kClass;
  type.style &= ~static_cast<UINT>(CS_GLOBALCLASS);
  type.hIcon = ::LoadIconW(type.hInstance, MAKEINTRESOURCEW(kIconId));
  type.hbrBackground = ::GetSysColorBrush(COLOR_WINDOW);
  ::RegisterClassExW(&type);  // fails when it is there already
}

// A dialog without controls, as the system wants it described: header, no menu, the class, no title.
std::vector<WORD> Template(DWORD style) {
  DLGTEMPLATE header = {};
  header.style = style;
  header.dwExtendedStyle = WS_EX_CONTROLPARENT;
  const auto* words = reinterpret_cast<const WORD*>(&header);
  std::vector<WORD> description(words, words + sizeof header / sizeof(WORD));
  description.push_back(0);
  for (const wchar_t* letter = kClass; *letter != 0; ++letter) description.push_back(*letter);
  description.insert(description.end(), {0, 0, 0});
  return description;
}

// From Windows 10 on dialogs would resize themselves when the resolution changes, and we do.
void KeepSizeOurs(HWND window) {
  using SetBehavior = BOOL(WINAPI*)(HWND, int, int);
  constexpr int kDisableAll = 7;
  const HMODULE library = ::GetModuleHandleW(L"user32.dll");
  const auto set = reinterpret_cast<SetBehavior>(
      reinterpret_cast<void*>(::GetProcAddress(library, "SetDialogDpiChangeBehavior")));
  if (set != nullptr) set(window, kDisableAll, kDisableAll);
}

RECT WorkAreaOf(HWND window) {
  MONITORINFO monitor = {};
  monitor.cbSize = sizeof monitor;
  ::GetMonitorInfoW(::MonitorFromWindow(window, MONITOR_DEFAULTTOPRIMARY), &monitor);
  return monitor.rcWork;
}

// The place, or the nearest one at which the window lies wholly on the screen.
POINT Within(const RECT& screen, POINT place, SIZE size) {
  return {std::max(screen.left, std::min(place.x, screen.right - size.cx)),
          std::max(screen.top, std::min(place.y, screen.bottom - size.cy))};
}

// 45 % of the free height above.
POINT MiddleOf(const RECT& area, SIZE size) {
  return {area.left + (area.right - area.left - size.cx) / 2,
          area.top + ::MulDiv(area.bottom - area.top - size.cy, 45, 100)};
}

void MoveTo(HWND window, POINT place) {
  ::SetWindowPos(window, nullptr, place.x, place.y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

// The program's other windows while one is modal.
class OthersDeaf {
 public:
  explicit OthersDeaf(HWND modal) : modal_(modal) {
    ::EnumThreadWindows(::GetCurrentThreadId(), Silence, reinterpret_cast<LPARAM>(this));
  }
  ~OthersDeaf() { Wake(); }
  OthersDeaf(const OthersDeaf&) = delete;
  OthersDeaf& operator=(const OthersDeaf&) = delete;

  void Wake() {
    for (const HWND window : deaf_) ::EnableWindow(window, TRUE);
    deaf_.clear();
  }

 private:
  static BOOL CALLBACK Silence(HWND window, LPARAM self) {
    OthersDeaf& others = *reinterpret_cast<OthersDeaf*>(self);
    if (window == others.modal_ || !::IsWindowVisible(window) || !::IsWindowEnabled(window)) return TRUE;
    others.deaf_.push_back(window);
    ::EnableWindow(window, FALSE);
    return TRUE;
  }

  HWND modal_;
  std::vector<HWND> deaf_;
};

// A key held too long, a click that was meant to be one: on the next page the button starts the run.
bool IsUnintended(const MSG& message) {
  constexpr LPARAM kWasDown = LPARAM{1} << 30;
  if (message.message == WM_KEYDOWN) return message.wParam == VK_RETURN && (message.lParam & kWasDown) != 0;
  if (message.message != WM_LBUTTONDBLCLK) return false;
  const LRESULT code = ::SendMessageW(message.hwnd, WM_GETDLGCODE, 0, 0);
  return (code & (DLGC_DEFPUSHBUTTON | DLGC_UNDEFPUSHBUTTON)) != 0;
}

}  // namespace

FormWindow::FormWindow(platform::Form& form, platform::Host& host, HWND owner, DWORD style)
    : form_(form), host_(host) {
  RegisterFormClass();
  const std::vector<WORD> description = Template(style);
  window_ = platform::WindowHandle(::CreateDialogIndirectParamW(
      ::GetModuleHandleW(nullptr), reinterpret_cast<const DLGTEMPLATE*>(description.data()), owner,
      Procedure, reinterpret_cast<LPARAM>(this)));
  if (!window_.IsOpen()) throw platform::OwnError(platform::kErrOutOfMemory);
  KeepSizeOurs(Window());
  SetText(Window(), form.Caption());
}

FormWindow::~FormWindow() {
  form_.SetListener(nullptr);
  // Windows that end take the focus along and would call handlers.
  ::SetWindowLongPtrW(Window(), DWLP_USER, 0);
  while (!views_.empty()) views_.pop_back();
}

void FormWindow::Settle() {
  form_.SetListener([this](platform::Change change) {
    if (change == platform::Change::Caption) SetText(Window(), form_.Caption());
    if (change == platform::Change::Height) SetDpi(ruler_->Dpi());
  });
  const HWND owner = ::GetWindow(Window(), GW_OWNER);
  SetDpi(DpiOf(owner == nullptr ? Window() : owner));
  RECT size = {}, area = {};
  ::GetWindowRect(Window(), &size);
  const RECT screen = WorkAreaOf(owner == nullptr ? ::GetForegroundWindow() : owner);
  if (owner == nullptr || !::GetWindowRect(owner, &area)) area = screen;
  const SIZE outer = {size.right - size.left, size.bottom - size.top};
  MoveTo(Window(), Within(screen, MiddleOf(area, outer), outer));
}

void FormWindow::SetDpi(unsigned dpi) {
  Resize(dpi);
  RECT place = {};
  ::GetWindowRect(Window(), &place);
  const SIZE size = {place.right - place.left, place.bottom - place.top};
  MoveTo(Window(), Within(WorkAreaOf(Window()), {place.left, place.top}, size));
}

void FormWindow::Resize(unsigned dpi, std::optional<POINT> place) {
  auto ruler = std::make_unique<Ruler>(dpi);
  const SIZE client = LayOut(*ruler);
  // The former font goes when nothing is drawn with it any more.
  ruler_ = std::move(ruler);
  const auto style = static_cast<DWORD>(::GetWindowLongPtrW(Window(), GWL_STYLE));
  const SIZE outer = ruler_->OuterSize(
      client, style, static_cast<DWORD>(::GetWindowLongPtrW(Window(), GWL_EXSTYLE)));
  const POINT corner = place.value_or(POINT{});
  ::SetWindowPos(Window(), nullptr, corner.x, corner.y, outer.cx, outer.cy,
                 (place ? 0u : SWP_NOMOVE) | SWP_NOZORDER | SWP_NOACTIVATE);
  TakeIcons(dpi);
  ::InvalidateRect(Window(), nullptr, TRUE);
}

// The drawing made for that size, where one of another size would be stretched.
void FormWindow::TakeIcons(unsigned dpi) {
  const std::pair<WPARAM, int> kinds[] = {{ICON_BIG, SM_CXICON}, {ICON_SMALL, SM_CXSMICON}};
  for (const auto& [kind, measure] : kinds) {
    const int size = SystemMeasure(measure, dpi);
    platform::IconHandle icon(static_cast<HICON>(::LoadImageW(
        ::GetModuleHandleW(nullptr), MAKEINTRESOURCEW(kIconId), IMAGE_ICON, size, size, 0)));
    ::SendMessageW(Window(), WM_SETICON, kind, reinterpret_cast<LPARAM>(icon.Get()));
    icons_[kind] = std::move(icon);
  }
}

View& FormWindow::Keep(ViewPtr view) {
  views_.push_back(std::move(view));
  return *views_.back();
}

void FormWindow::KeepName(HWND parent, std::u16string_view name) {
  // Not of the group before it, which the arrow keys go round.
  SetText(MakeControl(parent, WC_STATICW, SS_LEFT | SS_NOPREFIX | WS_GROUP), name);
}

void FormWindow::Place(View& view, const RECT& area, const Ruler& ruler) {
  view.Place({ruler.X(area.left), ruler.Y(area.top), ruler.X(area.right), ruler.Y(area.bottom)},
             ruler);
}

void FormWindow::ShowViews() {
  for (const ViewPtr& view : views_) view->ShowAll();
}

bool FormWindow::TakesKey(MSG& message) {
  if (IsUnintended(message)) return true;
  return ::IsDialogMessageW(Window(), &message) != FALSE;
}

void FormWindow::ShowDefaultButton() {
  const bool isThere = DefaultButton() != nullptr;
  const HWND focus = ::GetFocus();
  const LRESULT code = focus == nullptr ? 0 : ::SendMessageW(focus, WM_GETDLGCODE, 0, 0);
  if ((code & (DLGC_DEFPUSHBUTTON | DLGC_UNDEFPUSHBUTTON)) != 0) return;
  ::SendMessageW(Window(), DM_SETDEFID, isThere ? kDefaultId : 0, 0);
}

INT_PTR CALLBACK FormWindow::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_INITDIALOG) {
    ::SetWindowLongPtrW(window, DWLP_USER, lParam);
    return FALSE;
  }
  auto* self = reinterpret_cast<FormWindow*>(::GetWindowLongPtrW(window, DWLP_USER));
  if (self == nullptr) return FALSE;
  LRESULT answer = 0;
  bool isAnswered = false;
  suite::Report(self->host_, u"OknoZimbrata",
                [&] { isAnswered = self->Answer(message, wParam, lParam, answer); });
  if (!isAnswered) return FALSE;
  // These messages are answered by what is returned.
  if (message >= WM_CTLCOLORMSGBOX && message <= WM_CTLCOLORSTATIC) return answer;
  ::SetWindowLongPtrW(window, DWLP_MSGRESULT, answer);
  return TRUE;
}

bool FormWindow::Answer(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& answer) {
  if (OnMessage(message, wParam, lParam, answer)) return true;
  // Programs that click for people need no mouse.
  const bool isOrder = message == WM_COMMAND || message == WM_CLOSE;
  if (isOrder && !::IsWindowEnabled(Window())) return true;
  switch (message) {
    case WM_CTLCOLORDLG:
      answer = reinterpret_cast<LRESULT>(::GetSysColorBrush(COLOR_WINDOW));
      return true;
    case WM_COMMAND:
      OnCommand(wParam, lParam);
      OnHandled();
      return true;
    case WM_CLOSE:
      OnClose();
      OnHandled();
      return true;
    case WM_DPICHANGED: {
      const RECT& place = *reinterpret_cast<const RECT*>(lParam);
      // While it is drawn from one monitor to the other it must not jump back.
      Resize(HIWORD(wParam), POINT{place.left, place.top});
      return true;
    }
    case WM_SYSCOLORCHANGE:
      for (const ViewPtr& view : views_) ::SendMessageW(view->Window(), message, wParam, lParam);
      return false;
    case WM_SETTINGCHANGE:
      if (wParam == SPI_SETNONCLIENTMETRICS) SetDpi(ruler_->Dpi());
      return false;
    default:
      return AnswerForControls(message, wParam, lParam, answer);
  }
}

void FormWindow::OnCommand(WPARAM wParam, LPARAM lParam) {
  LRESULT answer = 0;
  const WORD id = LOWORD(wParam);
  if (id == IDCANCEL && HIWORD(wParam) == BN_CLICKED) return OnCancel();
  if (id == kDefaultId && HIWORD(wParam) == BN_CLICKED) {
    // Enter where no button takes it.
    if (platform::Button* button = DefaultButton()) button->Click();
    return;
  }
  AnswerForControls(WM_COMMAND, wParam, lParam, answer);
}

bool FormWindow::OnMessage(UINT, WPARAM, LPARAM, LRESULT&) { return false; }

void FormWindow::RunModal(platform::Control& first) {
  const HWND focus = ::GetFocus();
  OthersDeaf others(Window());
  ::ShowWindow(Window(), SW_SHOW);
  first.SetFocus();
  ShowDefaultButton();
  MSG message = {};
  while (form_.Visible()) {
    const BOOL got = ::GetMessageW(&message, nullptr, 0, 0);
    if (got <= 0) {
      ::PostQuitMessage(static_cast<int>(message.wParam));
      break;
    }
    if (TakesKey(message)) continue;
    ::TranslateMessage(&message);
    ::DispatchMessageW(&message);
  }
  // The others first: a hidden window would hand the focus to another program.
  others.Wake();
  ::ShowWindow(Window(), SW_HIDE);
  if (focus != nullptr) ::SetFocus(focus);
}

}  // namespace zimbrat::app
