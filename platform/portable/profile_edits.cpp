#include "profile_edits.h"

#include "profile_lines.h"

namespace zimbrat::platform {
namespace {

constexpr std::string_view kLineEnd = "\r\n";

std::string EntryLine(std::string_view key, std::string_view value) {
  std::string line(key);
  line += '=';
  line += value;
  line += kLineEnd;
  return line;
}

bool EndsWithLineEnd(std::string_view text) {
  return text.empty() || text.back() == '\n' || text.back() == '\r';
}

ProfileEdit NewSection(std::string_view text, std::string_view section, std::string_view entry) {
  std::string lines(EndsWithLineEnd(text) ? "" : kLineEnd);
  lines += '[';
  lines += section;
  lines += ']';
  lines += kLineEnd;
  lines += entry;
  return {text.size(), text.size(), lines};
}

}  // namespace

std::vector<ProfileEdit> EditsToSet(std::string_view text, std::string_view section,
                                    std::string_view key, std::string_view value) {
  ProfileSection lines(text, section);
  if (!lines.Header()) return {NewSection(text, section, EntryLine(key, value))};
  ProfileLine last = *lines.Header();
  while (const auto entry = lines.NextEntry()) {
    if (EqualProfileNames(entry->name, key)) {
      return {{entry->begin, entry->end, EntryLine(entry->name, value)}};
    }
    last = *entry;
  }
  return {{last.end, last.end, std::string(last.hasLineEnd ? "" : kLineEnd) + EntryLine(key, value)}};
}

std::vector<ProfileEdit> EditsToDeleteKey(std::string_view text, std::string_view section,
                                          std::string_view key) {
  ProfileSection lines(text, section);
  const auto entry = lines.FindEntry(key);
  if (!entry) return {};
  return {{entry->begin, entry->end, {}}};
}

std::vector<ProfileEdit> EditsToDeleteSection(std::string_view text, std::string_view section) {
  ProfileSection lines(text, section);
  if (!lines.Header()) return {};
  std::vector<ProfileEdit> edits = {{lines.Header()->begin, lines.Header()->end, {}}};
  while (const auto entry = lines.NextEntry()) edits.push_back({entry->begin, entry->end, {}});
  return edits;
}

}  // namespace zimbrat::platform
