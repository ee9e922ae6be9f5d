#include "error_window.h"

#include <algorithm>

namespace zimbrat::app {

ErrorWindow::ErrorWindow(errors::dlgError& form, platform::Host& host, HWND owner)
    : FormWindow(form, host, owner, WS_POPUP | WS_CAPTION | WS_SYSMENU),
      error_(form),
      explanation_((KeepName(Window(), u"Wyjaśnienie"), Keep(MakeReadingBox(Window(), form.txtErrorPolski)))),
      ok_(Keep(MakeButton(Window(), form.cmdOK, kDefaultId))),
      details_(Keep(MakeButton(Window(), form.cmdSzczegol, 0))),
      send_(Keep(MakeButton(Window(), form.cmdWyslij, 0))),
      abort_(Keep(MakeButton(Window(), form.cmdPrzerwij, 0))),
      save_(Keep(MakeCheckBox(Window(), form.cbrejestr))),
      numberName_(Keep(MakeLabel(Window(), form.labErrorNumber))),
      number_(Keep(MakeReadingBox(Window(), form.txtErrorNumber))),
      sourceName_(Keep(MakeLabel(Window(), form.labErrorSource))),
      source_(Keep(MakeReadingBox(Window(), form.txtErrorSource))),
      description_((KeepName(Window(), u"Opis"), Keep(MakeReadingBox(Window(), form.txtErrorOpis)))) {
  Settle();
}

void ErrorWindow::RunModally() {
  ::MessageBeep(MB_ICONERROR);
  RunModal(error_.cmdOK);
  // The program is told to end meanwhile.
  if (error_.Visible()) error_.Unload();
}

bool ErrorWindow::OnMessage(UINT message, WPARAM, LPARAM, LRESULT& answer) {
  if (message != WM_SETCURSOR || !error_.IsSending()) return false;
  ::SetCursor(::LoadCursorW(nullptr, IDC_WAIT));
  answer = TRUE;
  return true;
}

SIZE ErrorWindow::LayOut(const Ruler& ruler) {
  constexpr int kWidth = 300, kMargin = 7, kGap = 4, kField = 14, kButton = 60, kName = 30, kNumber = 44;
  constexpr int kRight = kWidth - kMargin, kColumn = kRight - kButton;
  View* const buttons[] = {&ok_, &details_, &send_, &abort_};
  int top = kMargin;
  for (View* button : buttons) {
    Place(*button, {kColumn, top, kRight, top + kField}, ruler);
    top += kField + kGap;
  }
  Place(explanation_, {kMargin, kMargin, kColumn - kMargin, top - kGap}, ruler);
  constexpr int kCheck = 12;
  Place(save_, {kMargin, top + 2, kRight, top + 2 + kCheck}, ruler);
  const int closed = top + 2 + kCheck + kMargin;
  constexpr int kNumberRight = kMargin + kName + kNumber, kSource = kNumberRight + kMargin;
  Place(numberName_, {kMargin, closed + 3, kMargin + kName, closed + kField}, ruler);
  Place(number_, {kMargin + kName, closed, kNumberRight, closed + kField}, ruler);
  Place(sourceName_, {kSource, closed + 3, kSource + kName, closed + kField}, ruler);
  Place(source_, {kSource + kName, closed, kRight, closed + kField}, ruler);
  SIZE client = {ruler.X(kWidth), ruler.Y(closed)};
  if (error_.Height() != 0) {
    const SIZE frame = ruler.OuterSize({}, static_cast<DWORD>(::GetWindowLongPtrW(Window(), GWL_STYLE)),
                                       static_cast<DWORD>(::GetWindowLongPtrW(Window(), GWL_EXSTYLE)));
    // Where the system's texts are very large, the description needs more.
    const int least = ruler.Y(closed + 2 * (kField + kGap) + kMargin);
    client.cy = std::max<LONG>(ruler.Twips(error_.Height()) - frame.cy, least);
  }
  description_.Place({ruler.X(kMargin), ruler.Y(closed + kField + kGap), ruler.X(kRight),
                      client.cy - ruler.Y(kMargin)},
                     ruler);
  return client;
}

}  // namespace zimbrat::app
