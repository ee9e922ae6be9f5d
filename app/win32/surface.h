// Where text is drawn or measured: a window's surface, or the screen's, with a font chosen into it.
#pragma once

#include <windows.h>

namespace zimbrat::app {

class Surface {
 public:
  // The screen without a `window`.
  Surface(HWND window, HFONT font)
      : window_(window), dc_(::GetDC(window)), former_(::SelectObject(dc_, font)) {}
  ~Surface() {
    ::SelectObject(dc_, former_);
    ::ReleaseDC(window_, dc_);
  }
  Surface(const Surface&) = delete;
  Surface& operator=(const Surface&) = delete;
  HDC Dc() const { return dc_; }

 private:
  HWND window_;
  HDC dc_;
  HGDIOBJ former_;
};

}  // namespace zimbrat::app
