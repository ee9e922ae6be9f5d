#include "platform/json.h"

namespace zimbrat::platform {

namespace {

void AppendEscaped(std::u16string& json, char16_t unit) {
  constexpr std::u16string_view kHex = u"0123456789abcdef";
  constexpr std::pair<char16_t, char16_t> kShort[] = {{u'\r', u'r'}, {u'\n', u'n'}, {u'\t', u't'}};
  for (const auto& [escaped, letter] : kShort) {
    if (unit == escaped) {
      json.append({u'\\', letter});
      return;
    }
  }
  json += u"\\u";
  for (int shift = 12; shift >= 0; shift -= 4) json += kHex[(unit >> shift) & 0xF];
}

}  // namespace

std::u16string JsonString(std::u16string_view text) {
  std::u16string json = u"\"";
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char16_t unit = text[i];
    const bool isHigh = unit >= 0xD800 && unit < 0xDC00;
    const bool isPair =
        isHigh && i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] < 0xE000;
    if (unit == u'"' || unit == u'\\') {
      json.append({u'\\', unit});
    } else if (isPair) {
      json.append({unit, text[++i]});
    } else if (unit < u' ' || unit == 0x7F || (unit >= 0xD800 && unit < 0xE000)) {
      AppendEscaped(json, unit);
    } else {
      json += unit;
    }
  }
  return json + u'"';
}

std::u16string JsonObject(const std::vector<JsonMember>& members) {
  std::u16string json = u"{";
  for (const auto& [key, value] : members) {
    if (json.size() > 1) json += u',';
    json += JsonString(key) + u':' + value;
  }
  return json + u'}';
}

}  // namespace zimbrat::platform
