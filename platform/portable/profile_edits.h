// What a write to a profile file changes: the lines concerned, and nothing else.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace zimbrat::platform {

// The text from `begin` to `end` gives way to `text`. Edits of one list ascend and do not overlap.
struct ProfileEdit {
  std::size_t begin = 0, end = 0;
  std::string text;
};

// A key that is new goes behind the section's last entry, a section that is new to the end of the file.
std::vector<ProfileEdit> EditsToSet(std::string_view text, std::string_view section,
                                    std::string_view key, std::string_view value);
// Only the first entry of that key.
std::vector<ProfileEdit> EditsToDeleteKey(std::string_view text, std::string_view section,
                                          std::string_view key);
// The header and the entries of the first section of that name; its comments stay.
std::vector<ProfileEdit> EditsToDeleteSection(std::string_view text, std::string_view section);

}  // namespace zimbrat::platform
