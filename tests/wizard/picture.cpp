#include "tests/wizard/picture.h"

#include <fstream>
#include <vector>

namespace zimbrat::tests {

bool TakePicture(HWND window, const std::filesystem::path& file) {
  // A window that was shown without being activated would have a grey title bar.
  ::SendMessageW(window, WM_NCACTIVATE, TRUE, 0);
  ::RedrawWindow(window, nullptr, nullptr,
                 RDW_INVALIDATE | RDW_FRAME | RDW_ALLCHILDREN | RDW_UPDATENOW | RDW_ERASE);
  RECT area = {};
  ::GetWindowRect(window, &area);
  const int width = area.right - area.left, height = area.bottom - area.top;
  BITMAPINFO info = {};
  info.bmiHeader = {sizeof info.bmiHeader, width, height, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
  const HDC from = ::GetWindowDC(window);
  const HDC to = ::CreateCompatibleDC(from);
  void* bits = nullptr;
  const HBITMAP bitmap = ::CreateDIBSection(to, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
  const HGDIOBJ former = ::SelectObject(to, bitmap);
  bool isDone = bitmap != nullptr && ::BitBlt(to, 0, 0, width, height, from, 0, 0, SRCCOPY);
  ::GdiFlush();
  if (isDone) {
    const auto size = static_cast<DWORD>((width * 3 + 3) / 4 * 4 * height);
    BITMAPFILEHEADER header = {0x4D42, 0, 0, 0, 0};
    header.bfOffBits = sizeof header + sizeof info.bmiHeader;
    header.bfSize = header.bfOffBits + size;
    std::ofstream out(file, std::ios::binary);
    out.write(reinterpret_cast<const char*>(&header), sizeof header);
    out.write(reinterpret_cast<const char*>(&info.bmiHeader), sizeof info.bmiHeader);
    out.write(static_cast<const char*>(bits), size);
    isDone = out.good();
  }
  ::SelectObject(to, former);
  ::DeleteObject(bitmap);
  ::DeleteDC(to);
  ::ReleaseDC(window, from);
  return isDone;
}

}  // namespace zimbrat::tests
