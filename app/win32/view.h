// One control of a form on the screen: draws its model and hands in what the user does. It holds no rule
// and no text of its own.
//
// A view tells its model through a Taking, so that the model's answer does not come back to the control
// that the user is using.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include <memory>
#include <string>
#include <string_view>

#include "platform/controls.h"
#include "platform/win32/handles.h"

namespace zimbrat::app {

class Ruler;

class View {
 public:
  virtual ~View();
  View(const View&) = delete;
  View& operator=(const View&) = delete;

  HWND Window() const { return window_.Get(); }
  // In pixels of the parent.
  virtual void Place(const RECT& area, const Ruler& ruler);
  // Notifications of the control.
  virtual void OnCommand(WORD) {}
  virtual LRESULT OnNotify(const NMHDR&) { return 0; }
  // Whether it is drawn as a field to write in, though it may be read only.
  virtual bool IsField() const { return false; }

  // Draws the whole model, whatever the control shows.
  void ShowAll();

  // The view whose control that is, or null.
  static View* Of(HWND control);

 protected:
  View(platform::Control& model, HWND window);

  // What the model has become. Enabled, visible and focus are done already. Each constructor ends with
  // ShowAll.
  virtual void Show(platform::Change change) = 0;
  // A further control of the same view.
  void Adopt(HWND control);

  // While the user's change goes into the model.
  class Taking {
   public:
    explicit Taking(View& view) : view_(view) { ++view_.taking_; }
    ~Taking() { --view_.taking_; }
    Taking(const Taking&) = delete;
    Taking& operator=(const Taking&) = delete;

   private:
    View& view_;
  };

  // Another procedure before the control's own.
  void Subclass();
  virtual LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam);

 private:
  void Follow(platform::Change change);
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                    UINT_PTR id, DWORD_PTR view);

  platform::Control& model_;
  platform::WindowHandle window_;
  int taking_ = 0;
};

// A control of the system's class on `parent`; shown as its view says. Error 7 when the system makes none.
HWND MakeControl(HWND parent, const wchar_t* type, DWORD style, DWORD extendedStyle = 0, int id = 0);
void SetText(HWND window, std::u16string_view text);
// Moves the focus as the keyboard would, so that the default button follows.
void MoveFocus(HWND control);

using ViewPtr = std::unique_ptr<View>;

// Text.
ViewPtr MakeLabel(HWND parent, platform::Label& model);
ViewPtr MakeTextBox(HWND parent, platform::TextBox& model);
// Of several lines, to be read and copied.
ViewPtr MakeReadingBox(HWND parent, platform::TextBox& model);
ViewPtr MakeTextWithButton(HWND parent, platform::OrvClick& model);
ViewPtr MakeUpDown(HWND parent, platform::OrvUpDown& model);
// Buttons, each a group of its own. Arrow keys stay among the options from one that starts a group to the
// next control that does.
ViewPtr MakeButton(HWND parent, platform::Button& model, int id);
ViewPtr MakeOption(HWND parent, platform::OptionButton& model, bool startsGroup);
ViewPtr MakeCheckBox(HWND parent, platform::CheckBox& model);
// Lists.
ViewPtr MakeList(HWND parent, platform::OrvList& model);
ViewPtr MakeCheckList(HWND parent, platform::OrvListCheck& model);
ViewPtr MakeCombo(HWND parent, platform::OrvCombo& model, bool startsGroup);
ViewPtr MakeProgressBar(HWND parent, platform::ProgressBar& model);
// A container of views; `description` is read when it becomes visible.
ViewPtr MakePage(HWND parent, platform::Panel& model, const platform::Label& description);

// What a container answers to the messages of its controls; nothing for others.
bool AnswerForControls(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& answer);

}  // namespace zimbrat::app
