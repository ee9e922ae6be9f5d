#include "picture.h"

namespace zimbrat::app {

void DrawPicture(HDC dc, const RECT& area, unsigned) { ::FillRect(dc, &area, ::GetSysColorBrush(COLOR_3DFACE)); }

}  // namespace zimbrat::app
