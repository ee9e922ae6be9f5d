// The password form on the screen, over its owner.
#pragma once

#include <windows.h>

#include "dialogs/dlgBazaHaslo.h"
#include "form_window.h"

namespace zimbrat::app {

class PasswordWindow : public FormWindow {
 public:
  PasswordWindow(dialogs::dlgBazaHaslo& form, platform::Host& host, HWND owner);

  // Until the form is hidden.
  void RunModally();

 private:
  SIZE LayOut(const Ruler& ruler) override;
  platform::Button* DefaultButton() override { return &password_.cmdOK; }
  void OnCancel() override { password_.cmdAnuluj.Click(); }
  void OnClose() override { password_.cmdAnuluj.Click(); }

  dialogs::dlgBazaHaslo& password_;
  View& firstName_;
  View& first_;
  View& secondName_;
  View& second_;
  View& ok_;
  View& cancel_;
};

}  // namespace zimbrat::app
