#include "profile_lines.h"

#include <algorithm>

#include "platform/text.h"

namespace zimbrat::platform {
namespace {

constexpr std::string_view kBlanks = " \t\v\x1A";

bool IsLineEnd(char letter) { return letter == '\n' || letter == '\r'; }

std::string_view Trim(std::string_view text, std::string_view blanks = kBlanks) {
  const std::size_t first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

void Decode(std::string_view content, ProfileLine& line) {
  content = Trim(content.substr(0, content.find('\0')));
  if (content.empty() || content[0] == ';') return;
  if (content[0] == '[') {
    line.kind = ProfileLine::Kind::Header;
    line.name = Trim(content.substr(1, content.find(']') - 1));
    return;
  }
  line.kind = ProfileLine::Kind::Entry;
  const std::size_t sign = content.find('=');
  line.hasValue = sign != std::string_view::npos;
  line.name = Trim(content.substr(0, sign));
  if (line.hasValue) line.value = Trim(content.substr(sign + 1));
}

}  // namespace

ProfileLine ReadProfileLine(std::string_view text, std::size_t position) {
  ProfileLine line;
  line.begin = position;
  const auto from = text.begin() + static_cast<std::ptrdiff_t>(position);
  const auto stop =
      static_cast<std::size_t>(std::find_if(from, text.end(), IsLineEnd) - text.begin());
  line.hasLineEnd = stop < text.size();
  const bool isPair = line.hasLineEnd && text.substr(stop, 2) == "\r\n";
  line.end = stop + (isPair ? 2 : line.hasLineEnd ? 1 : 0);
  Decode(text.substr(position, stop - position), line);
  return line;
}

bool EqualProfileNames(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
    return x == y || UpperCase(Utf16FromAnsi1250(x)) == UpperCase(Utf16FromAnsi1250(y));
  });
}

std::string_view TrimProfileArgument(std::string_view argument) { return Trim(argument, " "); }

// Only where a bracket begins a line there can be a header.
ProfileSection::ProfileSection(std::string_view text, std::string_view name)
    : text_(text), position_(text.size()) {
  for (std::size_t at = text.find('['); at != std::string_view::npos; at = text.find('[', at + 1)) {
    const std::size_t before = text.substr(0, at).find_last_not_of(kBlanks);
    if (before != std::string_view::npos && !IsLineEnd(text[before])) continue;
    const ProfileLine line = ReadProfileLine(text, before == std::string_view::npos ? 0 : before + 1);
    if (!EqualProfileNames(line.name, name)) continue;
    header_ = line;
    position_ = line.end;
    return;
  }
}

std::optional<ProfileLine> ProfileSection::NextLine() {
  if (!header_ || position_ >= text_.size()) return std::nullopt;
  const ProfileLine line = ReadProfileLine(text_, position_);
  if (line.kind == ProfileLine::Kind::Header) {
    position_ = text_.size();
    return std::nullopt;
  }
  position_ = line.end;
  return line;
}

std::optional<ProfileLine> ProfileSection::NextEntry() {
  std::optional<ProfileLine> line = NextLine();
  while (line && line->kind != ProfileLine::Kind::Entry) line = NextLine();
  return line;
}

std::optional<ProfileLine> ProfileSection::FindEntry(std::string_view key) {
  std::optional<ProfileLine> entry = NextEntry();
  while (entry && !EqualProfileNames(entry->name, key)) entry = NextEntry();
  return entry;
}

}  // namespace zimbrat::platform
