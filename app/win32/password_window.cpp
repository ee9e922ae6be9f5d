#include "password_window.h"

namespace zimbrat::app {

PasswordWindow::PasswordWindow(dialogs::dlgBazaHaslo& form, platform::Host& host, HWND owner)
    : FormWindow(form, host, owner, WS_POPUP | WS_CAPTION | WS_SYSMENU),
      password_(form),
      firstName_(Keep(MakeLabel(Window(), form.labOpis))),
      first_(Keep(MakeTextBox(Window(), form.txtOpis))),
      secondName_(Keep(MakeLabel(Window(), form.labHaslo))),
      second_(Keep(MakeTextBox(Window(), form.txtHaslo))),
      ok_(Keep(MakeButton(Window(), form.cmdOK, kDefaultId))),
      cancel_(Keep(MakeButton(Window(), form.cmdAnuluj, IDCANCEL))) {
  Settle();
}

void PasswordWindow::RunModally() {
  platform::TextBox& first = password_.txtOpis.Enabled() ? password_.txtOpis : password_.txtHaslo;
  RunModal(first);
  // The program is told to end meanwhile.
  if (password_.Visible()) password_.cmdAnuluj.Click();
}

SIZE PasswordWindow::LayOut(const Ruler& ruler) {
  constexpr int kWidth = 230, kMargin = 7, kName = 42, kField = 14, kButton = 56;
  constexpr int kFieldLeft = kMargin + kName, kRight = kWidth - kMargin;
  constexpr int kFirst = 9, kSecond = 30, kButtons = 54, kHeight = kButtons + kField + kMargin;
  const auto row = [&](View& name, View& field, int top) {
    Place(name, {kMargin, top + 3, kFieldLeft - 2, top + kField}, ruler);
    Place(field, {kFieldLeft, top, kRight, top + kField}, ruler);
  };
  row(firstName_, first_, kFirst);
  row(secondName_, second_, kSecond);
  Place(cancel_, {kRight - kButton, kButtons, kRight, kButtons + kField}, ruler);
  constexpr int kOkRight = kRight - kButton - 4;
  Place(ok_, {kOkRight - kButton, kButtons, kOkRight, kButtons + kField}, ruler);
  return {ruler.X(kWidth), ruler.Y(kHeight)};
}

}  // namespace zimbrat::app
