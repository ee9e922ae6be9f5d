#include "text_input.h"

#include <algorithm>

#include "platform/text.h"

namespace zimbrat::fuzz {

std::string_view BytesOf(Input input) {
  const auto bytes = std::as_bytes(input);
  return {static_cast<const char*>(static_cast<const void*>(bytes.data())), bytes.size()};
}

std::u16string TextOf(Input input) {
  constexpr std::uint8_t kSurrogateMark = 0xFF;
  std::u16string text;
  while (!input.empty()) {
    const Input part = TakeUntil(input, kSurrogateMark);
    text += platform::Utf16FromUtf8(BytesOf(part));
    if (part.data() + part.size() != input.data()) text += u'\xD800';
  }
  return text;
}

Input TakeUntil(Input& rest, std::uint8_t separator) {
  const auto found = std::find(rest.begin(), rest.end(), separator);
  const auto size = static_cast<std::size_t>(found - rest.begin());
  const Input part = rest.first(size);
  rest = rest.subspan(std::min(size + 1, rest.size()));
  return part;
}

std::uint8_t TakeByte(Input& rest) {
  if (rest.empty()) return 0;
  const std::uint8_t byte = rest[0];
  rest = rest.subspan(1);
  return byte;
}

std::vector<Input> SplitLines(Input input) {
  std::vector<Input> lines;
  while (!input.empty()) lines.push_back(TakeUntil(input, '\n'));
  return lines;
}

}  // namespace zimbrat::fuzz
