#include <cstdint>

#include "platform/text.h"
#include "registry_text.h"

namespace zimbrat::platform {
namespace {

std::u16string_view Trim(std::u16string_view text) {
  const std::size_t first = text.find_first_not_of(u" \t\r");
  if (first == std::u16string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(u" \t\r") - first + 1);
}

std::optional<std::u16string> FindText(std::string_view bytes) {
  if (!bytes.starts_with("\xFF\xFE")) {
    if (bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
    std::u16string text = Utf16FromUtf8(bytes);
    if (Utf8FromUtf16(text) != bytes) return std::nullopt;
    return text;
  }
  if (bytes.size() % 2 != 0) return std::nullopt;
  std::u16string text;
  text.reserve(bytes.size() / 2);
  for (std::size_t at = 2; at < bytes.size(); at += 2) {
    text.push_back(static_cast<char16_t>(static_cast<std::uint8_t>(bytes[at]) |
                                         static_cast<std::uint8_t>(bytes[at + 1]) << 8));
  }
  return text;
}

// Takes a quoted text off the front of `line`.
std::optional<std::u16string> TakeQuoted(std::u16string_view& line) {
  if (!line.starts_with(u'"')) return std::nullopt;
  std::u16string text;
  for (std::size_t at = 1; at < line.size(); ++at) {
    if (line[at] == u'"') {
      line.remove_prefix(at + 1);
      return text;
    }
    if (line[at] == u'\\' && ++at == line.size()) break;
    text.push_back(line[at]);
  }
  return std::nullopt;
}

// Takes up to `most` hexadecimal digits off the front; nothing when there is none.
std::optional<std::uint32_t> TakeHex(std::u16string_view& text, std::size_t most) {
  constexpr std::u16string_view kDigits = u"0123456789ABCDEF";
  std::uint32_t number = 0;
  std::size_t count = 0;
  for (; count < most && count < text.size(); ++count) {
    const std::size_t digit = kDigits.find(UpperCase(text[count]));
    if (digit == std::u16string_view::npos) break;
    number = number << 4 | static_cast<std::uint32_t>(digit);
  }
  text.remove_prefix(count);
  if (count == 0) return std::nullopt;
  return number;
}

RegistryValue TextValue(std::u16string_view text) {
  RegistryValue value{kRegSz, {}};
  for (const char16_t unit : text) {
    value.data.push_back(static_cast<std::byte>(unit & 0xFF));
    value.data.push_back(static_cast<std::byte>(unit >> 8));
  }
  value.data.resize(value.data.size() + 2);
  return value;
}

std::optional<RegistryValue> FindDword(std::u16string_view digits) {
  const std::optional<std::uint32_t> number = TakeHex(digits, 8);
  if (!number || !digits.empty()) return std::nullopt;
  RegistryValue value{kRegDword, {}};
  for (int shift = 0; shift < 32; shift += 8) {
    value.data.push_back(static_cast<std::byte>(*number >> shift & 0xFF));
  }
  return value;
}

// What follows "hex": perhaps a type in parentheses, a colon, bytes with commas between.
std::optional<RegistryValue> FindBytes(std::u16string_view rest) {
  RegistryValue value{3, {}};
  if (rest.starts_with(u'(')) {
    rest.remove_prefix(1);
    const std::optional<std::uint32_t> type = TakeHex(rest, 8);
    if (!type || !rest.starts_with(u')')) return std::nullopt;
    rest.remove_prefix(1);
    value.type = *type;
  }
  if (!rest.starts_with(u':')) return std::nullopt;
  rest = Trim(rest.substr(1));
  while (!rest.empty()) {
    const std::optional<std::uint32_t> byte = TakeHex(rest, 2);
    if (!byte) return std::nullopt;
    value.data.push_back(static_cast<std::byte>(*byte));
    rest = Trim(rest);
    if (rest.empty()) break;
    if (!rest.starts_with(u',')) return std::nullopt;
    rest = Trim(rest.substr(1));
  }
  return value;
}

std::optional<RegistryValue> FindValue(std::u16string_view data) {
  if (data.starts_with(u"dword:")) return FindDword(data.substr(6));
  if (data.starts_with(u"hex")) return FindBytes(data.substr(3));
  const std::optional<std::u16string> text = TakeQuoted(data);
  if (!text || !data.empty()) return std::nullopt;
  return TextValue(*text);
}

class Reader {
 public:
  explicit Reader(std::u16string_view text) : rest_(text) {}

  bool Read(RegistryTree& tree) {
    if (NextLine() != u"Windows Registry Editor Version 5.00") return false;
    while (!rest_.empty()) {
      const std::u16string line = NextLine();
      if (line.empty() || line[0] == u';') continue;
      if (!(line[0] == u'[' ? ReadKey(line, tree) : ReadValue(line))) return false;
    }
    return true;
  }

 private:
  // A line of bytes that ends with `\` goes on in the next, a comment does not.
  std::u16string NextLine() {
    std::u16string line;
    do {
      if (!line.empty()) line.pop_back();
      const std::size_t end = std::min(rest_.find(u'\n'), rest_.size());
      line += Trim(rest_.substr(0, end));
      rest_.remove_prefix(std::min(end + 1, rest_.size()));
    } while (line.ends_with(u'\\') && !line.starts_with(u';') && !rest_.empty());
    return line;
  }

  bool ReadKey(std::u16string_view line, RegistryTree& tree) {
    if (line.back() != u']') return false;
    const std::u16string_view path = line.substr(1, line.size() - 2);
    const std::size_t rootEnd = std::min(path.find(u'\\'), path.size());
    const auto parts = SplitKeyPath(path.substr(std::min(rootEnd + 1, path.size())));
    if (!parts) return false;
    for (RegistryNode* root : {&tree.currentUser, &tree.localMachine}) {
      if (EqualIgnoringCase(path.substr(0, rootEnd), root->name)) {
        key_ = &root->Make(*parts);
        return true;
      }
    }
    return false;
  }

  bool ReadValue(std::u16string_view line) {
    std::u16string name;
    if (line.starts_with(u'@')) {
      line.remove_prefix(1);
    } else if (const auto quoted = TakeQuoted(line)) {
      name = *quoted;
    } else {
      return false;
    }
    line = Trim(line);
    if (key_ == nullptr || !line.starts_with(u'=') || !IsValueName(name)) return false;
    std::optional<RegistryValue> value = FindValue(Trim(line.substr(1)));
    if (value) key_->Set(name, std::move(*value));
    return value.has_value();
  }

  std::u16string_view rest_;
  RegistryNode* key_ = nullptr;
};

}  // namespace

std::optional<RegistryTree> FindRegistryTree(std::string_view bytes) {
  const std::optional<std::u16string> text = FindText(bytes);
  RegistryTree tree;
  if (!text || !Reader(*text).Read(tree)) return std::nullopt;
  return tree;
}

}  // namespace zimbrat::platform
