// The form for run-time errors on the screen.
#pragma once

#include <windows.h>

#include "errors/dlgError.h"
#include "form_window.h"

namespace zimbrat::app {

class ErrorWindow : public FormWindow {
 public:
  // `owner` may be null.
  ErrorWindow(errors::dlgError& form, platform::Host& host, HWND owner);

  // Until the form is unloaded.
  void RunModally();

 private:
  SIZE LayOut(const Ruler& ruler) override;
  platform::Button* DefaultButton() override { return &error_.cmdOK; }
  void OnCancel() override { error_.Unload(); }
  void OnClose() override { error_.Unload(); }
  bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& answer) override;

  errors::dlgError& error_;
  View& explanation_;
  View& ok_;
  View& details_;
  View& send_;
  View& abort_;
  View& save_;
  View& numberName_;
  View& number_;
  View& sourceName_;
  View& source_;
  View& description_;
};

}  // namespace zimbrat::app
