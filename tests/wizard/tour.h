// Every page of the wizard once, each with something on it.
#pragma once

#include <windows.h>

#include <functional>
#include <vector>

#include "tests/wizard/stage.h"

namespace zimbrat::tests {

// Opens a window of its own for each of two tasks, goes through their pages and calls `look` on each.
void VisitAllPages(const std::function<void(Stage& stage)>& look);

// What is seen on the window, pages and hidden parts of controls left out.
std::vector<HWND> ControlsOf(const Stage& stage);
// Where it stands, in pixels of the window's client area.
RECT PlaceOf(const Stage& stage, HWND control);
bool IsOfClass(HWND control, const wchar_t* type);
// Its style bits below the mask: BS_PUSHBUTTON and the like.
LONG_PTR ButtonKind(HWND button);

}  // namespace zimbrat::tests
