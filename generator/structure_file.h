// Decoding of structure files: the header and the lines of the sections. Items are separated by a
// comma alone, without quoting or trimming; what a missing comma means differs from line to line
// and belongs to the format.
#pragma once

#include "platform/profile.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace zimbrat::generator {

struct StructureHeader {
  std::u16string symbol;  // at most 9 characters
  std::u16string program;
  std::int16_t verMajor = 0;
  std::int16_t verMinor = 0;
  std::int16_t tabCount = 0;  // steps, for the progress bar alone
  std::int16_t relCount = 0;

  bool operator==(const StructureHeader&) const = default;
};

// A number outside 16 bits is error 6.
StructureHeader ReadStructureHeader(platform::Profile& profile, std::u16string_view path);

// Items of a `Field` line. The struct is kept from line to line of a section: an item that lacks
// its comma keeps the previous line's value, and what is left of the line is the validation text.
struct FieldLine {
  std::u16string name;
  std::u16string type;
  std::u16string size;
  std::u16string defaultValue;
  std::u16string required;
  std::u16string allowZeroLength;
  std::u16string attributes;
  std::u16string validationText;
};

void DecodeFieldLine(std::u16string_view value, FieldLine& line);

// Items of an `Index` line, kept in the same way. `required` is cut to the length of `unique`:
// "True,False" gives "Fals".
struct IndexLine {
  std::u16string name;
  std::u16string primary;
  std::u16string reserved;
  std::u16string unique;
  std::u16string required;
};

void DecodeIndexLine(std::u16string_view value, IndexLine& line);

// The field of an `IndexField` line, what stands before its first comma. False without one.
bool DecodeIndexFieldLine(std::u16string_view value, std::u16string& fieldName);

// Items of a relation's line. `attributes` is cut to the length of `foreignTable`: "A,F,4096" gives
// "4".
struct RelationLine {
  std::u16string table;
  std::u16string foreignTable;
  std::u16string attributes;
};

// False with fewer than two commas; the items up to there are taken.
bool DecodeRelationLine(std::u16string_view value, RelationLine& line);

// Items of a relation's `Field` line; without a comma the name stays that of the line before.
struct RelationFieldLine {
  std::u16string name;
  std::u16string foreignName;
};

void DecodeRelationFieldLine(std::u16string_view value, RelationFieldLine& line);

// Takes the text before the next `separator` off `rest` into `item`. Without one both stay, and the
// answer is false.
bool TakeItem(std::u16string_view& rest, char16_t separator, std::u16string& item);

}  // namespace zimbrat::generator
