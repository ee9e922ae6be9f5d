// A window whose thread is held by work: it paints, shows the hourglass, does not close, and forgets what
// the user did meanwhile.
#pragma once

#include <windows.h>

#include <shobjidl.h>

#include "platform/win32/handles.h"

namespace zimbrat::app {

class BusyWindow {
 public:
  // Calls nest.
  void Begin(HWND window);
  void End(HWND window);
  bool IsBusy() const { return depth_ > 0; }

  // Handles what waits for the window; keys and mouse are dropped.
  void Pump();
  // The share that is done, 0 to 1, on the taskbar's button.
  void ShowProgress(HWND window, double share);
  // Answers the messages that concern a busy window; false for others.
  bool Answer(UINT message, WPARAM wParam, LRESULT& answer);
  // The system ends, whatever is under way.
  bool MustEnd() const { return mustEnd_; }

  // Throws away the keys and the mouse's doings that wait.
  static void DropInput();

 private:
  int depth_ = 0;
  bool mustEnd_ = false;
  platform::ComReference<ITaskbarList3> taskbar_;
  ULONGLONG shown_ = 0;  // thousandths on the taskbar
};

}  // namespace zimbrat::app
