#include "ruler.h"

#include "platform/win32/wide_text.h"
#include "surface.h"

#include <string>

namespace zimbrat::app {
namespace {

constexpr unsigned kUsualDpi = 96;

// A call of user32 that older systems lack; null there.
template <class Call>
Call FindCall(const char* name) {
  const HMODULE library = ::GetModuleHandleW(L"user32.dll");
  return reinterpret_cast<Call>(reinterpret_cast<void*>(::GetProcAddress(library, name)));
}

unsigned DpiOfSystem() {
  const HDC screen = ::GetDC(nullptr);
  const int dpi = ::GetDeviceCaps(screen, LOGPIXELSY);
  ::ReleaseDC(nullptr, screen);
  return dpi > 0 ? static_cast<unsigned>(dpi) : kUsualDpi;
}

LOGFONTW MessageFont(unsigned dpi) {
  using MetricsForDpi = BOOL(WINAPI*)(UINT, UINT, PVOID, UINT, UINT);
  NONCLIENTMETRICSW metrics = {};
  metrics.cbSize = sizeof metrics;
  const auto forDpi = FindCall<MetricsForDpi>("SystemParametersInfoForDpi");
  if (forDpi != nullptr && forDpi(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0, dpi)) {
    return metrics.lfMessageFont;
  }
  ::SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
  metrics.lfMessageFont.lfHeight = ::MulDiv(metrics.lfMessageFont.lfHeight, static_cast<int>(dpi),
                                            static_cast<int>(DpiOfSystem()));
  return metrics.lfMessageFont;
}

}  // namespace

unsigned DpiOf(HWND window) {
  using DpiForWindow = UINT(WINAPI*)(HWND);
  const auto ask = FindCall<DpiForWindow>("GetDpiForWindow");
  const unsigned dpi = ask == nullptr ? 0 : ask(window);
  return dpi == 0 ? DpiOfSystem() : dpi;
}

int SystemMeasure(int index, unsigned dpi) {
  using MetricsForDpi = int(WINAPI*)(int, UINT);
  const auto ask = FindCall<MetricsForDpi>("GetSystemMetricsForDpi");
  return ask == nullptr ? ::GetSystemMetrics(index) : ask(index, dpi);
}

Ruler::Ruler(unsigned dpi) : dpi_(dpi) {
  const LOGFONTW font = MessageFont(dpi);
  font_ = platform::FontHandle(::CreateFontIndirectW(&font));
  constexpr std::wstring_view kLetters = L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
  const Surface screen(nullptr, font_.Get());
  SIZE size = {};
  ::GetTextExtentPoint32W(screen.Dc(), kLetters.data(), static_cast<int>(kLetters.size()), &size);
  TEXTMETRICW metrics = {};
  ::GetTextMetricsW(screen.Dc(), &metrics);
  const int letters = static_cast<int>(kLetters.size());
  baseX_ = (size.cx + letters / 2) / letters;
  baseY_ = metrics.tmHeight;
}

int Ruler::Width(std::u16string_view text) const {
  const std::u16string lent(text);
  const Surface screen(nullptr, font_.Get());
  RECT area = {};
  ::DrawTextW(screen.Dc(), platform::Lend(lent), static_cast<int>(lent.size()), &area,
              DT_CALCRECT | DT_SINGLELINE);
  return area.right;
}

SIZE Ruler::OuterSize(SIZE client, DWORD style, DWORD extendedStyle) const {
  using AdjustForDpi = BOOL(WINAPI*)(LPRECT, DWORD, BOOL, DWORD, UINT);
  RECT area = {0, 0, client.cx, client.cy};
  const auto forDpi = FindCall<AdjustForDpi>("AdjustWindowRectExForDpi");
  if (forDpi == nullptr || !forDpi(&area, style, FALSE, extendedStyle, dpi_)) {
    ::AdjustWindowRectEx(&area, style, FALSE, extendedStyle);
  }
  return {area.right - area.left, area.bottom - area.top};
}

}  // namespace zimbrat::app
