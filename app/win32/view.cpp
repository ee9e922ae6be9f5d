#include "view.h"

#include "platform/error_numbers.h"
#include "platform/run_time_error.h"
#include "platform/win32/wide_text.h"
#include "ruler.h"

namespace zimbrat::app {
namespace {

constexpr const wchar_t* kViewProperty = L"ZimbratView";
constexpr UINT_PTR kSubclass = 1;

void GiveFocusAway(HWND control) {
  if (const HWND focus = ::GetFocus(); focus == control || ::IsChild(control, focus)) {
    ::SendMessageW(::GetAncestor(control, GA_ROOT), WM_NEXTDLGCTL, 0, FALSE);
  }
}

}  // namespace

HWND MakeControl(HWND parent, const wchar_t* type, DWORD style, DWORD extendedStyle, int id) {
  const HWND control = ::CreateWindowExW(extendedStyle, type, L"", style | WS_CHILD, 0, 0, 0, 0, parent,
                                         reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                                         ::GetModuleHandleW(nullptr), nullptr);
  if (control == nullptr) throw platform::OwnError(platform::kErrOutOfMemory);
  return control;
}

void SetText(HWND window, std::u16string_view text) {
  const std::u16string lent(text);
  ::SetWindowTextW(window, platform::Lend(lent));
}

void MoveFocus(HWND control) {
  ::SendMessageW(::GetAncestor(control, GA_ROOT), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(control),
                 TRUE);
}

View::View(platform::Control& model, HWND window) : model_(model), window_(window) {
  Adopt(window);
  model_.SetListener([this](platform::Change change) { Follow(change); });
}

View::~View() {
  model_.SetListener(nullptr);
  ::RemoveWindowSubclass(Window(), Procedure, kSubclass);
  ::RemovePropW(Window(), kViewProperty);
}

void View::Adopt(HWND control) { ::SetPropW(control, kViewProperty, this); }

View* View::Of(HWND control) {
  return static_cast<View*>(::GetPropW(control, kViewProperty));
}

void View::Place(const RECT& area, const Ruler& ruler) {
  ::SendMessageW(Window(), WM_SETFONT, reinterpret_cast<WPARAM>(ruler.Font()), TRUE);
  ::MoveWindow(Window(), area.left, area.top, area.right - area.left, area.bottom - area.top, TRUE);
}

void View::ShowAll() {
  for (const platform::Change change :
       {platform::Change::Caption, platform::Change::Items, platform::Change::Text,
        platform::Change::Checked, platform::Change::Current, platform::Change::Progress,
        platform::Change::Enabled, platform::Change::Visible}) {
    Follow(change);
  }
}

void View::Follow(platform::Change change) {
  if (change == platform::Change::Enabled) {
    if (!model_.Enabled()) GiveFocusAway(Window());
    ::EnableWindow(Window(), model_.Enabled());
  }
  if (change == platform::Change::Visible) {
    if (!model_.Visible()) GiveFocusAway(Window());
    ::ShowWindow(Window(), model_.Visible() ? SW_SHOWNA : SW_HIDE);
  }
  if (change == platform::Change::Focus) return MoveFocus(Window());
  if (taking_ == 0) Show(change);
}

void View::Subclass() {
  ::SetWindowSubclass(Window(), Procedure, kSubclass, reinterpret_cast<DWORD_PTR>(this));
}

LRESULT View::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  return ::DefSubclassProc(Window(), message, wParam, lParam);
}

LRESULT CALLBACK View::Procedure(HWND, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                 DWORD_PTR view) {
  return reinterpret_cast<View*>(view)->OnMessage(message, wParam, lParam);
}

bool AnswerForControls(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& answer) {
  if (message == WM_COMMAND) {
    View* view = lParam == 0 ? nullptr : View::Of(reinterpret_cast<HWND>(lParam));
    if (view != nullptr) view->OnCommand(HIWORD(wParam));
    answer = 0;
    return view != nullptr;
  }
  if (message == WM_NOTIFY) {
    const NMHDR& notice = *reinterpret_cast<const NMHDR*>(lParam);
    View* view = View::Of(notice.hwndFrom);
    if (view != nullptr) answer = view->OnNotify(notice);
    return view != nullptr;
  }
  if (message != WM_CTLCOLORSTATIC && message != WM_CTLCOLORBTN) return false;
  const HDC dc = reinterpret_cast<HDC>(wParam);
  const View* view = View::Of(reinterpret_cast<HWND>(lParam));
  const bool isGrey = view != nullptr && !view->IsField() && !::IsWindowEnabled(view->Window());
  ::SetTextColor(dc, ::GetSysColor(isGrey ? COLOR_GRAYTEXT : COLOR_WINDOWTEXT));
  ::SetBkColor(dc, ::GetSysColor(COLOR_WINDOW));
  answer = reinterpret_cast<LRESULT>(::GetSysColorBrush(COLOR_WINDOW));
  return true;
}

}  // namespace zimbrat::app
