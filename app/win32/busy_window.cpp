#include "busy_window.h"

namespace zimbrat::app {
namespace {

constexpr const wchar_t* kShutdownReason =
    L"Trwa praca na bazie danych. Zaczekaj, aż się skończy; baza pozostanie cała.";

struct Range {
  UINT first, last;
};

constexpr UINT kLastOfPointers = 0x0257;  // fingers and pens, from Windows 8 on

constexpr Range kInput[] = {{WM_KEYFIRST, WM_KEYLAST},
                            {WM_MOUSEFIRST, WM_MOUSELAST},
                            {WM_NCMOUSEMOVE, WM_NCXBUTTONDBLCLK},
                            {WM_TOUCH, kLastOfPointers}};

bool IsInput(UINT message) {
  for (const Range& range : kInput) {
    if (message >= range.first && message <= range.last) return true;
  }
  return false;
}

// Moving and menus would hold the thread until the mouse is let go.
bool HoldsThread(WPARAM command) {
  switch (command & 0xFFF0u) {
    case SC_MOVE:
    case SC_SIZE:
    case SC_KEYMENU:
    case SC_MOUSEMENU:
      return true;
    default:
      return false;
  }
}

void SetCloseBox(HWND window, bool isOpen) {
  ::EnableMenuItem(::GetSystemMenu(window, FALSE), SC_CLOSE,
                   static_cast<UINT>(MF_BYCOMMAND | (isOpen ? MF_ENABLED : MF_GRAYED)));
}

}  // namespace

void BusyWindow::Begin(HWND window) {
  if (depth_++ > 0) return;
  SetCloseBox(window, false);
  ::ShutdownBlockReasonCreate(window, kShutdownReason);
  ::SetCursor(::LoadCursorW(nullptr, IDC_WAIT));
}

void BusyWindow::End(HWND window) {
  if (depth_ == 0 || --depth_ > 0) return;
  DropInput();
  ShowProgress(window, 0);
  ::ShutdownBlockReasonDestroy(window);
  SetCloseBox(window, true);
  ::SetCursor(::LoadCursorW(nullptr, IDC_ARROW));
}

void BusyWindow::DropInput() {
  MSG message = {};
  for (const Range& range : kInput) {
    while (::PeekMessageW(&message, nullptr, range.first, range.last, PM_REMOVE)) {
    }
  }
}

void BusyWindow::Pump() {
  // A window that is never done painting must not hold the work.
  constexpr int kMost = 1000;
  MSG message = {};
  for (int i = 0; i < kMost && ::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE); ++i) {
    if (message.message == WM_QUIT) return ::PostQuitMessage(static_cast<int>(message.wParam));
    if (!IsInput(message.message)) ::DispatchMessageW(&message);
  }
}

void BusyWindow::ShowProgress(HWND window, double share) {
  constexpr int kWhole = 1000;
  const auto done = static_cast<ULONGLONG>(share * kWhole);
  // The taskbar belongs to another process: it is told what it does not show yet.
  if (done == shown_) return;
  shown_ = done;
  if (!taskbar_.IsOpen()) {
    ::CoCreateInstance(CLSID_TaskbarList, nullptr, CLSCTX_INPROC_SERVER, IID_ITaskbarList3,
                       reinterpret_cast<void**>(taskbar_.Receive()));
    if (taskbar_.IsOpen()) taskbar_.Get()->HrInit();
  }
  if (!taskbar_.IsOpen()) return;
  taskbar_.Get()->SetProgressState(window, done > 0 ? TBPF_NORMAL : TBPF_NOPROGRESS);
  if (done > 0) taskbar_.Get()->SetProgressValue(window, done, kWhole);
}

bool BusyWindow::Answer(UINT message, WPARAM wParam, LRESULT& answer) {
  if (!IsBusy()) return false;
  switch (message) {
    case WM_SETCURSOR:
      ::SetCursor(::LoadCursorW(nullptr, IDC_WAIT));
      answer = TRUE;
      return true;
    case WM_SYSCOMMAND:
      answer = 0;
      return HoldsThread(wParam);
    case WM_QUERYENDSESSION:
      answer = FALSE;
      return true;
    case WM_ENDSESSION:
      mustEnd_ = mustEnd_ || wParam != 0;
      answer = 0;
      return true;
    default:
      return false;
  }
}

}  // namespace zimbrat::app
