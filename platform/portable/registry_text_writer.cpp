#include <cstdint>

#include "platform/text.h"
#include "registry_text.h"

namespace zimbrat::platform {
namespace {

void AppendQuoted(std::u16string_view text, std::u16string& out) {
  out.push_back(u'"');
  for (const char16_t unit : text) {
    if (unit == u'\\' || unit == u'"') out.push_back(u'\\');
    out.push_back(unit);
  }
  out.push_back(u'"');
}

void AppendHexDigits(std::uint32_t number, int count, std::u16string& out) {
  for (int shift = 4 * (count - 1); shift >= 0; shift -= 4) {
    out.push_back(u"0123456789abcdef"[(number >> shift) & 0xF]);
  }
}

// The text of a REG_SZ without its NUL; nothing when quotes could not carry it unchanged.
std::optional<std::u16string> FindPlainText(const RegistryValue& value) {
  const std::vector<std::byte>& data = value.data;
  if (value.type != kRegSz || data.size() < 2 || data.size() % 2 != 0) return std::nullopt;
  std::u16string text;
  for (std::size_t at = 0; at < data.size(); at += 2) {
    text.push_back(static_cast<char16_t>(std::to_integer<unsigned>(data[at]) |
                                         std::to_integer<unsigned>(data[at + 1]) << 8));
  }
  if (text.back() != u'\0') return std::nullopt;
  text.pop_back();
  for (const char16_t unit : text) {
    if (unit < 0x20) return std::nullopt;
  }
  return text;
}

void AppendBytes(const RegistryValue& value, std::size_t column, std::u16string& out) {
  constexpr std::size_t kWidth = 77;  // three places for a byte and its comma stay within 80 columns
  std::u16string prefix = u"hex";
  if (value.type != 3) {
    prefix += u"(";
    std::size_t digits = 1;
    while (digits < 8 && value.type >> (4 * digits) != 0) ++digits;
    AppendHexDigits(value.type, static_cast<int>(digits), prefix);
    prefix += u")";
  }
  prefix += u":";
  out += prefix;
  column += prefix.size();
  for (std::size_t i = 0; i < value.data.size(); ++i) {
    if (column >= kWidth) {
      out += u"\\\r\n  ";
      column = 2;
    }
    AppendHexDigits(std::to_integer<std::uint32_t>(value.data[i]), 2, out);
    if (i + 1 < value.data.size()) out.push_back(u',');
    column += 3;
  }
}

void AppendValue(const RegistryNode::NamedValue& named, std::u16string& out) {
  const std::size_t lineBegin = out.size();
  if (named.name.empty()) {
    out.push_back(u'@');
  } else {
    AppendQuoted(named.name, out);
  }
  out.push_back(u'=');
  const RegistryValue& value = named.value;
  if (const auto text = FindPlainText(value)) {
    AppendQuoted(*text, out);
  } else if (value.type == kRegDword && value.data.size() == 4) {
    out += u"dword:";
    for (int i = 3; i >= 0; --i) {
      AppendHexDigits(std::to_integer<std::uint32_t>(value.data[static_cast<std::size_t>(i)]), 2, out);
    }
  } else {
    AppendBytes(value, out.size() - lineBegin, out);
  }
  out += u"\r\n";
}

void AppendKey(const RegistryNode& node, const std::u16string& path, std::u16string& out) {
  out += u"\r\n[" + path + u"]\r\n";
  for (const auto& [upper, value] : node.values) AppendValue(value, out);
  for (const auto& [upper, subkey] : node.subkeys) AppendKey(*subkey, path + u'\\' + subkey->name, out);
}

}  // namespace

std::string EncodeRegistryText(const RegistryTree& tree) {
  std::u16string text = u"\uFEFFWindows Registry Editor Version 5.00\r\n";
  for (const RegistryNode* root : {&tree.currentUser, &tree.localMachine}) {
    if (!root->values.empty() || !root->subkeys.empty()) AppendKey(*root, root->name, text);
  }
  std::string bytes;
  bytes.reserve(text.size() * 2);
  for (const char16_t unit : text) {
    bytes.push_back(static_cast<char>(unit & 0xFF));
    bytes.push_back(static_cast<char>(unit >> 8));
  }
  return bytes;
}

}  // namespace zimbrat::platform
