#include "jet/table/guid_text.h"

#include <array>

#include "platform/text.h"

namespace zimbrat::jet {

namespace {

constexpr std::u16string_view kDigits = u"0123456789ABCDEF";

// Which byte a pair of digits stands for; -1 is a hyphen. The first three groups are kept little-endian.
constexpr std::array<int, 20> kOrder = {3, 2, 1, 0, -1, 5, 4, -1, 7, 6, -1, 8, 9, -1, 10, 11, 12, 13, 14, 15};
constexpr std::size_t kTextLength = 36;

}  // namespace

std::optional<dao::Guid> FindGuid(std::u16string_view text) {
  text = platform::TrimBlanks(text);
  if (text.size() == kTextLength + 2 && text.front() == u'{' && text.back() == u'}') {
    text = text.substr(1, kTextLength);
  }
  if (text.size() != kTextLength) return std::nullopt;
  dao::Guid guid;
  std::size_t at = 0;
  for (const int byte : kOrder) {
    if (byte < 0) {
      if (text[at++] != u'-') return std::nullopt;
      continue;
    }
    const std::size_t high = kDigits.find(platform::UpperCase(text[at]));
    const std::size_t low = kDigits.find(platform::UpperCase(text[at + 1]));
    if (high == kDigits.npos || low == kDigits.npos) return std::nullopt;
    guid.bytes[static_cast<std::size_t>(byte)] = static_cast<std::byte>(high * 16 + low);
    at += 2;
  }
  return guid;
}

std::u16string TextFromGuid(const dao::Guid& guid) {
  std::u16string text = u"{";
  for (const int byte : kOrder) {
    if (byte < 0) {
      text += u'-';
      continue;
    }
    const auto value = std::to_integer<std::size_t>(guid.bytes[static_cast<std::size_t>(byte)]);
    text += kDigits[value >> 4];
    text += kDigits[value & 15];
  }
  return text + u"}";
}

}  // namespace zimbrat::jet
