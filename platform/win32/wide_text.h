// The place where the core's UTF-16 meets the system's wchar_t: the same units under another name.
#pragma once

#include <string>
#include <string_view>

namespace zimbrat::platform {

static_assert(sizeof(wchar_t) == sizeof(char16_t));

// Lends a text to a system call, which sees it up to its first NUL.
inline const wchar_t* Lend(const std::u16string& text) {
  return reinterpret_cast<const wchar_t*>(text.c_str());
}
// Room for a system call to write into.
inline wchar_t* LendRoom(std::u16string& text) { return reinterpret_cast<wchar_t*>(text.data()); }

inline std::u16string_view ViewWide(std::wstring_view text) {
  return {reinterpret_cast<const char16_t*>(text.data()), text.size()};
}
inline std::u16string FromWide(std::wstring_view text) { return std::u16string(ViewWide(text)); }

// In the system's ANSI code page, up to the first NUL, letters that it lacks replaced as the system does.
std::string AnsiText(const std::u16string& text);

// For calls that fill a buffer of `size` units and return the length without the NUL, or, when the buffer
// is too small, the size that they need with it; 0 is failure and gives an empty text.
template <class Call>
std::u16string GrownText(Call call) {
  std::u16string text(260, u'\0');
  for (;;) {
    const unsigned long length = call(LendRoom(text), static_cast<unsigned long>(text.size()));
    if (length < text.size()) {
      text.resize(length);
      return text;
    }
    text.resize(length > text.size() ? length : text.size() * 2);
  }
}

}  // namespace zimbrat::platform
