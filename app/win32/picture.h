// The picture on the left of the wizard's window.
#pragma once

#include <windows.h>

namespace zimbrat::app {

void DrawPicture(HDC dc, const RECT& area, unsigned dpi);

}  // namespace zimbrat::app
