// Rows and the values in them, as bytes.
//
//   part              size  note
//   column count      2     highest column id + 1 when the row was written
//   fixed area              each fixed column at its offset, space kept also when null
//   variable values         in order of the variable index; a null takes no bytes
//   variable offsets  2 each   backwards: end of the last value, then the starts from last to first
//   variable count    2     absent, like the offsets, when the table has no variable column
//   null mask               bit id set = has a value; for Boolean the bit is the value
#pragma once

#include <cstdint>
#include <vector>

#include "jet/table/definition.h"
#include "platform/dao.h"

namespace zimbrat::jet {

// A column's bytes as the row holds them; a long value's are its descriptor (and inline bytes). For a
// Boolean `present` is the value.
struct FieldBytes {
  bool present = false;
  std::vector<std::byte> bytes;
};
// One for each column, in the definition's order.
using RowFields = std::vector<FieldBytes>;

RowFields DecodeRow(const TableDefinition& definition, ConstBytes row);
// Error 3047 when the row is longer than a page holds.
std::vector<std::byte> EncodeRow(const TableDefinition& definition, const RowFields& fields);

// Not for long values. The value must be of the column's type (see ConvertToColumn).
FieldBytes EncodeValue(const Column& column, const dao::Value& value);
dao::Value DecodeValue(const Column& column, const FieldBytes& field);

// Text as the file keeps it: compressed when the column allows it and that is shorter.
std::vector<std::byte> EncodeText(std::u16string_view text, bool compress);
std::u16string DecodeText(ConstBytes bytes);

}  // namespace zimbrat::jet
