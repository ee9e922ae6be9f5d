// Measures of one window at one resolution: the system's message font there, and lengths in pixels.
#pragma once

#include <windows.h>

#include "platform/win32/handles.h"

#include <string_view>

namespace zimbrat::app {

// Dots an inch of the window's monitor, or of the system where Windows has one for all.
unsigned DpiOf(HWND window);

// GetSystemMetrics for that resolution, as far as the system tells them apart.
int SystemMeasure(int index, unsigned dpi);

class Ruler {
 public:
  explicit Ruler(unsigned dpi);

  unsigned Dpi() const { return dpi_; }
  HFONT Font() const { return font_.Get(); }
  // 1/1440 inch.
  int Twips(int twips) const { return ::MulDiv(twips, static_cast<int>(dpi_), 1440); }
  // Dialog units: a quarter of the font's average width, an eighth of its height.
  int X(int units) const { return ::MulDiv(units, baseX_, 4); }
  int Y(int units) const { return ::MulDiv(units, baseY_, 8); }
  // Pixels that a single line of the text takes, `&` not counted when it marks a key.
  int Width(std::u16string_view text) const;
  int LineHeight() const { return baseY_; }
  // The outer size of a window with that client size.
  SIZE OuterSize(SIZE client, DWORD style, DWORD extendedStyle) const;

 private:
  unsigned dpi_;
  platform::FontHandle font_;
  int baseX_ = 0;
  int baseY_ = 0;
};

}  // namespace zimbrat::app
