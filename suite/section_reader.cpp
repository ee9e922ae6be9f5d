#include "suite/ModPrgFun.h"

#include "platform/text.h"

#include <array>

namespace zimbrat::suite {
namespace {

constexpr std::size_t kSectionBuffer = 2048;

std::string_view TrimBlankBytes(std::string_view bytes) {
  const std::size_t first = bytes.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return bytes.substr(first, bytes.find_last_not_of(' ') - first + 1);
}

SectionEntry EntryFromBytes(std::string_view bytes) {
  const std::size_t equals = bytes.find('=');
  if (equals == std::string_view::npos || equals == 0) {
    return {platform::Utf16FromAnsi1250(bytes), {}};
  }
  return {platform::Utf16FromAnsi1250(bytes.substr(0, equals)),
          platform::Utf16FromAnsi1250(bytes.substr(equals + 1))};
}

// The profile functions answer a read that failed like a section or key that is not there, so what
// is not there is asked for once more: a file's passing trouble must not leave out a part of it.
std::vector<SectionEntry> SectionAsGiven(platform::Profile& profile, const std::string& section,
                                         std::u16string_view path) {
  std::vector<SectionEntry> entries;
  std::array<char, kSectionBuffer> buffer;
  buffer.fill(' ');
  profile.Section(section, buffer, path);
  std::string_view rest = TrimBlankBytes({buffer.data(), buffer.size()});
  for (std::size_t end = rest.find('\0'); end != std::string_view::npos && end != 0;
       end = rest.find('\0')) {
    entries.push_back(EntryFromBytes(rest.substr(0, end)));
    rest.remove_prefix(end + 1);
  }
  return entries;
}

std::u16string HeaderTextAsGiven(platform::Profile& profile, std::string_view key,
                                 std::size_t bufferSize, std::u16string_view path) {
  std::string buffer(bufferSize, ' ');
  profile.String("HEADER", key, "", buffer, path);
  std::string_view text = TrimBlankBytes(buffer);
  // The NUL that the profile function left before the untouched blanks.
  if (!text.empty()) text.remove_suffix(1);
  return platform::Utf16FromAnsi1250(text);
}

}  // namespace

std::vector<SectionEntry> ReadSection(platform::Profile& profile, std::u16string_view section,
                                      std::u16string_view path) {
  const std::string name = platform::Ansi1250FromUtf16(section);
  std::vector<SectionEntry> entries = SectionAsGiven(profile, name, path);
  return entries.empty() ? SectionAsGiven(profile, name, path) : entries;
}

std::u16string ReadHeaderText(platform::Profile& profile, std::string_view key,
                              std::size_t bufferSize, std::u16string_view path) {
  std::u16string text = HeaderTextAsGiven(profile, key, bufferSize, path);
  return text.empty() ? HeaderTextAsGiven(profile, key, bufferSize, path) : text;
}

}  // namespace zimbrat::suite
