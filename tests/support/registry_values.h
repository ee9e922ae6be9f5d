// Registry values as tests write and read them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/registry.h"

namespace zimbrat::tests {

// A REG_SZ with its NUL.
inline platform::RegistryValue TextValue(std::u16string_view text) {
  platform::RegistryValue value{platform::kRegSz, {}};
  for (const char16_t unit : std::u16string(text) + u'\0') {
    value.data.push_back(static_cast<std::byte>(unit & 0xFF));
    value.data.push_back(static_cast<std::byte>(unit >> 8));
  }
  return value;
}

inline platform::RegistryValue NumberValue(std::uint32_t number) {
  platform::RegistryValue value{platform::kRegDword, {}};
  for (int shift = 0; shift < 32; shift += 8) {
    value.data.push_back(static_cast<std::byte>(number >> shift & 0xFF));
  }
  return value;
}

// The text without its NUL; "<none>" for what is no whole text.
inline std::u16string TextOf(const platform::RegistryValue& value) {
  if (value.type != platform::kRegSz || value.data.size() % 2 != 0) return u"<none>";
  std::u16string text;
  for (std::size_t at = 0; at < value.data.size(); at += 2) {
    text.push_back(static_cast<char16_t>(std::to_integer<unsigned>(value.data[at]) |
                                         std::to_integer<unsigned>(value.data[at + 1]) << 8));
  }
  if (text.empty() || text.back() != u'\0') return u"<none>";
  text.pop_back();
  return text;
}

}  // namespace zimbrat::tests
