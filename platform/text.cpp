#include "platform/text.h"

#include <algorithm>
#include <cstdint>

#include "platform/secret.h"

namespace zimbrat::platform {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool IsHighSurrogate(char32_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool IsLowSurrogate(char32_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

void AppendUtf16(char32_t code, std::u16string& text) {
  if (code < 0x10000) {
    text.push_back(static_cast<char16_t>(code));
    return;
  }
  text.push_back(static_cast<char16_t>(0xD800 + ((code - 0x10000) >> 10)));
  text.push_back(static_cast<char16_t>(0xDC00 + ((code - 0x10000) & 0x3FF)));
}

void AppendUtf8(char32_t code, std::string& utf8) {
  if (code < 0x80) {
    utf8.push_back(static_cast<char>(code));
    return;
  }
  const int continuations = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
  const unsigned lead = continuations == 1 ? 0xC0 : continuations == 2 ? 0xE0 : 0xF0;
  utf8.push_back(static_cast<char>(lead | (code >> (6 * continuations))));
  for (int shift = 6 * (continuations - 1); shift >= 0; shift -= 6) {
    utf8.push_back(static_cast<char>(0x80 | ((code >> shift) & 0x3F)));
  }
}

// Decodes the sequence at `position` and moves behind it. Of a broken sequence the longest part that
// could have begun a right one is taken for one bad character, as the Unicode standard advises.
char32_t NextUtf8(std::string_view utf8, std::size_t& position) {
  const auto lead = static_cast<std::uint8_t>(utf8[position++]);
  if (lead < 0x80) return lead;
  const int continuations = lead >= 0xC2 && lead < 0xE0   ? 1
                            : lead >= 0xE0 && lead < 0xF0 ? 2
                            : lead >= 0xF0 && lead < 0xF5 ? 3
                                                          : 0;
  if (continuations == 0) return kReplacement;
  // The second byte is bound more tightly where overlong forms, surrogates or codes above 10FFFF lurk.
  std::uint8_t low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
  std::uint8_t high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
  char32_t code = lead & (0x3F >> continuations);
  for (int i = 0; i < continuations; ++i) {
    if (position == utf8.size()) return kReplacement;
    const auto byte = static_cast<std::uint8_t>(utf8[position]);
    if (byte < low || byte > high) return kReplacement;
    code = (code << 6) | (byte & 0x3F);
    low = 0x80;
    high = 0xBF;
    ++position;
  }
  return code;
}

template <class Text>
void WipeText(Text& text) {
  text.resize(text.capacity());  // what was shortened before may still hold the secret
  WipeMemory(text.data(), text.size() * sizeof(text[0]));
  text.clear();
}

}  // namespace

std::u16string Utf16FromUtf8(std::string_view utf8) {
  std::u16string text;
  text.reserve(utf8.size());
  for (std::size_t position = 0; position < utf8.size();) {
    AppendUtf16(NextUtf8(utf8, position), text);
  }
  return text;
}

std::string Utf8FromUtf16(std::u16string_view text) {
  std::string utf8;
  utf8.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    char32_t code = text[i];
    if (IsHighSurrogate(code) && i + 1 < text.size() && IsLowSurrogate(text[i + 1])) {
      code = 0x10000 + ((code - 0xD800) << 10) + (text[++i] - 0xDC00u);
    } else if (IsHighSurrogate(code) || IsLowSurrogate(code)) {
      code = kReplacement;
    }
    AppendUtf8(code, utf8);
  }
  return utf8;
}

std::u16string UpperCase(std::u16string_view text) {
  std::u16string upper(text);
  for (char16_t& unit : upper) unit = UpperCase(unit);
  return upper;
}

std::u16string LowerCase(std::u16string_view text) {
  std::u16string lower(text);
  for (char16_t& unit : lower) unit = LowerCase(unit);
  return lower;
}

bool EqualIgnoringCase(std::u16string_view a, std::u16string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char16_t x, char16_t y) { return x == y || UpperCase(x) == UpperCase(y); });
}

std::u16string_view TrimBlanks(std::u16string_view text) {
  const std::size_t first = text.find_first_not_of(u' ');
  if (first == std::u16string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(u' ') - first + 1);
}

std::u16string ReplaceAll(std::u16string_view text, std::u16string_view find,
                          std::u16string_view with) {
  if (find.empty()) return std::u16string(text);
  std::u16string result;
  std::size_t position = 0;
  for (std::size_t hit; (hit = text.find(find, position)) != std::u16string_view::npos;) {
    result += text.substr(position, hit - position);
    result += with;
    position = hit + find.size();
  }
  result += text.substr(position);
  return result;
}

bool Contains(std::u16string_view text, std::u16string_view part) {
  return text.find(part) != std::u16string_view::npos;
}

std::u16string DecimalText(long long number) { return Utf16FromUtf8(std::to_string(number)); }

void Wipe(std::u16string& text) { WipeText(text); }
void Wipe(std::string& text) { WipeText(text); }

}  // namespace zimbrat::platform
