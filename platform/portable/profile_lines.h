// The lines of a profile file: what Windows takes for a header, an entry or nothing.
//
// Lines end at CR LF, LF or CR. Blanks (space, tab, vertical tab, 1A) are dropped at both ends of lines,
// section names, keys and values. A line that begins with `;` is nothing, one that begins with `[` a
// header whose name ends at the first `]` or with the line; all others are entries. What stands behind a
// NUL in a line is not seen. No encoding marks are known here: the bytes of a UTF-8 mark are a part of the
// first line, which therefore is no header.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace zimbrat::platform {

struct ProfileLine {
  enum class Kind { Nothing, Header, Entry };
  Kind kind = Kind::Nothing;
  std::string_view name;   // of a header; the key of an entry
  std::string_view value;  // of an entry
  bool hasValue = false;   // whether the entry has a `=`
  // Where the line stands in the text; `end` is behind its line end.
  std::size_t begin = 0, end = 0;
  bool hasLineEnd = false;
};

// The line that begins at `position`, below the text's size.
ProfileLine ReadProfileLine(std::string_view text, std::size_t position);

// Equal without regard to the case of ASCII and Windows-1250 letters.
bool EqualProfileNames(std::string_view a, std::string_view b);

// Blanks (space alone) off both ends, as the functions treat their arguments.
std::string_view TrimProfileArgument(std::string_view argument);

// Walks over the first section of that name, entry by entry.
class ProfileSection {
 public:
  // Looks for the header; `text` must outlive the object.
  ProfileSection(std::string_view text, std::string_view name);

  const std::optional<ProfileLine>& Header() const { return header_; }
  // The next line of the section, nothing after the last or when there is no section.
  std::optional<ProfileLine> NextLine();
  // The next entry, comments and empty lines passed over.
  std::optional<ProfileLine> NextEntry();
  // The first of the entries still to come with that key.
  std::optional<ProfileLine> FindEntry(std::string_view key);

 private:
  std::string_view text_;
  std::optional<ProfileLine> header_;
  std::size_t position_;
};

}  // namespace zimbrat::platform
