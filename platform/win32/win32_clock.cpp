#include "win32_clock.h"

#include <windows.h>

#include <iterator>
#include <random>

#include "platform/dates.h"
#include "wide_text.h"

namespace zimbrat::platform {
namespace {

// `length` counts the NUL; 0 is failure.
std::u16string TextOf(const wchar_t* text, int length) {
  return length > 0 ? FromWide({text, static_cast<std::size_t>(length - 1)}) : std::u16string();
}

}  // namespace

double Win32Clock::Now() {
  SYSTEMTIME now;
  ::GetLocalTime(&now);
  return DateFromParts({now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond});
}

std::uint32_t Win32Clock::Random() { return std::random_device{}(); }

std::u16string Win32Clock::ShortDate() {
  wchar_t text[128];
  return TextOf(text, ::GetDateFormatW(LOCALE_USER_DEFAULT, DATE_SHORTDATE, nullptr, nullptr, text,
                                       static_cast<int>(std::size(text))));
}

std::u16string Win32Clock::ShortTime() {
  wchar_t text[128];
  return TextOf(text, ::GetTimeFormatW(LOCALE_USER_DEFAULT, TIME_NOSECONDS, nullptr, nullptr, text,
                                       static_cast<int>(std::size(text))));
}

std::uint64_t Win32Clock::Milliseconds() { return ::GetTickCount64(); }

void Win32Clock::Sleep(std::uint32_t milliseconds) { ::Sleep(milliseconds); }

}  // namespace zimbrat::platform
