// Pictures of windows as they stand on the screen, their title bars included.
#pragma once

#include <windows.h>

#include <filesystem>

namespace zimbrat::tests {

// Writes a BMP of 24 bits. False when the window cannot be drawn or the file not written.
bool TakePicture(HWND window, const std::filesystem::path& file);

}  // namespace zimbrat::tests
