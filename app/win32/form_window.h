// A form on the screen: a dialog of the system with the views of the form's controls. One class derived of
// it per form makes the views and says where they stand.
#pragma once

#include <windows.h>

#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/controls.h"
#include "platform/host.h"
#include "ruler.h"
#include "view.h"

namespace zimbrat::app {

class FormWindow {
 public:
  virtual ~FormWindow();
  FormWindow(const FormWindow&) = delete;
  FormWindow& operator=(const FormWindow&) = delete;

  HWND Window() const { return window_.Get(); }
  // Keys that move the focus or press buttons; true when the message was one.
  bool TakesKey(MSG& message);
  // Lays the window out anew for that resolution, and keeps it on the screen.
  void SetDpi(unsigned dpi);

 protected:
  // `owner` may be null. The window is not shown yet. Errors in handlers go to `host`. Error 7 when the system
  // makes no window.
  FormWindow(platform::Form& form, platform::Host& host, HWND owner, DWORD style);

  // The end of each constructor: everything in its place, the window in the middle of its owner or of
  // the screen that has the focus.
  void Settle();

  // Places the views; returns the size of the client area.
  virtual SIZE LayOut(const Ruler& ruler) = 0;
  // The button that Enter presses when no button has the focus, or null.
  virtual platform::Button* DefaultButton() = 0;
  virtual void OnCancel() = 0;
  virtual void OnClose() = 0;
  virtual bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& answer);
  // After a button or the close box: what the window shows of the form besides the views.
  virtual void OnHandled() {}

  // Keeps the view. It stands behind all earlier ones in the order of the Tab key.
  View& Keep(ViewPtr view);
  // A name, for readers of the screen, of the control that follows; not seen.
  void KeepName(HWND parent, std::u16string_view name);
  // `area` in dialog units of the parent.
  void Place(View& view, const RECT& area, const Ruler& ruler);
  // Draws all views anew as their models are.
  void ShowViews();
  // Shows the window with the focus on that control, until its form is hidden; the program's other windows are
  // deaf meanwhile.
  void RunModal(platform::Control& first);
  // Draws the default button anew after a change.
  void ShowDefaultButton();

  static constexpr int kDefaultId = IDOK;

 private:
  // Stays where it is without a `place`. Both in one step: at its former size the window might belong to
  // the other monitor.
  void Resize(unsigned dpi, std::optional<POINT> place = std::nullopt);
  void TakeIcons(unsigned dpi);
  static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  bool Answer(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& answer);
  void OnCommand(WPARAM wParam, LPARAM lParam);

  platform::Form& form_;
  platform::Host& host_;
  platform::WindowHandle window_;
  std::unique_ptr<Ruler> ruler_;
  std::vector<ViewPtr> views_;
  platform::IconHandle icons_[2];
};

}  // namespace zimbrat::app
