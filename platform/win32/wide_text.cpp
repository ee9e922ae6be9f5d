#include "wide_text.h"

#include <windows.h>

#include <algorithm>

namespace zimbrat::platform {

std::string AnsiText(const std::u16string& text) {
  const int size = ::WideCharToMultiByte(CP_ACP, 0, Lend(text), -1, nullptr, 0, nullptr, nullptr);
  std::string bytes(static_cast<std::size_t>(std::max(size, 1)), '\0');
  ::WideCharToMultiByte(CP_ACP, 0, Lend(text), -1, bytes.data(), size, nullptr, nullptr);
  bytes.resize(bytes.find('\0'));
  return bytes;
}

}  // namespace zimbrat::platform
