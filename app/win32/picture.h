// The picture on the wizard's left: a wand over databases.
#pragma once

#include <windows.h>

namespace zimbrat::app {

// Fills `area`, in pixels of `dc`; the drawing in it is 128 by 420 pixels at 96 dots an inch, and
// grows with `dpi`. In high contrast, the window's plain colour.
void DrawPicture(HDC dc, const RECT& area, unsigned dpi);

}  // namespace zimbrat::app
